// The signal of a plot and its peaks.
#pragma once

#include "host/plot/chart_panels.h"

#include <cairo.h>

namespace korlit::host {

/// Draws the signal with its peaks and their baselines.
void drawTraces(cairo_t* context, const Plot& plot);

/// Writes the names of peaks, each with the line that leads to it where it isn't just above.
void drawLabels(cairo_t* context, const Plot& plot);

} // namespace korlit::host
