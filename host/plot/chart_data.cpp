#include "host/plot/chart_data.h"

#include "host/plot/chart_text.h"
#include "host/plot/panel_data.h"
#include "host/text/words.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <initializer_list>
#include <iterator>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

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

/// The data sets of a chart, whichever panel they stand in.
using AllSets = std::vector<const DataSet*>;

AllSets setsOf(const std::vector<std::vector<DataSet>>& files) {
    AllSets all;
    for (const std::vector<DataSet>& sets : files) {
        std::ranges::transform(sets, std::back_inserter(all),
                               [](const DataSet& set) { return &set; });
    }
    return all;
}

/// The times of all signals together; nothing without samples.
std::optional<Range> timesOf(const AllSets& sets, bool isInMinutes) {
    std::optional<Range> times;
    for (const DataSet* set : sets) {
        if (!set->signal.empty()) {
            const Range own = TimeScale{*set, isInMinutes}.times();
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

Range timesToShow(const PlotOptions& options, const AllSets& sets, bool isInMinutes) {
    const std::optional<Range> known = timesOf(sets, isInMinutes);
    const Range all = fromInjection(known.value_or(Range{.from = 0, .to = 1}));
    if (!options.from && !options.to) {
        return widened(all);
    }
    if (!isInMinutes) {
        throw std::runtime_error{sets.front()->source +
                                 " has no sampling interval, so that no minutes " +
                                 "can be chosen with --from-time and --to-time"};
    }
    const Range shown{.from = options.from.value_or(all.from), .to = options.to.value_or(all.to)};
    if (known && (shown.from > all.to || shown.to < all.from)) {
        throw std::runtime_error{"nothing to draw with --from-time and --to-time: the signal of " +
                                 sets.front()->source + " goes from " + spanText(all)};
    }
    return widened(shown);
}

std::string noteOf(const AllSets& sets, bool isInMinutes) {
    const auto hasPeaks = [](const DataSet* set) { return !set->peaks.empty(); };
    const bool lacksPeaks = !isInMinutes && std::ranges::any_of(sets, hasPeaks);
    const auto hasNoTimes = [](const DataSet* set) {
        return !set->isUniform && set->times.empty();
    };
    const bool isUneven = std::ranges::any_of(sets, hasNoTimes);
    return joined(
        {lacksPeaks ? "Without a sampling interval the peaks have no place." : "",
         isUneven ? "The samples are not equidistant, but are drawn as if they were." : ""},
        " ");
}

/// What each file's data are called among those of others: by their sample, the name of their file
/// or its whole path, whichever tells them apart.
std::vector<std::string> namesOf(const std::vector<std::vector<DataSet>>& files) {
    using NameOf = std::string (*)(const DataSet& set);
    constexpr std::array<NameOf, 2> shortNames{
        [](const DataSet& set) { return set.text("sample_name"); },
        [](const DataSet& set) { return lastPart(set.source); }};
    const auto namesBy = [&](NameOf nameOf) {
        std::vector<std::string> names;
        for (const std::vector<DataSet>& sets : files) {
            names.push_back(drawableText(nameOf(sets.front())));
        }
        return names;
    };
    for (const NameOf nameOf : shortNames) {
        std::vector<std::string> names = namesBy(nameOf);
        if (std::ranges::none_of(names, [&](const std::string& name) {
                return name.empty() || std::ranges::count(names, name) > 1;
            })) {
            return names;
        }
    }
    return namesBy([](const DataSet& set) { return set.source; });
}

/// Signals of several files, each channel in a panel.
std::vector<ChartPanel> overlaid(const std::vector<std::vector<DataSet>>& files, bool isInMinutes,
                                 const Chart& chart) {
    const auto most = std::ranges::max(files, {}, &std::vector<DataSet>::size).size();
    const std::vector<std::string> names = namesOf(files);
    std::vector<ChartPanel> panels(most);
    for (std::size_t i = 0; i < most; ++i) {
        std::optional<std::string> unit;
        for (std::size_t file = 0; file < files.size(); ++file) {
            // A file without this channel has its place in the legend nevertheless.
            ChartLine line{.name = names[file], .points = {}};
            if (i < files[file].size()) {
                const ChartPanel own = panelOf(files[file][i], isInMinutes, chart, false);
                unit = unit.value_or(own.unit) == own.unit ? own.unit : "in units of their own";
                line.points = own.lines.front().points;
            }
            panels[i].lines.push_back(std::move(line));
        }
        panels[i].unit = unit.value_or("");
        panels[i].title = most > 1 ? "Channel " + std::to_string(i + 1) : "";
    }
    return panels;
}

std::string titleOf(const PlotOptions& options, const std::vector<std::vector<DataSet>>& files) {
    const DataSet& first = files.front().front();
    return files.size() > 1
               ? firstOf({options.title, std::to_string(files.size()) + " chromatograms"})
               : firstOf({options.title, first.text("sample_name"), first.text("experiment_title"),
                          std::filesystem::path{first.source}.filename().string()});
}

} // namespace

Chart chartOf(const PlotOptions& options, const std::vector<std::vector<DataSet>>& files) {
    const AllSets sets = setsOf(files);
    const bool isInMinutes = std::ranges::all_of(
        sets, [](const DataSet* set) { return set->signal.empty() || hasMinutes(*set); });
    Chart chart{.title = titleOf(options, files),
                .subtitle = files.size() > 1 ? "" : subtitleOf(*sets.front()),
                .timeQuantity = isInMinutes ? "Time" : "Sample",
                .timeUnit = isInMinutes ? "min" : "",
                .note = noteOf(sets, isInMinutes),
                .times = timesToShow(options, sets, isInMinutes),
                .values = options.values,
                .panels = {},
                .width = options.width,
                .height = 0};
    if (files.size() > 1) {
        chart.panels = overlaid(files, isInMinutes, chart);
    } else {
        for (const DataSet* set : sets) {
            chart.panels.push_back(panelOf(*set, isInMinutes, chart, !options.isWithoutPeaks));
        }
    }
    chart.height = options.height.value_or(defaultHeight(chart.panels.size(), chart.width));
    if (options.paper) {
        fitTo(chart, *options.paper);
    }
    return chart;
}

} // namespace korlit::host
