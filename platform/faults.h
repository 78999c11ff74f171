// Failures on demand. Every service of this layer asks here whether it is to fail, so that a test
// can drive each failure of a conversion without a special path in the conversion itself.
//
// Only the build for tests (KORLIT_FAULTS) has the switches; elsewhere the questions are constants
// and nothing of this is left in the library.
#pragma once

#include <cstdint>

namespace korlit {

/// What can be made to fail. A point is reached once for each call of the service.
enum class FaultPoint : std::uint8_t {
    Allocate,
    Lock,
    Load,
    Open,
    Create,
    Read,
    Write,
    Seek,
    Close,
    New, ///< memory of the C++ runtime: no service of this layer, asked by the tests' operator new
};

enum class FaultKind : std::uint8_t {
    None,
    Fail,     ///< the service does nothing and reports its failure
    CutShort, ///< a read or write moves only half of its bytes
};

#ifdef KORLIT_FAULTS

/// Arms one fault: from now on the `nth` arrival (1 is the next) at `point` meets `kind`. Replaces
/// what was armed before.
void armFault(FaultPoint point, std::int64_t nth, FaultKind kind = FaultKind::Fail);

/// No fault is armed from here on. Answers whether the one that was has struck.
bool disarmFault();

/// Counts one arrival at `point` and answers what is to happen there.
FaultKind faultAt(FaultPoint point);

/// Memory blocks, files and libraries that are held at this moment; what a call left behind shows
/// here.
std::int64_t heldBlockCount();
std::int64_t heldFileCount();
std::int64_t heldLibraryCount();
void countHeldBlocks(std::int64_t change);
void countHeldFiles(std::int64_t change);
void countHeldLibraries(std::int64_t change);

#else

constexpr FaultKind faultAt(FaultPoint /*point*/) {
    return FaultKind::None;
}
constexpr void countHeldBlocks(std::int64_t /*change*/) {}
constexpr void countHeldFiles(std::int64_t /*change*/) {}
constexpr void countHeldLibraries(std::int64_t /*change*/) {}

#endif

} // namespace korlit
