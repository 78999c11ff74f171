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
    addInputOptions(command, options->inputs,
                    "ANDI files, and folders of which these are taken; - is standard input");
    CLI::Option* const json =
        command.add_flag("--json", options->isJson, "Print one JSON object a line for each file");
    command
        .add_flag("--jsonl", options->isJsonLines,
                  "The same, but of a file that can't be read its name and the reason alone")
        ->excludes(json);
    command.add_flag("-q,--quiet", options->isQuiet,
                     "Print errors and warnings only, and nothing of files that conform");
    command.footer(checkHelp);
    command.callback([options, &status] {
        requireInputs(options->inputs);
        status = checkFiles(*options);
    });
}

} // namespace korlit::host
