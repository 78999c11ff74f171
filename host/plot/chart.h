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
    std::string label{};
    LinePoint apex;
    std::optional<LinePoint> start{};
    std::optional<LinePoint> end{};
    std::optional<std::pair<LinePoint, LinePoint>> baseline{};
    bool isBaselineMeasured = false; ///< else it is drawn from the signal to the signal

    /// Whether it goes below its baseline, or below its ends if it has none.
    bool isNegative() const;
};

/// A signal within a panel.
struct ChartLine {
    std::string name; ///< for the legend, where there is more than one
    std::vector<LinePoint> points;
};

struct ChartPanel {
    std::string title;
    std::string note; ///< in small print at the right of the title
    std::string unit; ///< of the signal
    std::vector<ChartLine> lines;
    std::vector<ChartPeak> peaks; ///< of the only line
};

/// The ends of an axis as far as they are given.
struct Bounds {
    std::optional<double> from;
    std::optional<double> to;
};

/// Panels stand one above the other, many of them in columns, and share the axis below them. All
/// texts are UTF-8.
struct Chart {
    std::string title;
    std::string subtitle;
    std::string timeQuantity; ///< what the axis shows, "Time"
    std::string timeUnit;
    std::string note; ///< in small print at the bottom
    Range times;
    Bounds values; ///< of all panels, else as far as the signal goes
    std::vector<ChartPanel> panels;
    double width = 0; ///< in points, or pixels of a picture
    double height = 0;
};

/// A height at which a chart with so many panels looks well at that width.
double defaultHeight(std::size_t panelCount, double width);

/// Throws a runtime_error with words for the user where the chart is too small for its panels.
void drawChart(cairo_t* context, const Chart& chart);

} // namespace korlit::host
