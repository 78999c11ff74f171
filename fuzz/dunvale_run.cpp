// A Dunvale run whose channels become ANDI files.
#include "fuzz/input.h"
#include "fuzz/machine.h"
#include "fuzz/promises.h"

using namespace korlit;
using namespace korlit::fuzz;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string andiFile = scratchPath("channel.cdf");
    // What a run announces is converted even where the file has ended. Blocks of the most results
    // that a channel can have are met by one input in sixteen, for they take long.
    largestBlock = size % 16 == 0 ? 1 << 20 : 1 << 16;
    const std::string run = scratchFile("run.dat", Input{data, size}.rest());
    if (convertAsHost(Dunvale2Andi, run, andiFile, andiFile)) {
        requireLoadable(andiFile);
    }
    requireNothingHeld();
    return 0;
}
