// The values of a peak's baseline, looked up in the signal.
#pragma once

#include <cstdint>
#include <span>

namespace korlit {

/// The sample at a time in minutes; 0 where the signal has none. The time in sampling intervals is
/// rounded to a float before it becomes an index, so that a time just below a sample is that
/// sample.
float BaselineValue(std::span<const float> signal, std::int16_t sampleIntervalMs, float time);

} // namespace korlit
