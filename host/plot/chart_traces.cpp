#include "host/plot/chart_traces.h"

#include "host/plot/chart_legend.h"
#include "host/plot/chart_pen.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <numbers>
#include <optional>
#include <vector>

namespace korlit::host {

namespace {

/// Marks where a line has no value, from the sample before to the one behind.
void shadeGaps(cairo_t* context, const Plot& plot, const std::vector<LinePoint>& line) {
    constexpr double narrowest = 1.5;
    setColour(context, gapGrey);
    for (auto first = line.begin(); first != line.end();) {
        const auto gap = std::find_if(first, line.end(), isGap);
        const auto end = std::find_if_not(gap, line.end(), isGap);
        if (gap != end) {
            const double from = plot.x(gap == line.begin() ? gap->x : std::prev(gap)->x);
            const double to = plot.x(end == line.end() ? std::prev(end)->x : end->x);
            cairo_rectangle(context, from, plot.box.top, std::max(to - from, narrowest),
                            plot.box.height());
            cairo_fill(context);
        }
        first = end;
    }
}

/// Draws each stretch of a line between its gaps, one of a single point as a dot.
void drawSignal(cairo_t* context, const Plot& plot, const std::vector<LinePoint>& line) {
    constexpr double dotRadius = 1.5;
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

void drawSignals(cairo_t* context, const Plot& plot) {
    const std::vector<ChartLine>& lines = plot.panel->lines;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        setStyle(context, lineStyle(i, lines.size()));
        drawSignal(context, plot, lines[i].points);
    }
    setStyle(context, {.colour = ink});
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
    for (const LinePoint& point : cutTo(plot.panel->lines.front().points, times)) {
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
    setStyle(context, {.colour = peak.isBaselineMeasured ? baselineRed : faint,
                       .isDashed = !peak.isBaselineMeasured});
    cairo_set_line_width(context, 0.9);
    cairo_stroke(context);
    setStyle(context, {.colour = ink});
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

/// A label with the line that leads from its peak to it, where it isn't just above it.
void drawLabel(cairo_t* context, const Plot& plot, const PlacedLabel& label) {
    constexpr double gap = 2;
    constexpr double shortestLeader = 4;
    const double x = plot.x(label.apex.x);
    const double start = plot.y(label.apex.y) - gap;
    const double bend = plot.y(label.place.base) - labelClearance;
    const double bottom = plot.y(label.place.base) - label.place.clearance();
    if (!isGap(label.apex) && start - bottom - gap > shortestLeader) {
        cairo_move_to(context, x, start);
        cairo_line_to(context, x, std::min(start, bend));
        cairo_line_to(context, label.place.centre, bottom + gap);
        setColour(context, leaderGrey);
        cairo_set_line_width(context, 0.7);
        cairo_stroke(context);
    }
    if (label.isOverSignal) {
        setColour(context, paper);
        const double length = drawnWidth(context, label.text);
        cairo_rectangle(context, label.place.centre - labelThickness / 2, bottom - length,
                        labelThickness, length);
        cairo_fill(context);
    }
    setColour(context, ink);
    drawUpwards(context, label.text, smallSize, label.place.centre, bottom, 0);
}

} // namespace

void drawTraces(cairo_t* context, const Plot& plot) {
    cairo_save(context);
    cairo_rectangle(context, plot.box.left, plot.box.top, plot.box.width(), plot.box.height());
    cairo_clip(context);
    if (plot.panel->lines.size() == 1) {
        shadeGaps(context, plot, plot.panel->lines.front().points);
    }
    for (const ChartPeak& peak : plot.panel->peaks) {
        shadePeak(context, plot, peak);
    }
    for (const ChartPeak& peak : plot.panel->peaks) {
        drawBaseline(context, plot, peak);
    }
    drawSignals(context, plot);
    for (const ChartPeak& peak : plot.panel->peaks) {
        drawBounds(context, plot, peak);
    }
    cairo_restore(context);
}

void drawLabels(cairo_t* context, const Plot& plot) {
    setFont(context, smallSize);
    for (const PlacedLabel& label : plot.labels) {
        drawLabel(context, plot, label);
    }
}

} // namespace korlit::host
