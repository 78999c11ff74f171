// The chart of a file's data sets.
#pragma once

#include "host/data/data_set.h"
#include "host/plot/chart.h"
#include "host/plot/plot.h"

#include <vector>

namespace korlit::host {

/// Throws a runtime_error with words for the user where the options leave nothing to draw.
Chart chartOf(const PlotOptions& options, const std::vector<DataSet>& sets);

} // namespace korlit::host
