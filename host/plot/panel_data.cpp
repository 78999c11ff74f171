#include "host/plot/panel_data.h"

#include "host/data/facts.h"
#include "host/plot/chart_text.h"
#include "host/text/numbers.h"
#include "host/text/words.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>
#include <span>
#include <vector>

namespace korlit::host {

namespace {

constexpr double noValue = std::numeric_limits<double>::quiet_NaN();

std::string panelTitleOf(const DataSet& set) {
    const std::string channel = set.channel == 0 ? "" : "Channel " + std::to_string(set.channel);
    return joined({channel, set.isTotalIon ? "Total ion chromatogram" : "",
                   drawableText(set.text("detector_name")),
                   drawableText(set.text("detection_method_name"))},
                  ", ");
}

/// The signal between two samples; nothing before the first and behind the last, but for the
/// interval that the last one stands for.
std::optional<double> signalAt(const DataSet& set, const TimeScale& scale, double time) {
    const double place = scale.sampleAt(time);
    const auto count = static_cast<double>(set.signal.size());
    if (!(place > -1 && place <= count) || set.signal.empty()) {
        return std::nullopt;
    }
    const double kept = std::clamp(place, 0.0, count - 1);
    const auto left = static_cast<std::size_t>(kept);
    const std::size_t right = std::min(left + 1, set.signal.size() - 1);
    const double share = kept - static_cast<double>(left);
    const double value =
        share == 0 ? set.signal[left] : between(set.signal[left], set.signal[right], share);
    return isDrawable(value) ? std::optional{value} : std::nullopt;
}

/// The line of a signal within the times shown, with as many points as show at that width.
std::vector<LinePoint> signalLine(const DataSet& set, const TimeScale& scale, const Range& times,
                                  double width) {
    const auto count = static_cast<double>(set.signal.size());
    // One sample further on each side: the line goes on to there.
    const double first = std::clamp(std::floor(scale.sampleAt(times.from)), 0.0, count);
    const double end = std::clamp(std::ceil(scale.sampleAt(times.to)) + 1, first, count);
    const auto offset = static_cast<std::size_t>(first);
    const NumberView samples = set.signal.part(offset, static_cast<std::size_t>(end) - offset);
    std::vector<LinePoint> line;
    for (const std::size_t i : samplesToDraw(samples, static_cast<std::size_t>(width))) {
        line.push_back(
            {.x = scale.timeOf(offset + i), .y = isDrawable(samples[i]) ? samples[i] : noValue});
    }
    return cutTo(line, times);
}

std::string labelOf(const Peak& peak) {
    const std::string name = drawableText(peak.name);
    return name.empty() ? threeDecimals(*peak.retentionTime) : name;
}

std::optional<double> drawable(const std::optional<double>& number) {
    return number && isDrawable(*number) ? number : std::nullopt;
}

ChartPeak chartPeakOf(const Peak& peak, const DataSet& set, const TimeScale& scale) {
    const auto pointAt = [&](const std::optional<double>& time,
                             const std::optional<double>& value) -> std::optional<LinePoint> {
        if (!time) {
            return std::nullopt;
        }
        return LinePoint{.x = *time,
                         .y = value ? *value : signalAt(set, scale, *time).value_or(noValue)};
    };
    const std::optional<double> start = drawable(peak.startTime);
    const std::optional<double> end = drawable(peak.endTime);
    const auto baselineStart =
        pointAt(drawable(peak.baselineStartTime) ? peak.baselineStartTime : start,
                drawable(peak.baselineStartValue));
    const auto baselineStop = pointAt(drawable(peak.baselineStopTime) ? peak.baselineStopTime : end,
                                      drawable(peak.baselineStopValue));
    ChartPeak drawn{.label = labelOf(peak),
                    .apex = *pointAt(peak.retentionTime, std::nullopt),
                    .start = pointAt(start, std::nullopt),
                    .end = pointAt(end, std::nullopt),
                    .baseline = std::nullopt};
    if (baselineStart && baselineStop && baselineStart->x < baselineStop->x &&
        !std::isnan(baselineStart->y) && !std::isnan(baselineStop->y)) {
        drawn.baseline = {*baselineStart, *baselineStop};
        drawn.isBaselineMeasured =
            drawable(peak.baselineStartValue) && drawable(peak.baselineStopValue);
    }
    return drawn;
}

/// Fills in the peaks that lie on the signal, and notes how many don't.
void addPeaks(ChartPanel& panel, const DataSet& set, const TimeScale& scale) {
    const Range times = scale.times();
    for (const Peak& peak : set.peaks) {
        const std::optional<double> time = drawable(peak.retentionTime);
        if (time && times.contains(*time)) {
            panel.peaks.push_back(chartPeakOf(peak, set, scale));
        }
    }
    if (const std::size_t missing = set.peaks.size() - panel.peaks.size(); missing > 0) {
        panel.note = joined({panel.note, std::to_string(missing) +
                                             (missing == 1 ? " peak lies" : " peaks lie") +
                                             " outside the signal"},
                            "; ");
    }
}

/// What the signs of a panel mean that aren't plain.
std::string signsOf(const ChartLine& line) {
    return std::ranges::any_of(line.points, isGap) ? "no values where it is grey" : "";
}

} // namespace

bool hasMinutes(const DataSet& set) {
    if (!set.times.empty()) {
        return isDrawable(set.timeOf(0)) && isDrawable(set.timeOf(set.times.size() - 1));
    }
    return set.samplingInterval > 0 && isDrawable(set.delayTime) &&
           isDrawable(set.timeOf(set.signal.size()));
}

TimeScale::TimeScale(const DataSet& dataSet, bool isInMinutes)
    : set{dataSet}, isOwn{isInMinutes && hasMinutes(dataSet) && !dataSet.times.empty()} {
    if (isInMinutes && hasMinutes(set) && !isOwn) {
        start = set.delayTime;
        interval = set.samplingInterval;
    }
}

double TimeScale::timeOf(std::size_t sample) const {
    return isOwn ? set.timeOf(sample) : start + static_cast<double>(sample) * interval;
}

double TimeScale::sampleAt(double time) const {
    if (!isOwn) {
        return (time - start) / interval;
    }
    // The first sample that isn't earlier lies from `left` on, and at `right` at the latest.
    std::size_t left = 0;
    std::size_t right = set.times.size();
    while (left < right) {
        const std::size_t middle = left + (right - left) / 2;
        if (set.timeOf(middle) < time) {
            left = middle + 1;
        } else {
            right = middle;
        }
    }
    if (right == 0) {
        return time < set.timeOf(0) ? -1 : 0;
    }
    if (right == set.times.size()) {
        return static_cast<double>(right);
    }
    const double before = set.timeOf(right - 1);
    return static_cast<double>(right - 1) + (time - before) / (set.timeOf(right) - before);
}

Range TimeScale::times() const {
    if (isOwn) {
        return {.from = set.timeOf(0), .to = set.timeOf(set.times.size() - 1)};
    }
    const std::size_t count = set.signal.size();
    return {.from = count == 1 ? start - interval : start, .to = timeOf(count)};
}

ChartPanel panelOf(const DataSet& set, bool isInMinutes, const Chart& chart, bool isWithPeaks) {
    const TimeScale scale{set, isInMinutes};
    const ChartLine line{.name = "", .points = signalLine(set, scale, chart.times, chart.width)};
    ChartPanel panel{.title = panelTitleOf(set),
                     .note = signsOf(line),
                     .unit = drawableText(set.detectorUnit),
                     .lines = {line},
                     .peaks = {}};
    if (isWithPeaks && isInMinutes) {
        addPeaks(panel, set, scale);
    }
    return panel;
}

} // namespace korlit::host
