// Which sample of a signal a time stands for.
#pragma once

#include <cmath>
#include <cstdint>
#include <optional>

namespace korlit {

/// A time in minutes in sampling intervals, which the record has in milliseconds.
constexpr double timeInSamples(float time, std::int16_t sampleIntervalMs) {
    constexpr double msPerMinute = 60000.0;
    return time / (sampleIntervalMs / msPerMinute);
}

/// The index in a quotient of the above, truncated toward zero. Nothing where it is none: for an
/// interval of 0, a time that is no number, and anything beyond 63 bits.
inline std::optional<std::int64_t> pointIndex(double samples) {
    constexpr double limit = 9223372036854775808.0;
    if (!(std::abs(samples) < limit)) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(samples);
}

} // namespace korlit
