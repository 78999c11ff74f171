#include "host/data/facts.h"

#include <algorithm>
#include <cmath>

namespace korlit::host {

namespace {

bool isFirstSmaller(double a, double b) {
    return !std::isnan(a) && (std::isnan(b) || a < b);
}

bool isFirstSmallerButNan(double a, double b) {
    return !std::isnan(b) && (std::isnan(a) || a < b);
}

} // namespace

std::optional<Extremes> extremesOf(const std::vector<double>& signal) {
    const auto lowest = std::ranges::min_element(signal, isFirstSmaller);
    const auto highest = std::ranges::max_element(signal, isFirstSmallerButNan);
    if (lowest == signal.end() || std::isnan(*lowest)) {
        return std::nullopt;
    }
    return Extremes{.minimum = static_cast<std::size_t>(lowest - signal.begin()),
                    .maximum = static_cast<std::size_t>(highest - signal.begin())};
}

bool hasTimes(const DataSet& set) {
    return set.isUniform && std::isfinite(set.samplingInterval) && set.samplingInterval > 0 &&
           std::isfinite(set.delayTime);
}

} // namespace korlit::host
