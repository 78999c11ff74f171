#include "dunvale/run_extent.h"

#include "dunvale/run_records.h"

#include <algorithm>

namespace korlit {

namespace {

/// Goes through a run in its order. It stops where the file ends, or where a count is none.
class Walk {
  public:
    explicit Walk(CFile& runFile) : file{runFile}, left{runFile.GetRemaining()} {}

    bool isAtEnd() const { return hasEnded; }

    /// The next record, of which older files hold the first `byteCount` bytes.
    template <typename Record>
    Record take(std::int64_t byteCount = sizeof(Record)) {
        Record record{};
        hasEnded = hasEnded || file.Read(&record, byteCount) != byteCount;
        left -= byteCount;
        return record;
    }

    /// Passes over so many records; answers how many bytes of them are there.
    std::int64_t pass(std::int64_t count, std::int64_t recordSize) {
        const std::int64_t byteCount = hasEnded ? 0 : count * recordSize;
        const std::int64_t there =
            std::clamp<std::int64_t>(byteCount, 0, std::max<std::int64_t>(left, 0));
        hasEnded = hasEnded || there != byteCount;
        file.Skip(there);
        left -= there;
        return there;
    }

  private:
    CFile& file;
    std::int64_t left; ///< bytes of the file behind the place where this is
    bool hasEnded = false;
};

void passSignals(Walk& walk, RunExtent& extent) {
    constexpr std::int64_t sampleSize = sizeof(float);
    for (int channel = 0; channel < extent.channels && !walk.isAtEnd(); ++channel) {
        const auto head = walk.take<SliHeadP>();
        if (!walk.isAtEnd()) {
            ++extent.channelsThere;
            extent.samples += std::max(head.PointCount, 0);
            extent.samplesThere += walk.pass(head.PointCount, sampleSize) / sampleSize;
        }
    }
}

void passPeaks(Walk& walk, const RunLayout& layout, int channels) {
    constexpr std::int64_t extraEntrySize = 4;
    for (int channel = 0; channel < channels; ++channel) {
        const auto head = walk.take<ResHead>();
        walk.pass(head.ResultCount, layout.resultSize);
        walk.pass(head.EventCount, sizeof(Peaks));
        if (layout.hasChannelExtraTable) {
            walk.pass(walk.take<std::int16_t>(), extraEntrySize);
        }
    }
}

void passTables(Walk& walk, const RunLayout& layout) {
    walk.pass(walk.take<std::int16_t>(), sizeof(Anno));
    walk.pass(1, reservedBlockSize);
    const auto table = walk.take<TimeTable>(layout.timeTableSize);
    walk.pass(table.TTLineCount, layout.ttLineSize);
    const auto [first, second] = windowCounts(table.PeakWinCounts);
    walk.pass(first, sizeof(PeakWin));
    walk.pass(second, sizeof(PeakWin));
}

} // namespace

std::optional<RunExtent> extentOf(CFile& file) {
    Walk walk{file};
    const RunLayout layout = layoutOf(walk.take<RunFileHead>().RunVersion);
    walk.take<RunInfo>();
    RunExtent extent{.channels = walk.take<std::int16_t>()};
    if (walk.isAtEnd() || extent.channels < 1 || extent.channels > maxChannels) {
        return std::nullopt;
    }
    passSignals(walk, extent);
    passPeaks(walk, layout, extent.channels);
    passTables(walk, layout);
    extent.isWhole = !walk.isAtEnd();
    return extent;
}

} // namespace korlit
