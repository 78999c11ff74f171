// The rules by which values of an ANDI file become those of a Merivolta pair, and back: for the
// mappings, and for whoever must know beforehand what becomes of a value. Names are those of the
// chromatography template.
#pragma once

#include "native/native_records.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace korlit {

/// A text of the slice file's header.
struct HeaderText {
    const char* name;
    std::size_t fieldOffset;
    std::size_t fieldSize; ///< with the terminator

    constexpr std::size_t room() const { return fieldSize - 1; }
};

constexpr std::array<HeaderText, 3> headerTexts{{
    {.name = "sample_name",
     .fieldOffset = offsetof(SliHeader, SampleName),
     .fieldSize = sizeof(SliHeader::SampleName)},
    {.name = "operator_name",
     .fieldOffset = offsetof(SliHeader, OperatorName),
     .fieldSize = sizeof(SliHeader::OperatorName)},
    {.name = "detector_unit",
     .fieldOffset = offsetof(SliHeader, DetectorUnit),
     .fieldSize = sizeof(SliHeader::DetectorUnit)},
}};

/// A column of floats in the peak table, and a field that it goes to.
struct PeakSource {
    const char* name;
    std::size_t fieldOffset;
    bool isTime;
};

constexpr std::array<PeakSource, 10> peakSources{{
    {.name = "peak_amount", .fieldOffset = offsetof(PeakRecord, PeakAmount), .isTime = false},
    {.name = "peak_retention_time",
     .fieldOffset = offsetof(PeakRecord, RetentionTime),
     .isTime = true},
    {.name = "peak_start_time",
     .fieldOffset = offsetof(PeakRecord, BaselineStartTime),
     .isTime = true},
    {.name = "peak_start_time", .fieldOffset = offsetof(PeakRecord, PeakStartTime), .isTime = true},
    {.name = "peak_end_time",
     .fieldOffset = offsetof(PeakRecord, BaselineStopTime),
     .isTime = true},
    {.name = "peak_end_time", .fieldOffset = offsetof(PeakRecord, PeakEndTime), .isTime = true},
    {.name = "peak_area", .fieldOffset = offsetof(PeakRecord, PeakArea), .isTime = false},
    {.name = "peak_area_percent",
     .fieldOffset = offsetof(PeakRecord, ExtAreaPercent),
     .isTime = false},
    {.name = "peak_area_percent",
     .fieldOffset = offsetof(PeakRecord, PeakAreaPercent),
     .isTime = false},
    {.name = "peak_height", .fieldOffset = offsetof(PeakRecord, PeakHeight), .isTime = false},
}};

/// The stamps that a pair's date and time come from; the first that a file has.
constexpr std::array<const char*, 2> stampSources{"dataset_date_time_stamp",
                                                  "injection_date_time_stamp"};

/// A column of floats in the peak table of an ANDI file that a pair becomes, and the field that it
/// comes from.
struct PeakColumn {
    const char* name;
    std::size_t fieldOffset;
};

/// The column of names stands behind the first of them.
constexpr std::array<PeakColumn, 10> peakColumns{{
    {.name = "peak_retention_time", .fieldOffset = offsetof(PeakRecord, RetentionTime)},
    {.name = "peak_amount", .fieldOffset = offsetof(PeakRecord, PeakAmount)},
    {.name = "peak_start_time", .fieldOffset = offsetof(PeakRecord, BaselineStartTime)},
    {.name = "peak_end_time", .fieldOffset = offsetof(PeakRecord, BaselineStopTime)},
    {.name = "peak_area", .fieldOffset = offsetof(PeakRecord, PeakArea)},
    {.name = "peak_area_percent", .fieldOffset = offsetof(PeakRecord, ExtAreaPercent)},
    {.name = "peak_height", .fieldOffset = offsetof(PeakRecord, PeakHeight)},
    {.name = "baseline_start_time", .fieldOffset = offsetof(PeakRecord, BaselineStartTime)},
    {.name = "baseline_stop_time", .fieldOffset = offsetof(PeakRecord, BaselineStopTime)},
    {.name = "migration_time", .fieldOffset = offsetof(PeakRecord, RetentionTime)},
}};

/// The kind of separation in words.
const char* separationText(std::uint16_t type);

/// What else a pair takes.
namespace taken {
constexpr const char* ordinateValues = "ordinate_values";
constexpr const char* pointNumber = "point_number";
constexpr const char* samplingInterval = "actual_sampling_interval";
constexpr const char* retentionUnit = "retention_unit";
constexpr const char* uniformFlag = "uniform_sampling_flag";
constexpr const char* samplePosition = "autosampler_position";
constexpr const char* peakNumber = "peak_number";
constexpr const char* peakName = "peak_name";
constexpr std::array<const char*, 8> all{ordinateValues, pointNumber, samplingInterval,
                                         retentionUnit,  uniformFlag, samplePosition,
                                         peakNumber,     peakName};
} // namespace taken

/// Bytes of a peak's name that are kept.
constexpr std::int64_t maxPeakNameLength = 14;

/// A table of more peaks is left out.
constexpr std::int64_t maxWrittenPeaks = maxWrittenPeakBytes / std::int64_t{sizeof(PeakRecord)};

/// Date and time as a pair has them, terminated.
struct PairDate {
    std::array<char, sizeof(SliHeader::DateText)> date{};
    std::array<char, sizeof(SliHeader::TimeText)> time{};
};

/// Of a stamp, which is terminated: dd.mm.yyyy and hh:mm. Its seconds and zone go nowhere.
PairDate pairDate(const char* stamp);

struct Position {
    std::int16_t rack = 0;
    std::int16_t vial = 0;
};

/// Rack and vial from a position such as 1-2. A text that doesn't start with the rack has its first
/// digits taken for the vial.
Position positionIn(std::string_view text);

/// A count such as point_number from its text; 0 for what is no number.
std::int32_t countIn(std::string_view text);

/// Whether a retention unit is minutes, which any text that starts with "min" is. All others count
/// as seconds.
bool isMinutes(std::string_view unit);

/// Whether samples are equidistant. They are unless the flag says otherwise.
bool isUniform(const std::optional<std::string_view>& flag);

struct PairTimes {
    std::int16_t intervalMs;
    float minutesPerUnit; ///< of the file's times
};

/// From the texts of sampling interval and retention unit. The interval is cut to whole
/// milliseconds in 16 bits; what is no number, or is beyond 32 bits, becomes 0. Without either text
/// it is 1 and times are seconds.
PairTimes pairTimes(const std::optional<std::string_view>& interval,
                    const std::optional<std::string_view>& unit);

} // namespace korlit
