#include "host/command/command_options.h"
#include "host/command/help_texts.h"
#include "host/command/values.h"
#include "host/plot/plot.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace korlit::host {

void addPlotCommand(CLI::App& app, int& status) {
    constexpr double leastSize = 200;
    constexpr double largestSize = 10000;
    const auto options = std::make_shared<PlotOptions>();
    CLI::App* command =
        app.add_subcommand("plot", "Draws the chromatogram of a file as SVG, PNG or PDF");
    command->footer(plotHelp);
    command->add_option("FILE", options->file, "An ANDI file, a slice file or a run")
        ->required()
        ->type_name("");
    command->add_option("-o,--output", options->output, "The chart: a .svg, .png or .pdf file")
        ->required()
        ->check(refuseChartName)
        ->type_name("FILE");
    const CLI::Validator isSize = CLI::Range(leastSize, largestSize).description("");
    command
        ->add_option("--width", options->width, "Its width in points or pixels, from 200 to 10000")
        ->capture_default_str()
        ->check(isSize)
        ->type_name("N");
    command
        ->add_option("--height", options->height,
                     "Its height, from 200 to 10000; else after the number of channels")
        ->check(isSize)
        ->type_name("N");
    command->add_option("--from-time", options->from, "Where the time axis starts, in minutes")
        ->check(refuseMinutes)
        ->type_name("MINUTES");
    command->add_option("--to-time", options->to, "Where it ends")
        ->check(refuseMinutes)
        ->type_name("MINUTES");
    command->add_flag("--no-peaks", options->isWithoutPeaks, "Draw the signal alone");
    command->add_option("--title", options->title, "The title, else the sample's name")
        ->type_name("TEXT");
    command->callback([options, &status] {
        plotFile(*options);
        status = 0;
    });
}

} // namespace korlit::host
