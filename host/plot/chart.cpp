#include "host/plot/chart.h"

#include "host/plot/chart_text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <stdexcept>

namespace korlit::host {

namespace {

struct Colour {
    double red;
    double green;
    double blue;
};
constexpr Colour paper{1, 1, 1};
constexpr Colour ink{0.13, 0.13, 0.15};
constexpr Colour faint{0.42, 0.42, 0.45};
constexpr Colour gridGrey{0.91, 0.91, 0.92};
constexpr Colour leaderGrey{0.62, 0.62, 0.65};
constexpr Colour signalBlue{0.06, 0.20, 0.48};
constexpr Colour peakBlue{0.86, 0.91, 0.97};
constexpr Colour baselineRed{0.75, 0.25, 0.20};

constexpr double titleSize = 17;
constexpr double panelTitleSize = 12;
constexpr double textSize = 11;
constexpr double smallSize = 10;

constexpr double halfCapital = 0.36; // of a font's size, in any common one

constexpr double outerMargin = 18;
constexpr double titleBaseline = 30;
constexpr double subtitleBaseline = 49;
constexpr double axisHeight = 50;
constexpr double noteHeight = 15;
constexpr double panelTitleHeight = 22;
constexpr double panelGap = 12;
constexpr double leastPlotHeight = 100;
constexpr double leastPlotWidth = 120;
constexpr double tickLength = 5;
constexpr double smallTickLength = 3;

struct Box {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    double width() const { return right - left; }
    double height() const { return bottom - top; }
    Range columns() const { return {.from = left, .to = right}; }
};

/// A label of a panel, with the peak that it belongs to.
struct PlacedLabel {
    std::string text;
    LabelPlace place;
    LinePoint apex;
};

/// A panel with everything that has been decided about it.
struct Plot {
    const ChartPanel* panel = nullptr;
    Box box;
    Range times;
    Range values;
    Ticks valueTicks;
    std::vector<PlacedLabel> labels;
    std::string note;

    double x(double time) const {
        return box.left + (time - times.from) / times.length() * box.width();
    }
    /// Kept near the plot, as cairo can't go far beyond.
    double y(double value) const {
        const double height = (value - values.from) / values.length() * box.height();
        return std::clamp(box.bottom - height, box.top - 1000, box.bottom + 1000);
    }
    double time(double column) const {
        return times.from + (column - box.left) / box.width() * times.length();
    }
};

void setColour(cairo_t* context, const Colour& colour) {
    cairo_set_source_rgb(context, colour.red, colour.green, colour.blue);
}

void setFont(cairo_t* context, double size, bool isBold = false) {
    cairo_select_font_face(context, "Sans", CAIRO_FONT_SLANT_NORMAL,
                           isBold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context, size);
}

double widthOf(cairo_t* context, const std::string& text) {
    cairo_text_extents_t extents{};
    cairo_text_extents(context, text.c_str(), &extents);
    return extents.x_advance;
}

/// The text itself, or as much of its start as is no wider than `width` with dots behind it.
std::string fitted(cairo_t* context, const std::string& text, double width) {
    // Hardly a character is narrower than a point, and long texts are slow to measure.
    const auto most = static_cast<std::size_t>(std::max(width, 0.0));
    std::string whole = firstCharacters(text, most);
    if (whole.size() == text.size() && widthOf(context, whole) <= width) {
        return whole;
    }
    std::size_t fitting = 0;
    for (std::size_t end = most; fitting < end;) {
        const std::size_t middle = (fitting + end + 1) / 2;
        const bool fits = widthOf(context, firstCharacters(whole, middle) + "…") <= width;
        fitting = fits ? middle : fitting;
        end = fits ? end : middle - 1;
    }
    return firstCharacters(whole, fitting) + "…";
}

/// `alignment`: 0 starts the text at x, 0.5 centres it there, 1 ends it there.
void drawText(cairo_t* context, const std::string& text, double x, double y, double alignment = 0) {
    cairo_move_to(context, x - widthOf(context, text) * alignment, y);
    if (cairo_surface_get_type(cairo_get_target(context)) == CAIRO_SURFACE_TYPE_IMAGE) {
        cairo_text_path(context, text.c_str()); // letters at whole pixels stand unevenly
        cairo_fill(context);
    } else {
        cairo_show_text(context, text.c_str());
    }
}

/// Writes upwards in the font's size, with the letters' bodies centred at x.
void drawUpwards(cairo_t* context, const std::string& text, double size, double x, double y,
                 double alignment) {
    cairo_save(context);
    cairo_translate(context, x + size * halfCapital, y);
    cairo_rotate(context, -std::numbers::pi / 2);
    drawText(context, text, 0, 0, alignment);
    cairo_restore(context);
}

void drawLine(cairo_t* context, double x1, double y1, double x2, double y2) {
    cairo_move_to(context, x1, y1);
    cairo_line_to(context, x2, y2);
    cairo_stroke(context);
}

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
        labels.push_back(
            {.anchor = plot.x(peak->apex.x), .length = widthOf(context, plot.labels.back().text)});
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

std::vector<Plot> layOut(cairo_t* context, const Chart& chart, double leftMargin) {
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
            widest = std::max(widest, widthOf(context, plot.valueTicks.text(i)));
        }
    }
    return axisTitleWidth + outerMargin + widest + tickLength + 3;
}

/// "Time / min", or "Signal / 10⁶ mAU" where the ticks leave a power of ten to the title.
std::string axisTitle(const std::string& quantity, const Ticks& ticks, const std::string& unit) {
    const std::string factor = ticks.namedExponent == 0 ? "" : "10" + raised(ticks.namedExponent);
    const std::string whole = factor + (factor.empty() || unit.empty() ? "" : " ") + unit;
    return quantity + (whole.empty() ? "" : " / " + whole);
}

void drawGrid(cairo_t* context, const Plot& plot, const Ticks& timeTicks) {
    const auto& [left, top, right, bottom] = plot.box;
    setColour(context, gridGrey);
    cairo_set_line_width(context, 0.7);
    for (int i = 0; i < plot.valueTicks.count; ++i) {
        const double y = plot.y(plot.valueTicks.value(i));
        drawLine(context, left, y, right, y);
    }
    for (int i = 0; i < timeTicks.count; ++i) {
        const double x = plot.x(timeTicks.value(i));
        drawLine(context, x, top, x, bottom);
    }
}

/// Calls `draw` with the place and the length of each tick within the range, large ones and small
/// ones between them.
template <typename Draw>
void forEachTick(const Ticks& ticks, const Range& range, const Draw& draw) {
    for (int i = -1; i < ticks.count; ++i) {
        for (int part = 0; part < ticks.parts(); ++part) {
            const double value = ticks.value(i) + ticks.step() * part / ticks.parts();
            if (range.contains(value)) {
                draw(value, part == 0 ? tickLength : smallTickLength);
            }
        }
    }
}

void drawAxes(cairo_t* context, const Plot& plot, const Ticks& timeTicks) {
    const auto& [left, top, right, bottom] = plot.box;
    setColour(context, ink);
    cairo_set_line_width(context, 0.9);
    cairo_rectangle(context, left, top, right - left, bottom - top);
    cairo_stroke(context);
    forEachTick(plot.valueTicks, plot.values, [&](double value, double length) {
        drawLine(context, plot.box.left - length, plot.y(value), plot.box.left, plot.y(value));
    });
    forEachTick(timeTicks, plot.times, [&](double time, double length) {
        drawLine(context, plot.x(time), plot.box.bottom, plot.x(time), plot.box.bottom + length);
    });
}

void writeValueAxis(cairo_t* context, const Plot& plot) {
    const Box& box = plot.box;
    setColour(context, ink);
    setFont(context, textSize);
    for (int i = 0; i < plot.valueTicks.count; ++i) {
        drawText(context, plot.valueTicks.text(i), box.left - tickLength - 3,
                 plot.y(plot.valueTicks.value(i)) + textSize * halfCapital, 1);
    }
    const std::string title = axisTitle("Signal", plot.valueTicks, plot.panel->unit);
    drawUpwards(context, fitted(context, title, box.height()), textSize, outerMargin,
                (box.top + box.bottom) / 2, 0.5);
}

/// As many ticks as have room for their texts.
Ticks timeTicksFor(cairo_t* context, const Plot& plot) {
    constexpr double distance = 75;
    constexpr double leastGap = 12;
    setFont(context, textSize);
    Ticks ticks;
    for (int most = static_cast<int>(plot.box.width() / distance); most > 0; --most) {
        ticks = ticksFor(plot.times, most);
        const double last = widthOf(context, ticks.text(ticks.count - 1));
        const double widest = std::max(last, widthOf(context, ticks.text(0)));
        if (widest + leastGap < plot.x(plot.times.from + ticks.step()) - plot.box.left) {
            break;
        }
    }
    return ticks;
}

void writeTimeAxis(cairo_t* context, const Plot& plot, const Ticks& ticks, const Chart& chart) {
    constexpr double edge = 3;
    setColour(context, ink);
    setFont(context, textSize);
    for (int i = 0; i < ticks.count; ++i) {
        const double half = widthOf(context, ticks.text(i)) / 2;
        const double centre = std::min(plot.x(ticks.value(i)), chart.width - edge - half);
        drawText(context, ticks.text(i), centre, plot.box.bottom + tickLength + 3 + textSize, 0.5);
    }
    drawText(context, axisTitle(chart.timeQuantity, ticks, chart.timeUnit),
             (plot.box.left + plot.box.right) / 2, plot.box.bottom + 38, 0.5);
}

bool isGap(const LinePoint& point) {
    return std::isnan(point.y);
}

/// Draws each stretch of a line between its gaps, one of a single point as a dot.
void drawSignal(cairo_t* context, const Plot& plot) {
    constexpr double dotRadius = 1.5;
    const std::vector<LinePoint>& line = plot.panel->line;
    setColour(context, signalBlue);
    cairo_set_line_width(context, 1.1);
    for (auto first = line.begin(); first != line.end();) {
        const auto end = std::find_if(first, line.end(), isGap);
        for (auto point = first; point != end; ++point) {
            cairo_line_to(context, plot.x(point->x), plot.y(point->y));
        }
        cairo_stroke(context);
        if (end - first == 1) {
            cairo_arc(context, plot.x(first->x), plot.y(first->y), dotRadius, 0,
                      2 * std::numbers::pi);
            cairo_fill(context);
        }
        first = std::find_if_not(end, line.end(), isGap);
    }
}

/// The area between a peak and its baseline.
void shadePeak(cairo_t* context, const Plot& plot, const ChartPeak& peak) {
    if (!peak.start || !peak.end || !peak.baseline) {
        return;
    }
    const Range times{.from = std::max(peak.start->x, plot.times.from),
                      .to = std::min(peak.end->x, plot.times.to)};
    const std::array baseline{peak.baseline->first, peak.baseline->second};
    const std::vector<LinePoint> below = cutTo(baseline, times);
    if (times.length() <= 0 || below.size() < 2) {
        return;
    }
    cairo_move_to(context, plot.x(below.front().x), plot.y(below.front().y));
    for (const LinePoint& point : cutTo(plot.panel->line, times)) {
        if (!std::isnan(point.y)) {
            cairo_line_to(context, plot.x(point.x), plot.y(point.y));
        }
    }
    cairo_line_to(context, plot.x(below.back().x), plot.y(below.back().y));
    cairo_close_path(context);
    setColour(context, peakBlue);
    cairo_fill(context);
}

void drawBaseline(cairo_t* context, const Plot& plot, const ChartPeak& peak) {
    if (!peak.baseline) {
        return;
    }
    const std::array ends{peak.baseline->first, peak.baseline->second};
    for (const LinePoint& point : cutTo(ends, plot.times)) {
        cairo_line_to(context, plot.x(point.x), plot.y(point.y));
    }
    setColour(context, baselineRed);
    cairo_set_line_width(context, 0.9);
    cairo_stroke(context);
}

/// Short ticks across the signal where a peak starts and ends.
void drawBounds(cairo_t* context, const Plot& plot, const ChartPeak& peak) {
    constexpr double reach = 4;
    setColour(context, baselineRed);
    cairo_set_line_width(context, 0.9);
    for (const std::optional<LinePoint>& bound : {peak.start, peak.end}) {
        if (bound && plot.times.contains(bound->x) && !std::isnan(bound->y)) {
            const double x = plot.x(bound->x);
            drawLine(context, x, plot.y(bound->y) - reach, x, plot.y(bound->y) + reach);
        }
    }
}

void drawTraces(cairo_t* context, const Plot& plot) {
    cairo_save(context);
    cairo_rectangle(context, plot.box.left, plot.box.top, plot.box.width(), plot.box.height());
    cairo_clip(context);
    for (const ChartPeak& peak : plot.panel->peaks) {
        shadePeak(context, plot, peak);
    }
    for (const ChartPeak& peak : plot.panel->peaks) {
        drawBaseline(context, plot, peak);
    }
    drawSignal(context, plot);
    for (const ChartPeak& peak : plot.panel->peaks) {
        drawBounds(context, plot, peak);
    }
    cairo_restore(context);
}

/// A label with the line that leads from its peak to it, where it isn't just above it.
void drawLabel(cairo_t* context, const Plot& plot, const PlacedLabel& label) {
    constexpr double gap = 2;
    constexpr double shortestLeader = 4;
    const double x = plot.x(label.apex.x);
    const double start = plot.y(label.apex.y) - gap;
    const double bend = plot.y(label.place.base) - labelClearance;
    const double bottom = plot.y(label.place.base) - label.place.clearance();
    if (start - bottom - gap > shortestLeader) {
        cairo_move_to(context, x, start);
        cairo_line_to(context, x, std::min(start, bend));
        cairo_line_to(context, label.place.centre, bottom + gap);
        setColour(context, leaderGrey);
        cairo_set_line_width(context, 0.7);
        cairo_stroke(context);
    }
    setColour(context, ink);
    drawUpwards(context, label.text, smallSize, label.place.centre, bottom, 0);
}

void drawPanelTitle(cairo_t* context, const Plot& plot) {
    const double y = plot.box.top - 6;
    setFont(context, smallSize);
    const std::string note = fitted(context, plot.note, plot.box.width() / 2);
    const double room = plot.box.width() - widthOf(context, note) - textSize;
    setColour(context, faint);
    drawText(context, note, plot.box.right, y, 1);
    setFont(context, panelTitleSize, true);
    setColour(context, ink);
    drawText(context, fitted(context, plot.panel->title, room), plot.box.left, y);
}

void drawPlot(cairo_t* context, const Plot& plot, const Ticks& timeTicks) {
    drawGrid(context, plot, timeTicks);
    drawTraces(context, plot);
    drawAxes(context, plot, timeTicks);
    writeValueAxis(context, plot);
    drawPanelTitle(context, plot);
    setFont(context, smallSize);
    for (const PlacedLabel& label : plot.labels) {
        drawLabel(context, plot, label);
    }
    if (std::ranges::all_of(plot.panel->line, isGap)) {
        setFont(context, panelTitleSize);
        setColour(context, faint);
        drawText(context, "No samples to draw", (plot.box.left + plot.box.right) / 2,
                 plot.box.top + plot.box.height() / 3, 0.5);
    }
}

void drawHeader(cairo_t* context, const Chart& chart, double left) {
    const double room = chart.width - outerMargin - left;
    setColour(context, ink);
    setFont(context, titleSize, true);
    drawText(context, fitted(context, chart.title, room), left, titleBaseline);
    setColour(context, faint);
    setFont(context, textSize);
    drawText(context, fitted(context, chart.subtitle, room), left, subtitleBaseline);
    setFont(context, smallSize);
    drawText(context, fitted(context, chart.note, room), left, chart.height - 8);
}

void prepare(cairo_t* context) {
    cairo_font_options_t* options = cairo_font_options_create();
    // Widths as they are measured, the same in all kinds of files.
    cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
    cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
    cairo_set_font_options(context, options);
    cairo_font_options_destroy(options);
    cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_BUTT);
    setColour(context, paper);
    cairo_paint(context);
}

} // namespace

double defaultHeight(std::size_t panelCount) {
    constexpr std::array<double, 5> heights{560, 560, 880, 1100, 1340};
    constexpr double further = 270;
    return panelCount < heights.size() ? heights.at(panelCount)
                                       : further * static_cast<double>(panelCount);
}

void drawChart(cairo_t* context, const Chart& chart) {
    constexpr double firstMargin = 70;
    prepare(context);
    // The texts at the axes decide about the margin, and depend themselves on the layout.
    const double left = leftMarginFor(context, layOut(context, chart, firstMargin));
    const std::vector<Plot> plots = layOut(context, chart, left);
    const Ticks timeTicks = timeTicksFor(context, plots.front());
    drawHeader(context, chart, left);
    for (const Plot& plot : plots) {
        drawPlot(context, plot, timeTicks);
    }
    writeTimeAxis(context, plots.back(), timeTicks, chart);
}

} // namespace korlit::host
