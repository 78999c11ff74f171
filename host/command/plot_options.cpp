#include "host/command/command_options.h"
#include "host/command/help_texts.h"
#include "host/command/values.h"
#include "host/plot/plot.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace korlit::host {

namespace {

void addOutputOptions(CLI::App& command, PlotOptions& options) {
    CLI::Option* const output =
        command
            .add_option("-o,--output", options.output,
                        "The chart, of several files over each other: a .svg, .png or .pdf\n"
                        "file; - is standard output")
            ->check(refuseEmpty)
            ->type_name("FILE");
    command
        .add_option("-d,--output-dir", options.outputFolder,
                    "Draw a chart of each file into this folder, which mirrors the folders\n"
                    "below a folder that was named")
        ->check(refuseEmpty)
        ->type_name("DIR")
        ->excludes(output);
}

/// Throws where it isn't said what is to be drawn, or where to.
void requireUse(const PlotOptions& options) {
    requireInputs(options.inputs);
    if (options.output.empty() && options.outputFolder.empty()) {
        throw CLI::RequiredError{"--output or --output-dir"};
    }
}

void addSizeOptions(CLI::App& command, PlotOptions& options) {
    constexpr double leastSize = 200;
    constexpr double largestSize = 10000;
    constexpr double leastScale = 0.1;
    constexpr double largestScale = 10;
    const auto refuseSize = refuseOutside(leastSize, largestSize);
    auto* width = command
                      .add_option("--width", options.width,
                                  "Its width in points or pixels, from 200 to 10000")
                      ->capture_default_str()
                      ->check(refuseSize)
                      ->type_name("N");
    auto* height = command
                       .add_option("--height", options.height,
                                   "Its height, from 200 to 10000; else after width and channels")
                       ->check(refuseSize)
                       ->type_name("N");
    addChoice(command,
              {.option = "--paper",
               .value = "PAPER",
               .names = {"a4", "letter"},
               .description = "Lay a PDF out for a sheet of paper"},
              [&options](std::size_t i) { options.paper = i == 0 ? Paper::A4 : Paper::Letter; })
        ->excludes(width)
        ->excludes(height);
    command.add_option("--scale", options.scale, "Pixels of a PNG for each point, from 0.1 to 10")
        ->check(refuseOutside(leastScale, largestScale))
        ->type_name("F");
}

void addAxisOptions(CLI::App& command, PlotOptions& options) {
    command.add_option("--from-time", options.from, "Where the time axis starts, in minutes")
        ->check(refuseMinutes)
        ->type_name("MINUTES");
    command.add_option("--to-time", options.to, "Where it ends")
        ->check(refuseMinutes)
        ->type_name("MINUTES");
    command.add_option("--ymin", options.values.from, "Where the axis of the signal starts")
        ->check(refuseAxisEnd)
        ->type_name("VALUE");
    command.add_option("--ymax", options.values.to, "Where it ends")
        ->check(refuseAxisEnd)
        ->type_name("VALUE");
}

} // namespace

void addPlotCommand(CLI::App& app, int& status) {
    const auto options = std::make_shared<PlotOptions>();
    CLI::App* command = app.add_subcommand("plot", "Draws chromatograms as SVG, PNG or PDF");
    command->footer(plotHelp);
    addInputOptions(*command, options->inputs,
                    "ANDI files, slice files or runs, and folders of them; - is standard input");
    addOutputOptions(*command, *options);
    addChoice(*command,
              {.option = "--format",
               .value = "FORMAT",
               .names = chartFormatNames(),
               .description = "The format, whatever the name of the output; svg in a folder"},
              [options](std::size_t i) { options->format = static_cast<ChartFormat>(i); });
    addSizeOptions(*command, *options);
    addAxisOptions(*command, *options);
    command->add_option("--channel", options->channel, "Of a run, draw this channel, from 1")
        ->check(refuseChannel)
        ->type_name("N");
    command->add_flag("--no-peaks", options->isWithoutPeaks, "Draw the signal alone");
    command->add_option("--title", options->title, "The title, else the sample's name")
        ->type_name("TEXT");
    command->callback([options, &status] {
        requireUse(*options);
        status = plotFiles(*options);
    });
}

} // namespace korlit::host
