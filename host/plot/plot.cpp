#include "host/plot/plot.h"

#include "host/data/data_set.h"
#include "host/plot/chart_data.h"
#include "host/plot/chart_file.h"
#include "host/text/output.h"
#include "host/text/utf8.h"
#include "host/text/wrong_use.h"

#include <filesystem>
#include <iostream>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

void refuseWrongUse(const PlotOptions& options) {
    if (options.from && options.to && !(*options.from < *options.to)) {
        throw WrongUse{"--from-time: must be less than --to-time"};
    }
    std::error_code error;
    if (fs::equivalent(options.file, options.output, error)) {
        throw WrongUse{"--output: is the file that is to be drawn"};
    }
}

} // namespace

void plotFile(const PlotOptions& options) {
    refuseWrongUse(options);
    const std::vector<DataSet> sets = loadDataSets(options.file);
    if (sets.empty()) {
        throw std::runtime_error{options.file + " has no channels"};
    }
    const auto format = chartFormatOf(options.output).value_or(ChartFormat::Svg);
    writeChart(chartOf(options, sets), format, options.output);
    std::cout << printable(options.file) << ": Wrote chart " << printable(options.output) << '\n';
    finishOutput();
}

} // namespace korlit::host
