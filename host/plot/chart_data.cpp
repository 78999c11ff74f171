#include "host/plot/chart_data.h"

#include "host/plot/chart_text.h"
#include "host/plot/panel_data.h"
#include "host/text/words.h"

#include <algorithm>
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>

namespace korlit::host {

namespace {

/// The first of the texts that has anything to show.
std::string firstOf(std::initializer_list<std::string> texts) {
    for (const std::string& text : texts) {
        if (std::string shown = drawableText(text); !shown.empty()) {
            return shown;
        }
    }
    return "";
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
        formatOf(set.kind).isAndi ? set.text("source_file_reference") : "";
    return joined({shown("Injected ", date),
                   shown("Operator ", drawableText(set.text("operator_name"))),
                   shown("Source ", firstOf({lastPart(reference), lastPart(set.source)}))},
                  "   ·   ");
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

std::string noteOf(const std::vector<DataSet>& sets, bool isInMinutes) {
    const auto hasPeaks = [](const DataSet& set) { return !set.peaks.empty(); };
    const bool lacksPeaks = !isInMinutes && std::ranges::any_of(sets, hasPeaks);
    const bool isUneven = !std::ranges::all_of(sets, &DataSet::isUniform);
    return joined(
        {lacksPeaks ? "Without a sampling interval the peaks have no place." : "",
         isUneven ? "The samples are not equidistant, but are drawn as if they were." : ""},
        " ");
}

} // namespace

Chart chartOf(const PlotOptions& options, const std::vector<DataSet>& sets) {
    const DataSet& first = sets.front();
    const bool isInMinutes = std::ranges::all_of(
        sets, [](const DataSet& set) { return set.signal.empty() || hasMinutes(set); });
    Chart chart{
        .title = firstOf({options.title, first.text("sample_name"), first.text("experiment_title"),
                          std::filesystem::path{options.file}.filename().string()}),
        .subtitle = subtitleOf(first),
        .timeQuantity = isInMinutes ? "Time" : "Sample",
        .timeUnit = isInMinutes ? "min" : "",
        .note = noteOf(sets, isInMinutes),
        .times = timesToShow(options, sets, isInMinutes),
        .values = {},
        .panels = {},
        .width = options.width,
        .height = options.height.value_or(defaultHeight(sets.size(), options.width))};
    for (const DataSet& set : sets) {
        chart.panels.push_back(panelOf(set, isInMinutes, chart, !options.isWithoutPeaks));
    }
    return chart;
}

} // namespace korlit::host
