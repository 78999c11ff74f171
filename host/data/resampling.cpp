#include "host/data/resampling.h"

#include "host/data/facts.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>
#include <string>

namespace korlit::host {

namespace {

constexpr double msPerMinute = 60000;

/// The value of a line through equidistant samples.
double valueAt(const std::vector<float>& samples, double place) {
    const double kept = std::clamp(place, 0.0, static_cast<double>(samples.size() - 1));
    const auto left = static_cast<std::size_t>(kept);
    const std::size_t right = std::min(left + 1, samples.size() - 1);
    return between(double{samples[left]}, double{samples[right]}, kept - static_cast<double>(left));
}

/// How many samples it takes until the last time is reached.
std::size_t countFor(const DataSet& set, double interval) {
    constexpr double tolerance = 1e-6;   // of an interval, for times that come from floats
    constexpr double most = 500'000'000; // an ANDI file has 2 GB
    const double intervals = std::ceil(set.runTime() / interval - tolerance);
    if (!(intervals < most)) {
        throw std::runtime_error{"at that interval they were more than a file can hold"};
    }
    return static_cast<std::size_t>(intervals) + 1;
}

} // namespace

bool isResampleable(const DataSet& set) {
    return set.times.size() > 1 && set.runTime() > 0;
}

std::int16_t usualIntervalMs(const DataSet& set) {
    const double ms = std::round(medianInterval(set) * msPerMinute);
    return static_cast<std::int16_t>(std::clamp<double>(ms, shortestIntervalMs, longestIntervalMs));
}

Resampling resampled(const DataSet& set, std::int16_t intervalMs) {
    const double interval = intervalMs / msPerMinute;
    Resampling result{.intervalMs = intervalMs,
                      .start = set.timeOf(0),
                      .samples = std::vector<float>(countFor(set, interval)),
                      .deviation = 0};
    std::size_t right = 1;
    for (std::size_t i = 0; i < result.samples.size(); ++i) {
        const double time = result.start + static_cast<double>(i) * interval;
        while (right + 1 < set.times.size() && set.timeOf(right) < time) {
            ++right;
        }
        const double before = set.timeOf(right - 1);
        const double distance = set.timeOf(right) - before;
        const double share = distance > 0 ? std::clamp((time - before) / distance, 0.0, 1.0) : 1.0;
        // At its ends a line is the samples themselves, whatever is on the other side.
        const double value = share == 0 ? set.signal[right - 1]
                             : share == 1
                                 ? set.signal[right]
                                 : between(set.signal[right - 1], set.signal[right], share);
        result.samples[i] = static_cast<float>(value);
    }
    for (std::size_t i = 0; i < set.times.size(); ++i) {
        const double place = (set.timeOf(i) - result.start) / interval;
        // Compared as floats, which is what becomes of both.
        const auto drawn = static_cast<float>(valueAt(result.samples, place));
        const double distance = drawn == static_cast<float>(set.signal[i])
                                    ? 0.0
                                    : std::abs(set.signal[i] - double{drawn});
        result.deviation = distance > result.deviation ? distance : result.deviation;
    }
    return result;
}

} // namespace korlit::host
