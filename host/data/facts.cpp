#include "host/data/facts.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <vector>

namespace korlit::host {

bool isNumber(double sample) {
    return !std::isnan(sample);
}

bool isFinite(double sample) {
    return std::isfinite(sample);
}

std::optional<Extremes> extremesOf(const NumberView& signal, bool (*counts)(double sample)) {
    std::optional<Extremes> extremes;
    double lowest = 0;
    double highest = 0;
    for (std::size_t i = 0; i < signal.size(); ++i) {
        const double sample = signal[i];
        if (!counts(sample)) {
            continue;
        }
        if (!extremes) {
            extremes = Extremes{.minimum = i, .maximum = i};
            lowest = highest = sample;
        } else if (sample < lowest) {
            extremes->minimum = i;
            lowest = sample;
        } else if (sample > highest) {
            extremes->maximum = i;
            highest = sample;
        }
    }
    return extremes;
}

double limitRounding(double smallest, double largest, double extreme) {
    constexpr double shareOfSpan = 1e-6;
    return std::max((largest - smallest) * shareOfSpan,
                    std::abs(extreme) * double{std::numeric_limits<float>::epsilon()});
}

bool hasTimes(const DataSet& set) {
    return !set.times.empty() || (set.isUniform && std::isfinite(set.samplingInterval) &&
                                  set.samplingInterval > 0 && std::isfinite(set.delayTime));
}

double medianInterval(const DataSet& set) {
    if (set.times.size() < 2) {
        return 0;
    }
    std::vector<double> intervals(set.times.size() - 1);
    for (std::size_t i = 0; i < intervals.size(); ++i) {
        intervals[i] = set.timeOf(i + 1) - set.timeOf(i);
    }
    const auto middle = intervals.begin() + std::ssize(intervals) / 2;
    std::ranges::nth_element(intervals, middle);
    return *middle;
}

} // namespace korlit::host
