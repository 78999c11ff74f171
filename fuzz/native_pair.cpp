// A Merivolta pair that becomes an ANDI file. The input is the length of the report in two bytes,
// the report and the slice file.
#include "fuzz/input.h"
#include "fuzz/promises.h"
#include "native/native_state.h"

using namespace korlit;
using namespace korlit::fuzz;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string andiFile = scratchPath("run.cdf");
    Input input{data, size};
    scratchFile("run.rpt", input.take(input.number<std::uint16_t>()));
    const std::string slice = scratchFile("run.sli", input.rest());
    if (convertAsHost(Merivolta2Andi, slice, "as it was",
                      "Merivolta File converted to " + andiFile + ".")) {
        FreeAndiFile(&TheAndiFile);
        requireLoadable(andiFile);
    }
    requireNothingHeld();
    return 0;
}
