// The chart of files' data sets.
#pragma once

#include "host/data/data_set.h"
#include "host/plot/chart.h"
#include "host/plot/plot.h"

#include <vector>

namespace korlit::host {

/// The chart of one file, each of whose data sets has a panel, or of several, whose data sets of
/// the same channel share one. Throws a runtime_error with words for the user where the options
/// leave nothing to draw.
Chart chartOf(const PlotOptions& options, const std::vector<std::vector<DataSet>>& files);

} // namespace korlit::host
