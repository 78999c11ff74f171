// Where the panels of a chart go, each with its axes and labels.
#pragma once

#include "host/plot/chart.h"

#include <cairo.h>

#include <algorithm>
#include <string>
#include <vector>

namespace korlit::host {

constexpr double outerMargin = 18;
constexpr double titleBaseline = 30;
constexpr double subtitleBaseline = 49;

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
    bool isOverSignal = false; ///< where the end of the axis leaves no room above
};

/// A panel with everything that has been decided about it.
struct Plot {
    const ChartPanel* panel = nullptr;
    Box box;
    double outerLeft = 0;  ///< where what stands left of it begins
    bool isLowest = false; ///< of its column
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

/// In how many columns and rows so many panels stand on a chart of that width, where its height has
/// room.
std::size_t columnCount(std::size_t panelCount, double width);
std::size_t rowCount(std::size_t panelCount, std::size_t columns);

/// The plots of all panels. Throws a runtime_error with words for the user where the chart is too
/// small for them.
std::vector<Plot> layOut(cairo_t* context, const Chart& chart);

} // namespace korlit::host
