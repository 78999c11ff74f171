// A chart of chromatograms, and how it is drawn.
#pragma once

#include "host/plot/chart_layout.h"

#include <cairo.h>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace korlit::host {

/// The points are on the signal where the file doesn't say otherwise; without a value where the
/// signal has none.
struct ChartPeak {
    std::string label;
    LinePoint apex;
    std::optional<LinePoint> start;
    std::optional<LinePoint> end;
    std::optional<std::pair<LinePoint, LinePoint>> baseline;
};

struct ChartPanel {
    std::string title;
    std::string note; ///< in small print at the right of the title
    std::string unit; ///< of the signal
    std::vector<LinePoint> line;
    std::vector<ChartPeak> peaks;
};

/// Panels stand one above the other and share the axis below them. All texts are UTF-8.
struct Chart {
    std::string title;
    std::string subtitle;
    std::string timeQuantity; ///< what the axis shows, "Time"
    std::string timeUnit;
    std::string note; ///< in small print at the bottom
    Range times;
    std::vector<ChartPanel> panels;
    double width = 0; ///< in points, or pixels of a picture
    double height = 0;
};

/// A height at which a chart with so many panels looks well.
double defaultHeight(std::size_t panelCount);

/// Throws a runtime_error with words for the user where the chart is too small for its panels.
void drawChart(cairo_t* context, const Chart& chart);

} // namespace korlit::host
