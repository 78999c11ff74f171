#include "host/plot/chart_panels.h"

#include "host/plot/chart_pen.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <optional>
#include <stdexcept>

namespace korlit::host {

namespace {

constexpr double axisHeight = 50;
constexpr double noteHeight = 15;
constexpr double panelTitleHeight = 22;
constexpr double panelGap = 12;
constexpr double leastPlotHeight = 100;
constexpr double leastPlotWidth = 120;

double titleHeightOf(const ChartPanel& panel) {
    return panel.title.empty() && panel.note.empty() && panel.peaks.empty() ? 0 : panelTitleHeight;
}

double headerHeightOf(const Chart& chart) {
    return (chart.subtitle.empty() ? titleBaseline : subtitleBaseline) + 10;
}

/// The part of a chart's height that isn't for its plots.
double heightBesidePlots(const Chart& chart) {
    double height = headerHeightOf(chart) + axisHeight + (chart.note.empty() ? 0 : noteHeight);
    for (const ChartPanel& panel : chart.panels) {
        height += titleHeightOf(panel);
    }
    return height + panelGap * static_cast<double>(chart.panels.size() - 1);
}

std::vector<Box> plotBoxes(const Chart& chart, double leftMargin) {
    const auto count = static_cast<double>(chart.panels.size());
    const double plotHeight = (chart.height - heightBesidePlots(chart)) / count;
    if (plotHeight < leastPlotHeight) {
        const double least = std::ceil(heightBesidePlots(chart) + leastPlotHeight * count);
        throw std::runtime_error{"a chart of " + std::to_string(chart.panels.size()) +
                                 (count > 1 ? " panels" : " panel") + " needs a height of " +
                                 std::to_string(std::lround(least)) + " at least"};
    }
    std::vector<Box> boxes;
    double top = headerHeightOf(chart);
    for (const ChartPanel& panel : chart.panels) {
        top += titleHeightOf(panel);
        boxes.push_back({.left = leftMargin,
                         .top = top,
                         .right = std::max(chart.width - outerMargin, leftMargin + leastPlotWidth),
                         .bottom = top + plotHeight});
        top += plotHeight + panelGap;
    }
    return boxes;
}

/// The lowest and the highest value of a line; from 0 to 0 for one without values.
Range valuesOf(const std::vector<LinePoint>& line) {
    std::optional<Range> values;
    for (const LinePoint& point : line) {
        if (!std::isnan(point.y)) {
            const Range known = values.value_or(Range{.from = point.y, .to = point.y});
            values = {.from = std::min(known.from, point.y), .to = std::max(known.to, point.y)};
        }
    }
    return values.value_or(Range{});
}

/// How far a peak rises above its baseline, or above nothing if it has none.
double riseOf(const ChartPeak& peak) {
    if (std::isnan(peak.apex.y)) {
        return 0;
    }
    return peak.baseline ? peak.apex.y - (peak.baseline->first.y + peak.baseline->second.y) / 2
                         : peak.apex.y;
}

/// The peaks within the times shown, the highest first.
std::vector<const ChartPeak*> visiblePeaks(const Plot& plot) {
    std::vector<const ChartPeak*> peaks;
    for (const ChartPeak& peak : plot.panel->peaks) {
        if (plot.times.contains(peak.apex.x)) {
            peaks.push_back(&peak);
        }
    }
    std::ranges::stable_sort(peaks, std::greater{},
                             [](const ChartPeak* peak) { return riseOf(*peak); });
    return peaks;
}

/// The peaks that get a label, by time. The panel's note tells if those aren't all.
std::vector<const ChartPeak*> peaksToLabel(Plot& plot) {
    const std::vector<const ChartPeak*> visible = visiblePeaks(plot);
    std::vector<double> anchors;
    anchors.reserve(visible.size());
    for (const ChartPeak* peak : visible) {
        anchors.push_back(plot.x(peak->apex.x));
    }
    std::vector<const ChartPeak*> labelled;
    for (const std::size_t i : labelsWithRoom(anchors, plot.box.columns())) {
        labelled.push_back(visible[i]);
    }
    plot.note = plot.panel->note;
    if (labelled.size() < visible.size()) {
        plot.note += (plot.note.empty() ? "" : "; ") + std::string{"labels at "} +
                     std::to_string(labelled.size()) + " of " + std::to_string(visible.size()) +
                     " peaks";
    }
    return labelled;
}

/// Compounds have long names, but the signal needs room as well.
double longestLabel(double plotHeight) {
    constexpr double commonName = 200;
    constexpr double leadersAndSignal = 60;
    return std::min(plotHeight - leadersAndSignal,
                    std::max(plotHeight * 0.4, std::min(plotHeight * 0.6, commonName)));
}

void placePlotLabels(cairo_t* context, Plot& plot) {
    const double longest = longestLabel(plot.box.height());
    const Range signal = valuesOf(plot.panel->line);
    const std::vector<const ChartPeak*> peaks = peaksToLabel(plot);
    setFont(context, smallSize);
    std::vector<Label> labels;
    for (const ChartPeak* peak : peaks) {
        plot.labels.push_back(
            {.text = fitted(context, peak->label, longest),
             .place = {},
             .apex = {.x = peak->apex.x,
                      .y = std::isnan(peak->apex.y) ? signal.from : peak->apex.y}});
        labels.push_back({.anchor = plot.x(peak->apex.x),
                          .length = drawnWidth(context, plot.labels.back().text)});
    }
    const auto highest = [&](const Range& columns) {
        return std::max(signal.from,
                        highestWithin(plot.panel->line, {.from = plot.time(columns.from),
                                                         .to = plot.time(columns.to)}));
    };
    const std::vector<LabelPlace> places = placeLabels(labels, plot.box.columns(), highest);
    for (std::size_t i = 0; i < places.size(); ++i) {
        plot.labels[i].place = places[i];
    }
    plot.values = valuesToShow(signal, labels, places, plot.box.height());
}

Plot plotIn(cairo_t* context, const Chart& chart, const ChartPanel& panel, const Box& box) {
    constexpr double tickDistance = 42;
    Plot plot;
    plot.panel = &panel;
    plot.box = box;
    plot.times = chart.times;
    placePlotLabels(context, plot);
    plot.valueTicks = ticksFor(plot.values, static_cast<int>(box.height() / tickDistance));
    return plot;
}

std::vector<Plot> plotsBeside(cairo_t* context, const Chart& chart, double leftMargin) {
    const std::vector<Box> boxes = plotBoxes(chart, leftMargin);
    std::vector<Plot> plots;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        plots.push_back(plotIn(context, chart, chart.panels[i], boxes[i]));
    }
    return plots;
}

/// The margin that the texts at the axes of values need.
double leftMarginFor(cairo_t* context, const std::vector<Plot>& plots) {
    constexpr double axisTitleWidth = 20;
    setFont(context, textSize);
    double widest = 0;
    for (const Plot& plot : plots) {
        for (int i = 0; i < plot.valueTicks.count; ++i) {
            widest = std::max(widest, drawnWidth(context, plot.valueTicks.text(i)));
        }
    }
    return axisTitleWidth + outerMargin + widest + tickLength + 3;
}

} // namespace

std::vector<Plot> layOut(cairo_t* context, const Chart& chart) {
    constexpr double firstMargin = 70;
    // The texts at the axes decide about the margin, and depend themselves on the layout.
    const double left = leftMarginFor(context, plotsBeside(context, chart, firstMargin));
    return plotsBeside(context, chart, left);
}

} // namespace korlit::host
