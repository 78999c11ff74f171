#include "host/plot/plot.h"

#include "host/data/data_set.h"
#include "host/plot/chart_file.h"
#include "host/plot/chart_text.h"
#include "host/text/numbers.h"
#include "host/text/wrong_use.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <initializer_list>
#include <iostream>
#include <limits>
#include <stdexcept>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

constexpr double noValue = std::numeric_limits<double>::quiet_NaN();

/// Samples along the axis that all panels share: minutes, or numbers of samples where a file
/// doesn't say how far samples are from each other.
struct TimeScale {
    double start = 0;
    double interval = 1;

    double timeOf(double sample) const { return start + sample * interval; }
    double sampleAt(double time) const { return (time - start) / interval; }
    /// To the end of the last sample's interval. One sample alone is in the middle.
    Range timesOf(const DataSet& set) const {
        return {.from = timeOf(set.signal.size() == 1 ? -1 : 0),
                .to = timeOf(static_cast<double>(set.signal.size()))};
    }
};

bool hasMinutes(const DataSet& set) {
    return set.samplingInterval > 0 && isDrawable(set.delayTime) &&
           isDrawable(set.timeOf(set.signal.size()));
}

TimeScale scaleOf(const DataSet& set, bool isInMinutes) {
    return isInMinutes && hasMinutes(set)
               ? TimeScale{.start = set.delayTime, .interval = set.samplingInterval}
               : TimeScale{};
}

/// The first of the texts that has anything to show.
std::string firstOf(std::initializer_list<std::string> texts) {
    for (const std::string& text : texts) {
        if (std::string shown = drawableText(text); !shown.empty()) {
            return shown;
        }
    }
    return "";
}

std::string joined(std::initializer_list<std::string> texts, const char* separator) {
    std::string all;
    for (const std::string& text : texts) {
        all += (text.empty() || all.empty() ? "" : separator) + text;
    }
    return all;
}

/// The name at the end of a path of any system.
std::string lastPart(const std::string& path) {
    return path.substr(path.find_last_of("/\\") + 1);
}

std::string subtitleOf(const DataSet& set) {
    const auto shown = [](const char* word, const std::string& text) {
        return text.empty() ? "" : word + text;
    };
    const std::string date = readableStamp(drawableText(set.text("injection_date_time_stamp")));
    // Of what was converted for this chart the reference is the path as it was typed.
    const std::string reference =
        set.kind == FileKind::Andi ? set.text("source_file_reference") : "";
    return joined({shown("Injected ", date),
                   shown("Operator ", drawableText(set.text("operator_name"))),
                   shown("Source ", firstOf({lastPart(reference), lastPart(set.source)}))},
                  "   ·   ");
}

std::string panelTitleOf(const DataSet& set) {
    const std::string channel = set.channel == 0 ? "" : "Channel " + std::to_string(set.channel);
    return joined({channel, drawableText(set.text("detector_name")),
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
        share == 0 ? set.signal[left] : std::lerp(set.signal[left], set.signal[right], share);
    return isDrawable(value) ? std::optional{value} : std::nullopt;
}

/// The line of a signal within the times shown, with as many points as show at that width.
std::vector<LinePoint> lineOf(const DataSet& set, const TimeScale& scale, const Range& times,
                              double width) {
    const auto count = static_cast<double>(set.signal.size());
    // One sample further on each side: the line goes on to there.
    const double first = std::clamp(std::floor(scale.sampleAt(times.from)), 0.0, count);
    const double end = std::clamp(std::ceil(scale.sampleAt(times.to)) + 1, first, count);
    const auto offset = static_cast<std::size_t>(first);
    const auto samples =
        std::span{set.signal}.subspan(offset, static_cast<std::size_t>(end) - offset);
    std::vector<LinePoint> line;
    for (const std::size_t i : samplesToDraw(samples, static_cast<std::size_t>(width))) {
        line.push_back({.x = scale.timeOf(static_cast<double>(offset + i)),
                        .y = isDrawable(samples[i]) ? samples[i] : noValue});
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
    }
    return drawn;
}

/// Fills in the peaks that lie on the signal, and notes how many don't.
void addPeaks(ChartPanel& panel, const DataSet& set, const TimeScale& scale) {
    const Range times = scale.timesOf(set);
    for (const Peak& peak : set.peaks) {
        const std::optional<double> time = drawable(peak.retentionTime);
        if (time && times.contains(*time)) {
            panel.peaks.push_back(chartPeakOf(peak, set, scale));
        }
    }
    if (const std::size_t missing = set.peaks.size() - panel.peaks.size(); missing > 0) {
        panel.note = std::to_string(missing) + (missing == 1 ? " peak lies" : " peaks lie") +
                     " outside the signal";
    }
}

/// The times of all signals together; nothing without samples.
std::optional<Range> timesOf(const std::vector<DataSet>& sets, bool isInMinutes) {
    std::optional<Range> times;
    for (const DataSet& set : sets) {
        if (!set.signal.empty()) {
            const Range own = scaleOf(set, isInMinutes).timesOf(set);
            const Range known = times.value_or(own);
            times = {.from = std::min(known.from, own.from), .to = std::max(known.to, own.to)};
        }
    }
    return times;
}

/// The axis starts at the injection where that is hardly ahead of the first sample.
Range fromInjection(const Range& times) {
    constexpr double shortDelay = 0.05; // of the run
    const bool isClose = times.from > 0 && times.from < times.length() * shortDelay;
    return {.from = isClose ? 0 : times.from, .to = times.to};
}

std::string spanText(const Range& times) {
    std::ostringstream text;
    text << times.from << " to " << times.to << " min";
    return text.str();
}

Range timesToShow(const PlotOptions& options, const std::vector<DataSet>& sets, bool isInMinutes) {
    const std::optional<Range> known = timesOf(sets, isInMinutes);
    const Range all = fromInjection(known.value_or(Range{.from = 0, .to = 1}));
    if (!options.from && !options.to) {
        return widened(all);
    }
    if (!isInMinutes) {
        throw std::runtime_error{options.file + " has no sampling interval, so that no minutes " +
                                 "can be chosen with --from-time and --to-time"};
    }
    const Range shown{.from = options.from.value_or(all.from), .to = options.to.value_or(all.to)};
    if (known && (shown.from > all.to || shown.to < all.from)) {
        throw std::runtime_error{"nothing to draw with --from-time and --to-time: the signal of " +
                                 options.file + " goes from " + spanText(all)};
    }
    return widened(shown);
}

ChartPanel panelOf(const DataSet& set, bool isInMinutes, const Chart& chart, bool isWithPeaks) {
    const TimeScale scale = scaleOf(set, isInMinutes);
    ChartPanel panel{.title = panelTitleOf(set),
                     .note = "",
                     .unit = drawableText(set.detectorUnit),
                     .line = lineOf(set, scale, chart.times, chart.width),
                     .peaks = {}};
    if (isWithPeaks && isInMinutes) {
        addPeaks(panel, set, scale);
    }
    return panel;
}

std::string noteOf(const std::vector<DataSet>& sets, bool isInMinutes) {
    const auto hasPeaks = [](const DataSet& set) { return !set.peaks.empty(); };
    const bool lacksPeaks = !isInMinutes && std::ranges::any_of(sets, hasPeaks);
    const bool isUneven = !std::ranges::all_of(sets, &DataSet::isUniform);
    return joined(
        {lacksPeaks ? "Without a sampling interval the peaks have no place." : "",
         isUneven ? "The samples are not equidistant, but are drawn as if they were." : ""},
        " ");
}

Chart chartOf(const PlotOptions& options, const std::vector<DataSet>& sets) {
    const DataSet& first = sets.front();
    const bool isInMinutes = std::ranges::all_of(
        sets, [](const DataSet& set) { return set.signal.empty() || hasMinutes(set); });
    Chart chart{
        .title = firstOf({options.title, first.text("sample_name"), first.text("experiment_title"),
                          fs::path{options.file}.filename().string()}),
        .subtitle = subtitleOf(first),
        .timeQuantity = isInMinutes ? "Time" : "Sample",
        .timeUnit = isInMinutes ? "min" : "",
        .note = noteOf(sets, isInMinutes),
        .times = timesToShow(options, sets, isInMinutes),
        .panels = {},
        .width = options.width,
        .height = options.height.value_or(defaultHeight(sets.size()))};
    for (const DataSet& set : sets) {
        chart.panels.push_back(panelOf(set, isInMinutes, chart, !options.isWithoutPeaks));
    }
    return chart;
}

void refuseWrongUse(const PlotOptions& options) {
    if (options.from && options.to && !(*options.from < *options.to)) {
        throw WrongUse{"--from-time: must be less than --to-time"};
    }
    std::error_code error;
    if (fs::equivalent(options.file, options.output, error)) {
        throw WrongUse{"--output: is the file that is to be drawn"};
    }
}

} // namespace

void plotFile(const PlotOptions& options) {
    refuseWrongUse(options);
    const std::vector<DataSet> sets = loadDataSets(options.file);
    if (sets.empty()) {
        throw std::runtime_error{options.file + " has no channels"};
    }
    const auto format = chartFormatOf(options.output).value_or(ChartFormat::Svg);
    writeChart(chartOf(options, sets), format, options.output);
    std::cout << options.file << ": Wrote chart " << options.output << '\n';
}

} // namespace korlit::host
