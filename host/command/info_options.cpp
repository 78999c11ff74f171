#include "host/command/command_options.h"
#include "host/command/help_texts.h"
#include "host/info/info.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace korlit::host {

void addInfoCommand(CLI::App& app, int& status) {
    const auto options = std::make_shared<InfoOptions>();
    CLI::App* const command =
        app.add_subcommand("info", "Shows what files hold: facts, peaks, signal");
    command->add_option("FILE", options->files, "ANDI files, slice files of pairs, runs")
        ->required()
        ->type_name("");
    addKindOption(*command, options->from);
    CLI::Option* const json = command->add_flag("--json", options->json, "Print JSON");
    CLI::Option* const peaks = command->add_flag("--peaks", options->peaks, "Print peaks as CSV");
    command->add_flag("--signal", options->signal, "Print the signal as CSV")
        ->excludes(json)
        ->excludes(peaks);
    json->excludes(peaks);
    command->footer(infoHelp);
    command->callback([options, &status] { status = showFiles(*options); });
}

} // namespace korlit::host
