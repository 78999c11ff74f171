#include "host/plot/plot.h"

#include "host/data/data_set.h"
#include "host/plot/chart_data.h"
#include "host/plot/chart_file.h"
#include "host/text/output.h"
#include "host/text/utf8.h"
#include "host/text/words.h"
#include "host/text/wrong_use.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

void refuseWrongUse(const PlotOptions& options, ChartFormat format) {
    if (options.from && options.to && !(*options.from < *options.to)) {
        throw WrongUse{"--from-time: must be less than --to-time"};
    }
    if (options.values.from && options.values.to && !(*options.values.from < *options.values.to)) {
        throw WrongUse{"--ymin: must be less than --ymax"};
    }
    if (options.paper && format != ChartFormat::Pdf) {
        throw WrongUse{"--paper: is for charts in PDF"};
    }
    if (options.scale != 1 && format != ChartFormat::Png) {
        throw WrongUse{"--scale: is for charts in PNG; others have no pixels"};
    }
    for (const std::string& file : options.files) {
        std::error_code error;
        if (fs::equivalent(file, options.output, error)) {
            throw WrongUse{"--output: is the file that is to be drawn"};
        }
    }
}

/// The format that was asked for, or that of the output's name.
ChartFormat formatFor(const PlotOptions& options) {
    if (const auto format = options.format ? options.format : chartFormatOf(options.output)) {
        return *format;
    }
    throw WrongUse{options.output == "-"
                       ? "--output: standard output needs --format"
                       : "--output: a chart is a .svg, .png or .pdf file, not " + options.output};
}

/// All data sets of a file, or of a run the channel that was asked for.
std::vector<DataSet> setsOf(const std::string& file, int channel) {
    std::vector<DataSet> sets = loadDataSets(file);
    if (sets.empty()) {
        throw std::runtime_error{file + " has no channels"};
    }
    pickChannel(sets, channel);
    return sets;
}

void warnOfMissingPictures(Chart& chart) {
    constexpr std::size_t most = 5;
    std::vector<std::string> missing = missingPictures(chart);
    if (missing.empty()) {
        return;
    }
    const bool isShortened = missing.size() > most;
    missing.resize(std::min(missing.size(), most));
    const std::string words = "The fonts of this machine lack " + joined(missing, ", ") +
                              (isShortened ? " and more" : "") + ", which are boxes here.";
    chart.note = joined({chart.note, words}, " ");
    std::cerr << "korlit: " << words << '\n';
}

} // namespace

int plotFiles(const PlotOptions& options) {
    const ChartFormat format = formatFor(options);
    refuseWrongUse(options, format);
    std::vector<std::vector<DataSet>> files;
    for (const std::string& file : options.files) {
        files.push_back(setsOf(file, options.channel));
    }
    Chart chart = chartOf(options, files);
    warnOfMissingPictures(chart);
    writeChart(chart, {.format = format, .scale = options.scale, .file = options.output});
    if (options.output != "-") {
        std::cout << printable(joined(options.files, ", ")) << ": Wrote chart "
                  << printable(options.output) << '\n';
    }
    finishOutput();
    return 0;
}

} // namespace korlit::host
