// Reads a Dunvale run file: the whole run is brought into memory, block after block.
#pragma once

#include "dunvale/run_records.h"
#include "platform/cfile.h"

#include <cstdint>
#include <span>

namespace korlit {

/// A run in memory. Whatever the file did not hold is zero. Each table has an entry per channel,
/// which owns that channel's array; a table or array is null while it was not read.
struct DunvaleRun {
    RunFileHead head{};
    RunInfo info{};
    std::int16_t channelCount = 0;
    SliHeadP* lpSliHeadP = nullptr;
    float** plpfData = nullptr; ///< PointCount samples, as stored
    ResHead* lpResHead = nullptr;
    Results** plpResults = nullptr; ///< ResultCount records
    Peaks** plpPeaks = nullptr;     ///< EventCount records
    Anno* lpAnno = nullptr;
    TimeTable* lpTimeTable = nullptr;
    TTLine* lpTTLine = nullptr;
    PeakWin* lpPeakWin = nullptr;
    PeakWin* lpPeakWin2 = nullptr;

    DunvaleRun() = default;
    DunvaleRun(const DunvaleRun&) = delete;
    DunvaleRun& operator=(const DunvaleRun&) = delete;
    /// Releases what was read, as far as it got.
    ~DunvaleRun();
};

/// The error codes that ReadRun answers.
constexpr std::int16_t runIsRead = 0;
constexpr std::int16_t runReadFailed = 1; ///< the system could not read what the file holds
constexpr std::int16_t noMemoryForRun = 3;
constexpr std::int16_t badChannelCount = 18;

/// Reads the run from its file, open at its start; `path` is for the words. A file that ends early
/// is no failure. Answers runIsRead, or another error code with the reason in `message`.
std::int16_t ReadRun(const char* path, CFile& file, DunvaleRun& run, std::span<char> message);

} // namespace korlit
