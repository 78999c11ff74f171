// `korlit plot`: chromatograms as a chart.
#pragma once

#include "host/plot/chart_file.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace korlit::host {

struct PlotOptions {
    std::vector<std::string> files; ///< drawn over each other if there are several
    std::string output;             ///< "-" is standard output
    std::optional<ChartFormat> format;
    double width = 1000;
    std::optional<double> height;
    std::optional<Paper> paper; ///< of a PDF, in place of width and height
    double scale = 1;           ///< pixels of a PNG for each point
    int channel = 0;            ///< of runs; 0 for all
    std::optional<double> from; ///< minutes
    std::optional<double> to;
    Bounds values;
    bool isWithoutPeaks = false;
    std::string title;
};

/// Draws the files and tells where the chart is. Answers 0, or 1 where they can't be drawn, which
/// is told on standard error. Throws WrongUse for options that don't go together.
int plotFiles(const PlotOptions& options);

} // namespace korlit::host
