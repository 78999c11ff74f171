// The axes of a chart's plots.
#pragma once

#include "host/plot/chart_panels.h"

#include <cairo.h>

namespace korlit::host {

/// As many ticks as have room for their texts.
Ticks timeTicksFor(cairo_t* context, const Plot& plot);

void drawGrid(cairo_t* context, const Plot& plot, const Ticks& timeTicks);

void drawAxes(cairo_t* context, const Plot& plot, const Ticks& timeTicks);

void writeValueAxis(cairo_t* context, const Plot& plot);

/// Below the last plot.
void writeTimeAxis(cairo_t* context, const Plot& plot, const Ticks& ticks, const Chart& chart);

} // namespace korlit::host
