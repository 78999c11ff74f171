#include "host/plot/chart.h"

#include "host/plot/chart_axes.h"
#include "host/plot/chart_legend.h"
#include "host/plot/chart_panels.h"
#include "host/plot/chart_pen.h"
#include "host/plot/chart_traces.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace korlit::host {

namespace {

void drawPanelTitle(cairo_t* context, const Plot& plot) {
    const double y = plot.box.top - 6;
    setFont(context, smallSize);
    const std::string note = fitted(context, plot.note, plot.box.width() / 2);
    const double room = plot.box.width() - drawnWidth(context, note) - textSize;
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
    drawLabels(context, plot);
    const auto isEmpty = [](const ChartLine& line) {
        return std::ranges::all_of(line.points, isGap);
    };
    if (std::ranges::all_of(plot.panel->lines, isEmpty)) {
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

double defaultHeight(std::size_t panelCount, double width) {
    constexpr std::array<double, 5> heights{560, 560, 880, 1100, 1340};
    constexpr double further = 270;
    constexpr double commonWidth = 1000;
    constexpr double narrowest = 0.5;
    const std::size_t rows = rowCount(panelCount, columnCount(panelCount, width));
    const double height =
        rows < heights.size() ? heights.at(rows) : further * static_cast<double>(rows);
    return std::round(height * std::clamp(width / commonWidth, narrowest, 1.0));
}

bool ChartPeak::isNegative() const {
    if (baseline) {
        return apex.y < (baseline->first.y + baseline->second.y) / 2;
    }
    return start && end && apex.y < std::min(start->y, end->y);
}

void drawChart(cairo_t* context, const Chart& chart) {
    prepare(context);
    const std::vector<Plot> plots = layOut(context, chart);
    const Ticks timeTicks = timeTicksFor(context, plots.front());
    drawHeader(context, chart, plots.front().box.left);
    drawLegend(context, chart, plots.front().box.left);
    for (const Plot& plot : plots) {
        drawPlot(context, plot, timeTicks);
    }
    for (const Plot& plot : plots) {
        if (plot.isLowest) {
            writeTimeAxis(context, plot, timeTicks, chart);
        }
    }
}

} // namespace korlit::host
