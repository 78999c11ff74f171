#include "host/check/check.h"
#include "host/command/command_options.h"
#include "host/command/help_texts.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace korlit::host {

void addCheckCommand(CLI::App& app, int& status) {
    auto options = std::make_shared<CheckOptions>();
    CLI::App& command = *app.add_subcommand(
        "check", "Tells what in ANDI files departs from the chromatography template, and what a "
                 "conversion leaves out");
    command.add_option("FILE", options->files, "ANDI files")->required()->type_name("");
    command.add_flag("--json", options->isJson, "Print one JSON object a line for each file");
    command.add_flag("-q,--quiet", options->isQuiet,
                     "Print errors and warnings only, and nothing of files that conform");
    command.footer(checkHelp);
    command.callback([options, &status] { status = checkFiles(*options); });
}

} // namespace korlit::host
