// The values of a peak's baseline, looked up in the signal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>

namespace korlit {

/// The index of the sample at a time in minutes; nothing where a signal of so many points has none.
/// The time in sampling intervals is rounded to a float before it becomes an index, so that a time
/// just below a sample is that sample.
std::optional<std::size_t> baselinePoint(std::size_t pointCount, std::int16_t sampleIntervalMs,
                                         float time);

/// That sample, or 0.
float BaselineValue(std::span<const float> signal, std::int16_t sampleIntervalMs, float time);

} // namespace korlit
