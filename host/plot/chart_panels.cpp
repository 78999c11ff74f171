#include "host/plot/chart_panels.h"

#include "host/plot/chart_legend.h"
#include "host/plot/chart_pen.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <optional>
#include <stdexcept>

namespace korlit::host {

namespace {

constexpr double axisHeight = 50;
constexpr double noteHeight = 15;
constexpr double panelTitleHeight = 22;
constexpr double panelGap = 12;
constexpr double leastPlotHeight = 64;
constexpr double leastPlotWidth = 60;
constexpr double goodPlotWidth = 120;

double titleHeightOf(const ChartPanel& panel) {
    return panel.title.empty() && panel.note.empty() && panel.peaks.empty() ? 0 : panelTitleHeight;
}

double headerHeightOf(cairo_t* context, const Chart& chart) {
    return (chart.subtitle.empty() ? titleBaseline : subtitleBaseline) + 10 +
           legendHeight(context, chart);
}

/// How panels stand: the same number in each row but the last, all of one height.
struct Grid {
    std::size_t columns = 1;
    std::size_t rows = 1;
    double top = 0;
    double titleHeight = 0; ///< above each row
    double plotHeight = 0;
    double pitch = 0; ///< from one column to the next
};

Grid gridOf(cairo_t* context, const Chart& chart, std::size_t columns) {
    Grid grid{.columns = columns,
              .rows = rowCount(chart.panels.size(), columns),
              .top = headerHeightOf(context, chart)};
    for (const ChartPanel& panel : chart.panels) {
        grid.titleHeight = std::max(grid.titleHeight, titleHeightOf(panel));
    }
    const auto rows = static_cast<double>(grid.rows);
    const double beside = grid.top + axisHeight + (chart.note.empty() ? 0 : noteHeight) +
                          grid.titleHeight * rows + panelGap * (rows - 1);
    grid.plotHeight = (chart.height - beside) / rows;
    grid.pitch = (chart.width - outerMargin) / static_cast<double>(columns);
    return grid;
}

/// As many columns as look best, or more where the height asks for them.
Grid gridFor(cairo_t* context, const Chart& chart, double leftMargin) {
    constexpr double goodPlotHeight = 100;
    Grid best = gridOf(context, chart, columnCount(chart.panels.size(), chart.width));
    for (std::size_t columns = best.columns + 1; columns <= chart.panels.size(); ++columns) {
        const Grid grid = gridOf(context, chart, columns);
        if (best.plotHeight >= goodPlotHeight || grid.pitch - leftMargin < goodPlotWidth) {
            break;
        }
        best = grid;
    }
    if (best.plotHeight < leastPlotHeight) {
        const double lacking = (leastPlotHeight - best.plotHeight) * static_cast<double>(best.rows);
        throw std::runtime_error{
            "a chart of " + std::to_string(chart.panels.size()) +
            (chart.panels.size() > 1 ? " panels" : " panel") + " needs a height of " +
            std::to_string(std::lround(std::ceil(chart.height + lacking))) + " at least"};
    }
    return best;
}

Box plotBox(const Grid& grid, std::size_t panel, double leftMargin) {
    const double left = static_cast<double>(panel % grid.columns) * grid.pitch + leftMargin;
    const double panelHeight = grid.titleHeight + grid.plotHeight + panelGap;
    const std::size_t row = panel / grid.columns;
    const double top = grid.top + grid.titleHeight + static_cast<double>(row) * panelHeight;
    return {.left = left,
            .top = top,
            .right = std::max(left - leftMargin + grid.pitch, left + leastPlotWidth),
            .bottom = top + grid.plotHeight};
}

/// The lowest and the highest value of the lines; from 0 to 0 if they have none.
Range valuesOf(const std::vector<ChartLine>& lines) {
    std::optional<Range> values;
    for (const ChartLine& line : lines) {
        for (const LinePoint& point : line.points) {
            if (!std::isnan(point.y)) {
                const Range known = values.value_or(Range{.from = point.y, .to = point.y});
                values = {.from = std::min(known.from, point.y), .to = std::max(known.to, point.y)};
            }
        }
    }
    return values.value_or(Range{});
}

double highestOf(const std::vector<ChartLine>& lines, const Range& times) {
    double highest = -std::numeric_limits<double>::infinity();
    for (const ChartLine& line : lines) {
        highest = std::max(highest, highestWithin(line.points, times));
    }
    return highest;
}

/// How far a peak goes from its baseline, or from nothing if it has none.
double riseOf(const ChartPeak& peak) {
    if (std::isnan(peak.apex.y)) {
        return 0;
    }
    return std::abs(peak.baseline
                        ? peak.apex.y - (peak.baseline->first.y + peak.baseline->second.y) / 2
                        : peak.apex.y);
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

/// Compounds have long names, but the signal needs the room.
double longestLabel(double plotHeight) {
    constexpr double share = 0.25;
    constexpr double shortName = 60;
    constexpr double leadersAndSignal = 60;
    return std::min(plotHeight - leadersAndSignal, std::max(plotHeight * share, shortName));
}

/// The signal's highest value beside a peak that goes down, whose name else stood in the dip.
double heightBeside(const ChartPanel& panel, const ChartPeak& peak) {
    if (!peak.isNegative() || !peak.start || !peak.end) {
        return -std::numeric_limits<double>::infinity();
    }
    return highestOf(panel.lines, {.from = peak.start->x, .to = peak.end->x});
}

void placePlotLabels(cairo_t* context, Plot& plot, const Range& signal) {
    const double longest = longestLabel(plot.box.height());
    const std::vector<const ChartPeak*> peaks = peaksToLabel(plot);
    setFont(context, smallSize);
    std::vector<Label> labels;
    for (const ChartPeak* peak : peaks) {
        plot.labels.push_back(
            {.text = fitted(context, peak->label, longest), .place = {}, .apex = peak->apex});
        labels.push_back({.anchor = plot.x(peak->apex.x),
                          .length = drawnWidth(context, plot.labels.back().text),
                          .leastBase = heightBeside(*plot.panel, *peak)});
    }
    const auto highest = [&](const Range& columns) {
        return std::max(signal.from, highestOf(plot.panel->lines, {.from = plot.time(columns.from),
                                                                   .to = plot.time(columns.to)}));
    };
    const std::vector<LabelPlace> places = placeLabels(labels, plot.box.columns(), highest);
    for (std::size_t i = 0; i < places.size(); ++i) {
        plot.labels[i].place = places[i];
    }
    plot.values = valuesToShow(signal, labels, places, plot.box.height());
}

/// The ends of the axis that were asked for, and those of the signal for the others, unless it lies
/// beyond.
Range boundedBy(const Bounds& bounds, const Range& values) {
    Range bounded{.from = bounds.from.value_or(values.from), .to = bounds.to.value_or(values.to)};
    if (bounded.length() < 0) {
        const double asked = bounds.from.value_or(bounded.to);
        const Range around = widened({.from = asked, .to = asked});
        bounded = bounds.from ? Range{.from = asked, .to = around.to}
                              : Range{.from = around.from, .to = asked};
    }
    return widened(bounded);
}

/// Takes over the ends of the axis that were asked for. Names stay within the plot.
void applyBounds(cairo_t* context, Plot& plot, const Bounds& bounds) {
    plot.values = boundedBy(bounds, plot.values);
    if (!bounds.from && !bounds.to) {
        return;
    }
    const double valuePerPoint = plot.values.length() / plot.box.height();
    setFont(context, smallSize);
    for (PlacedLabel& label : plot.labels) {
        const double length = drawnWidth(context, label.text) + label.place.clearance();
        const double highest = std::max(plot.values.from, plot.values.to - length * valuePerPoint);
        label.isOverSignal = label.place.base > highest;
        label.place.base = std::clamp(label.place.base, plot.values.from, highest);
    }
}

Plot plotIn(cairo_t* context, const Chart& chart, const ChartPanel& panel, const Box& box) {
    constexpr double tickDistance = 42;
    Plot plot;
    plot.panel = &panel;
    plot.box = box;
    plot.times = chart.times;
    placePlotLabels(context, plot, valuesOf(panel.lines));
    applyBounds(context, plot, chart.values);
    const double most = std::max(1.0, box.height() / tickDistance);
    plot.valueTicks = ticksFor(plot.values, static_cast<int>(most));
    return plot;
}

std::vector<Plot> plotsBeside(cairo_t* context, const Chart& chart, double leftMargin) {
    const Grid grid = gridFor(context, chart, leftMargin);
    std::vector<Plot> plots;
    for (std::size_t i = 0; i < chart.panels.size(); ++i) {
        plots.push_back(plotIn(context, chart, chart.panels[i], plotBox(grid, i, leftMargin)));
        plots.back().outerLeft = plots.back().box.left - leftMargin + outerMargin;
        plots.back().isLowest = i + grid.columns >= chart.panels.size();
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

std::size_t columnCount(std::size_t panelCount, double width) {
    constexpr std::size_t mostInOneColumn = 4;
    constexpr double roomForTwo = 480;
    return panelCount > mostInOneColumn && width >= roomForTwo ? 2 : 1;
}

std::size_t rowCount(std::size_t panelCount, std::size_t columns) {
    return (panelCount + columns - 1) / columns;
}

std::vector<Plot> layOut(cairo_t* context, const Chart& chart) {
    constexpr double firstMargin = 70;
    // The texts at the axes decide about the margin, and depend themselves on the layout.
    const double left = leftMarginFor(context, plotsBeside(context, chart, firstMargin));
    return plotsBeside(context, chart, left);
}

} // namespace korlit::host
