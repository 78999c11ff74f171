// `korlit plot`: chromatograms as a chart.
#pragma once

#include "host/files/inputs.h"
#include "host/plot/chart_file.h"

#include <filesystem>
#include <optional>
#include <string>

namespace korlit::host {

struct PlotOptions {
    Inputs inputs;
    std::string output; ///< of all files, drawn over each other; "-" is standard output
    std::filesystem::path outputFolder; ///< in place of that, for a chart of each file
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

/// Draws the files and tells where the charts are. Answers 0, or 1 where some can't be drawn, which
/// is told on standard error. Throws WrongUse for options that don't go together, and a
/// runtime_error where the one chart of all can't be drawn.
int plotFiles(const PlotOptions& options);

} // namespace korlit::host
