// `korlit plot`: the chromatogram of a file as a chart.
#pragma once

#include <optional>
#include <string>

namespace korlit::host {

struct PlotOptions {
    std::string file;
    std::string output;
    double width = 1000;
    std::optional<double> height;
    std::optional<double> from;
    std::optional<double> to;
    bool isWithoutPeaks = false;
    std::string title;
};

/// Draws a file and tells where the chart is. Throws WrongUse for options that don't go together,
/// and a runtime_error with words for the user where it can't be drawn.
void plotFile(const PlotOptions& options);

} // namespace korlit::host
