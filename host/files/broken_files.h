// What the files of each format lack, in words for whoever has them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace korlit::host {

/// What stands out in a file of so many bytes that is said to be of the format: where it was cut,
/// or that it is something else. The empty text where nothing does.
std::string flawOfAndi(const std::string& file, std::int64_t size);
std::string flawOfPairFile(const std::string& file, std::int64_t size);
std::string flawOfRun(const std::string& file, std::int64_t size);

/// Of a netCDF file that is no ANDI file.
constexpr const char* noChromatogramText =
    "netCDF without a chromatogram: it has no ordinate_values";

/// Of a netCDF file with a signal that is empty.
constexpr const char* noSamplesText = "its ordinate_values has no samples";

/// Of the second file of a pair that is something else.
constexpr const char* noReportText = "it doesn't begin as reports do";

/// Whether a file begins as the reports of a pair do. The library looks at none of that.
bool isReport(const std::string& file);

struct RunCut {
    std::string words;        ///< "cut: 1,234 of 5,400 samples are there"; empty where all is there
    bool isOfSignal = false;  ///< samples or channels are missing, and not only tables behind them
    std::size_t channels = 0; ///< announced; 0 where no conversion takes it
};

/// What a run lacks of what it announces; nothing of what is no run.
RunCut runCut(const std::string& file);

} // namespace korlit::host
