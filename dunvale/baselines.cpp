#include "dunvale/baselines.h"

#include "dunvale/point_index.h"

#include <utility>

namespace korlit {

std::optional<std::size_t> baselinePoint(std::size_t pointCount, std::int16_t sampleIntervalMs,
                                         float time) {
    const auto rounded = static_cast<float>(timeInSamples(time, sampleIntervalMs));
    const std::optional<std::int64_t> index = pointIndex(rounded);
    const bool isSample = index && *index >= 0 && std::cmp_less(*index, pointCount);
    return isSample ? std::optional{static_cast<std::size_t>(*index)} : std::nullopt;
}

float BaselineValue(std::span<const float> signal, std::int16_t sampleIntervalMs, float time) {
    const auto point = baselinePoint(signal.size(), sampleIntervalMs, time);
    return point ? signal[*point] : 0.0F;
}

} // namespace korlit
