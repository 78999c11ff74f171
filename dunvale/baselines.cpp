#include "dunvale/baselines.h"

#include "dunvale/point_index.h"

#include <cstddef>

namespace korlit {

float BaselineValue(std::span<const float> signal, std::int16_t sampleIntervalMs, float time) {
    const auto rounded = static_cast<float>(timeInSamples(time, sampleIntervalMs));
    const std::optional<std::int64_t> index = pointIndex(rounded);
    const bool isSample = index && *index >= 0 && *index < std::ssize(signal);
    return isSample ? signal[static_cast<std::size_t>(*index)] : 0.0F;
}

} // namespace korlit
