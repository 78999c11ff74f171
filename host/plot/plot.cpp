#include "host/plot/plot.h"

#include "host/data/listed_data.h"
#include "host/files/formats.h"
#include "host/files/side_files.h"
#include "host/files/standard_input.h"
#include "host/plot/chart_data.h"
#include "host/plot/chart_file.h"
#include "host/plot/chart_places.h"
#include "host/system/interrupts.h"
#include "host/system/whole_file.h"
#include "host/text/output.h"
#include "host/text/utf8.h"
#include "host/text/words.h"
#include "host/text/wrong_use.h"

#include <algorithm>
#include <filesystem>
#include <iostream>
#include <span>
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
}

/// Throws where the one chart would replace data.
void refuseData(const Listing& listing, const fs::path& output) {
    if (output == "-") {
        return;
    }
    SideFiles sides;
    const std::string problem = sides.add(output, "chart");
    for (const ListedFile& file : listing.files) {
        for (const SourceFile& source : formatOf(file.kind).sourceFiles(listing.pathOf(file))) {
            if (sides.at(source.path)) {
                throw WrongUse{"--output: is the file that is to be drawn"};
            }
        }
    }
    if (!problem.empty()) {
        throw WrongUse{"--output: " + problem};
    }
}

/// What a chart of some files may be used by at most.
fs::perms permissionsFor(const Listing& listing, std::span<const ListedFile> files) {
    auto most = fs::perms::all;
    for (const ListedFile& file : files) {
        for (const SourceFile& source : formatOf(file.kind).sourceFiles(listing.pathOf(file))) {
            most = narrowedTo(source.path, most);
        }
    }
    return most;
}

/// The format that was asked for, or that of the output's name.
ChartFormat formatFor(const PlotOptions& options) {
    if (!options.outputFolder.empty()) {
        return options.format.value_or(ChartFormat::Svg);
    }
    if (const auto format = options.format ? options.format : chartFormatOf(options.output)) {
        return *format;
    }
    throw WrongUse{options.output == "-"
                       ? "--output: standard output needs --format"
                       : "--output: a chart is a .svg, .png or .pdf file, not " + options.output};
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

void draw(const PlotOptions& options, const std::vector<std::vector<DataSet>>& files,
          const ChartTarget& target) {
    Chart chart = chartOf(options, files);
    warnOfMissingPictures(chart);
    writeChart(chart, target);
    if (target.file != "-") {
        std::vector<std::string> names;
        for (const std::vector<DataSet>& sets : files) {
            names.push_back(sets.front().source);
        }
        std::cout << printable(joined(names, ", ")) << ": Wrote chart "
                  << printable(target.file.string()) << std::endl;
    }
}

int drawTogether(const PlotOptions& options, const Listing& listing, ChartFormat format) {
    refuseData(listing, options.output);
    std::vector<std::vector<DataSet>> files;
    for (const ListedFile& file : listing.files) {
        if (!file.problem.empty()) {
            throw std::runtime_error{listing.pathOf(file).string() + ": " + file.problem};
        }
        files.push_back(loadListed(listing, file, options.channel));
    }
    if (files.empty()) {
        throw std::runtime_error{"there is nothing to draw"};
    }
    draw(options, files,
         {.format = format,
          .scale = options.scale,
          .file = options.output,
          .permissions = permissionsFor(listing, listing.files)});
    return 0;
}

int drawEach(const PlotOptions& options, const Listing& listing, ChartFormat format) {
    const std::vector<ChartPlace> places = chartPlaces(listing, options.outputFolder, format);
    tellIfNothingFound(listing);
    int status = 0;
    watchInterrupts();
    for (std::size_t i = 0; i < places.size() && !isInterrupted(); ++i) {
        const ListedFile& file = listing.files[i];
        try {
            if (!places[i].problem.empty()) {
                throw std::runtime_error{places[i].problem};
            }
            const std::vector<DataSet> sets = loadListed(listing, file, options.channel);
            std::error_code ignored; // a chart can't be written then, and its words say why
            fs::create_directories(places[i].file.parent_path(), ignored);
            draw(options, {sets},
                 {.format = format,
                  .scale = options.scale,
                  .file = places[i].file,
                  .permissions = permissionsFor(listing, {&file, 1})});
        } catch (const WrongUse&) {
            throw;
        } catch (const std::exception& error) {
            if (!isInterrupted()) {
                printFailure(shownName(listing.pathOf(file)), error.what());
            }
            status = 1;
        }
    }
    return isInterrupted() ? interruptedStatus : status;
}

} // namespace

int plotFiles(const PlotOptions& options) {
    const ChartFormat format = formatFor(options);
    refuseWrongUse(options, format);
    const Listing listing = listFiles(
        options.inputs, {.outputFolder = options.outputFolder, .isStandardInputTaken = true});
    const auto drawAll = options.outputFolder.empty() ? drawTogether : drawEach;
    const int status = drawAll(options, listing, format);
    finishOutput();
    return status;
}

} // namespace korlit::host
