// The peak table of a channel as variables of its ANDI file.
#pragma once

#include "andi/chromatography_template.h"
#include "dunvale/run_records.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace korlit {

/// A column of floats and the field that it comes from.
struct ResultColumn {
    const char* name;
    std::size_t fieldOffset;
};

/// The column of names stands behind it.
constexpr ResultColumn retentionColumn{.name = "peak_retention_time",
                                       .fieldOffset = offsetof(Results, RetentionTime)};

constexpr std::array<ResultColumn, 6> middleColumns{{
    {.name = "peak_amount", .fieldOffset = offsetof(Results, Amount)},
    {.name = "peak_start_time", .fieldOffset = offsetof(Results, StartTime)},
    {.name = "peak_end_time", .fieldOffset = offsetof(Results, EndTime)},
    {.name = "peak_area", .fieldOffset = offsetof(Results, Area)},
    // No share of the total: files of this origin repeat the area.
    {.name = "peak_area_percent", .fieldOffset = offsetof(Results, Area)},
    {.name = "peak_height", .fieldOffset = offsetof(Results, Height)},
}};

/// A column of times, and that of the samples there.
struct BaselineColumns {
    ResultColumn timeColumn;
    const char* valueName;
    float Results::*time;
};

constexpr std::array<BaselineColumns, 2> baselineColumns{{
    {.timeColumn = {.name = "baseline_start_time", .fieldOffset = offsetof(Results, StartTime)},
     .valueName = "baseline_start_value",
     .time = &Results::StartTime},
    {.timeColumn = {.name = "baseline_stop_time", .fieldOffset = offsetof(Results, EndTime)},
     .valueName = "baseline_stop_value",
     .time = &Results::EndTime},
}};

/// A channel's records in memory.
struct ChannelPeaks {
    std::span<Results> results;
    std::span<const Peaks> events;
    std::span<const PeakWin> windows; ///< those of the table that the channel has chosen
    std::span<const float> signal;    ///< the samples in detector units
    std::int16_t sampleIntervalMs;
};

/// Adds the fourteen variables of a channel that has results, whose areas are changed in place.
/// What finds no memory is missing from the file, but for the three of text: without one of them
/// the answer is false, with the reason in `message`.
bool AddPeakTable(AndiFile* file, const TemplateDimensions& dimensions, const ChannelPeaks& peaks,
                  std::span<char> message);

/// Adds a float variable `name` over `dimension`, with `count` values of one field of consecutive
/// Results; `firstValue` is that field of the first. Adds nothing if there is no memory for it.
void AddResultColumn(AndiFile* file, const char* name, std::int32_t dimension,
                     const void* firstValue, std::int16_t count);

} // namespace korlit
