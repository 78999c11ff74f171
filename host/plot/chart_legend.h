// Which line of a chart is whose.
#pragma once

#include "host/plot/chart.h"
#include "host/plot/chart_pen.h"

#include <cairo.h>

namespace korlit::host {

/// How one of several lines is drawn.
struct LineStyle {
    Colour colour;
    bool isDashed = false;
};

/// The style of the line of that index among `count`, all of which can be told apart whichever
/// colours an eye sees. After Okabe and Ito, Color Universal Design, 2008, without the yellow,
/// which is too faint for a line; dashed when they are used up.
LineStyle lineStyle(std::size_t index, std::size_t count);

void setStyle(cairo_t* context, const LineStyle& style);

/// What a legend adds to a chart's header; 0 for a chart whose panels have one line each.
double legendHeight(cairo_t* context, const Chart& chart);

void drawLegend(cairo_t* context, const Chart& chart, double left);

} // namespace korlit::host
