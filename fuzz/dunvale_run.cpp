// A Dunvale run whose channels become ANDI files.
#include "dunvale/channel_to_andi.h"
#include "dunvale/run_file.h"
#include "fuzz/input.h"
#include "fuzz/machine.h"
#include "fuzz/promises.h"

using namespace korlit;
using namespace korlit::fuzz;

namespace {

void mapChannel(DunvaleRun& run, int channel, const std::string& path) {
    RunOrigin origin{.runFile = path.c_str(), .stamp = {}, .injectionTime = {}};
    AndiFile file{};
    Message message{path};
    const bool isMapped = MapChannelToAndi(run, channel, origin, &file, message.span());
    require(isMapped != message.isTold(), "a channel is mapped, or the reason told");
    if (isMapped) {
        requireSound(file);
        const std::int32_t points = file.Dimensions[8].Length;
        require(points == run.lpSliHeadP[channel].PointCount, "a signal has its points");
    }
    FreeAndiFile(&file);
}

void mapChannels(const std::string& path) {
    CFile file;
    DunvaleRun run;
    Message message{path};
    require(file.Open(path.c_str()), "a file opens");
    const std::int16_t error = ReadRun(path.c_str(), file, run, message.span());
    require((error == runIsRead) != message.isTold(), "a run is read, or the reason told");
    for (int channel = 0; error == runIsRead && channel < run.channelCount; ++channel) {
        mapChannel(run, channel, path);
    }
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static ScratchFile run{"run.dat"};
    static const std::string andiFile = scratchPath("channel.cdf");
    // What a run announces is converted even where the file has ended. Blocks of the most results
    // that a channel can have are met by one input in sixteen, for they take long.
    largestBlock = size % 16 == 0 ? 1 << 20 : 1 << 16;
    run.fill(Input{data, size}.rest());
    mapChannels(run.path());
    requireNothingHeld();
    if (convertAsHost(Dunvale2Andi, run.path(), andiFile, andiFile)) {
        requireLoadable(andiFile);
    }
    requireNothingHeld();
    return 0;
}
