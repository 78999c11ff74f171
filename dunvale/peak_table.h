// The peak table of a channel as variables of its ANDI file.
#pragma once

#include "andi/chromatography_template.h"
#include "dunvale/run_records.h"

#include <cstdint>
#include <span>

namespace korlit {

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
