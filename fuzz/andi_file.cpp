// An ANDI file: loaded, written back, and made a pair that is then read in turn.
#include "andi/andi_writer.h"
#include "fuzz/input.h"
#include "fuzz/promises.h"
#include "native/native_state.h"

using namespace korlit;
using namespace korlit::fuzz;

namespace {

void writeBack(const std::string& path) {
    static const std::string copy = scratchPath("copy.cdf");
    AndiFile file{};
    const std::string content = load(path, file);
    if (!content.empty()) {
        require(WriteAndiFile(copy.c_str(), &file, {}) == 1, "a loaded file is written");
        require(load(copy, file) == content, "a file that was written holds what was loaded");
        FreeAndiFile(&file);
    }
    requireNothingHeld();
}

void makePair(const std::string& path) {
    static const std::string slice = scratchPath("run.sli");
    static const std::string report = scratchPath("run.rpt");
    const bool isMade =
        convertAsHost(Andi2Merivolta, path, "as it was", "Wrote Merivolta file " + slice);
    requireNothingHeld();
    if (!isMade) {
        return;
    }
    const std::uint32_t points = TheSliHeader.PointCount;
    const std::int16_t peaks = TheResHeader.PeakCount;
    require(std::filesystem::file_size(slice) == 2048 + std::uintmax_t{4} * points,
            "a slice file is as long as its points say");
    require(peaks >= 0 && peaks <= 570, "a report has at most 570 peaks");
    require(std::filesystem::file_size(report) == 352U + 116U * static_cast<unsigned>(peaks),
            "a report is as long as its peaks say");
    const bool isRead =
        convertAsHost(Merivolta2Andi, slice, "as it was", "Merivolta File converted to ");
    require(isRead == (points > 0), "a pair that was written is read, unless it has no points");
    FreeAndiFile(&TheAndiFile);
    requireNothingHeld();
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string path = scratchFile("run.cdf", Input{data, size}.rest());
    writeBack(path);
    makePair(path);
    return 0;
}
