// How a peak begins and ends, from the events of the peak detection.
#pragma once

#include "dunvale/run_records.h"

#include <cstdint>
#include <span>

namespace korlit {

/// Bytes of a code, terminator included.
constexpr int detectionCodeSize = 4;

/// Walks over the events of a channel and writes "B" or "V" to the rows of its peaks, of
/// detectionCodeSize bytes each, in `startCodes` and `stopCodes`. A row that no event reaches keeps
/// what it has.
void WalkPeakEvents(std::span<const Peaks> events, std::span<const Results> results,
                    std::int16_t sampleIntervalMs, char* startCodes, char* stopCodes);

} // namespace korlit
