// Samples that aren't equidistant, brought to equal distances.
#pragma once

#include "host/data/data_set.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace korlit::host {

/// What a pair can hold for the distance of samples.
constexpr std::int16_t shortestIntervalMs = 1;
constexpr std::int16_t longestIntervalMs = 32767;

struct Resampling {
    std::int16_t intervalMs = 0;
    double start = 0;           ///< minutes from injection to the first sample
    std::vector<float> samples; ///< in the unit of the data set
    /// How far the signal is at most from where straight lines between the new samples have it, in
    /// the same unit.
    double deviation = 0;
};

/// Whether samples can be brought to equal distances and need it: each has its own time.
bool isResampleable(const DataSet& set);

/// The median distance of the samples, rounded to milliseconds and to what a pair can hold.
std::int16_t usualIntervalMs(const DataSet& set);

/// The values of straight lines between the samples at the time of the first and every
/// `intervalMs` milliseconds behind it, until the last sample is reached, whose value holds from
/// there on. The data set must be resampleable. Throws a runtime_error with words for the user
/// where that are more samples than an ANDI file holds.
Resampling resampled(const DataSet& set, std::int16_t intervalMs);

} // namespace korlit::host
