// A Merivolta pair that becomes an ANDI file. The input is the length of the report in two bytes,
// the report and the slice file.
#include "native/native_state.h"
#include "fuzz/input.h"
#include "fuzz/promises.h"

using namespace korlit;
using namespace korlit::fuzz;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static ScratchFile slice{"run.sli"};
    static ScratchFile report{"run.rpt"};
    static const std::string andiFile = scratchPath("run.cdf");
    Input input{data, size};
    report.fill(input.take(input.number<std::uint16_t>()));
    slice.fill(input.rest());
    const bool isConverted = convertAsHost(Merivolta2Andi, slice.path(), "as it was",
                                           "Merivolta File converted to " + andiFile + ".");
    if (isConverted) {
        FreeAndiFile(&TheAndiFile);
        requireLoadable(andiFile);
    }
    requireNothingHeld();
    return 0;
}
