#include "host/plot/chart_legend.h"

#include "host/plot/chart_panels.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

namespace korlit::host {

namespace {

constexpr double strokeLength = 22;
constexpr double strokeGap = 6;
constexpr double entryGap = 18;
constexpr double rowHeight = 16;
constexpr double spaceAbove = 4;

/// A name with its place below the subtitle.
struct LegendEntry {
    std::string name;
    LineStyle style;
    double x = 0;
    double y = 0; ///< of the letters' base, from the legend's top
};

/// The panel with the most lines has all names.
const ChartPanel* namingPanel(const Chart& chart) {
    const auto lineCount = [](const ChartPanel& panel) { return panel.lines.size(); };
    const auto panel = std::ranges::max_element(chart.panels, {}, lineCount);
    return panel == chart.panels.end() || panel->lines.size() < 2 ? nullptr : &*panel;
}

/// As many in a row as fit from `left` on.
std::vector<LegendEntry> legendOf(cairo_t* context, const Chart& chart, double left) {
    std::vector<LegendEntry> entries;
    const ChartPanel* panel = namingPanel(chart);
    if (panel == nullptr) {
        return entries;
    }
    setFont(context, textSize);
    const double right = chart.width - outerMargin;
    double x = left;
    double y = rowHeight + spaceAbove;
    for (std::size_t i = 0; i < panel->lines.size(); ++i) {
        const std::string name =
            fitted(context, panel->lines[i].name, right - left - strokeLength - strokeGap);
        const double width = strokeLength + strokeGap + drawnWidth(context, name);
        if (x > left && x + width > right) {
            x = left;
            y += rowHeight;
        }
        entries.push_back(
            {.name = name, .style = lineStyle(i, panel->lines.size()), .x = x, .y = y});
        x += width + entryGap;
    }
    return entries;
}

} // namespace

LineStyle lineStyle(std::size_t index, std::size_t count) {
    constexpr std::array<Colour, 7> colours{{{0.00, 0.45, 0.70},
                                             {0.84, 0.37, 0.00},
                                             {0.00, 0.62, 0.45},
                                             {0.80, 0.47, 0.65},
                                             {0.90, 0.62, 0.00},
                                             {0.34, 0.71, 0.91},
                                             {0.00, 0.00, 0.00}}};
    if (count < 2) {
        return {.colour = signalBlue};
    }
    return {.colour = colours.at(index % colours.size()),
            .isDashed = index / colours.size() % 2 == 1};
}

void setStyle(cairo_t* context, const LineStyle& style) {
    constexpr std::array<double, 2> dashes{5, 2.5};
    setColour(context, style.colour);
    cairo_set_dash(context, dashes.data(), style.isDashed ? static_cast<int>(dashes.size()) : 0, 0);
}

double legendHeight(cairo_t* context, const Chart& chart) {
    constexpr double widestMargin = 100;
    const std::vector<LegendEntry> entries = legendOf(context, chart, widestMargin);
    return entries.empty() ? 0 : entries.back().y;
}

void drawLegend(cairo_t* context, const Chart& chart, double left) {
    const double top = chart.subtitle.empty() ? titleBaseline : subtitleBaseline;
    for (const auto& [name, style, x, y] : legendOf(context, chart, left)) {
        const double middle = top + y - textSize * halfCapital;
        setStyle(context, style);
        cairo_set_line_width(context, 2);
        drawLine(context, x, middle, x + strokeLength, middle);
        setStyle(context, {.colour = ink});
        drawText(context, name, x + strokeLength + strokeGap, top + y);
    }
}

} // namespace korlit::host
