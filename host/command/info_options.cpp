#include "host/command/command_options.h"
#include "host/command/help_texts.h"
#include "host/command/values.h"
#include "host/info/info.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace korlit::host {

void addInfoCommand(CLI::App& app, int& status) {
    const auto options = std::make_shared<InfoOptions>();
    CLI::App* const command =
        app.add_subcommand("info", "Shows what files hold: facts, peaks, signal");
    addInputOptions(*command, options->inputs,
                    "ANDI files, slice files of pairs, runs, and folders of them; - is standard\n"
                    "input");
    addKindOption(*command, options->inputs.from);
    CLI::Option* const json = command->add_flag("--json", options->json, "Print JSON");
    CLI::Option* const jsonLines =
        command
            ->add_flag("--jsonl", options->isJsonLines,
                       "Print a JSON object a line, one for a file that can't be read, too")
            ->excludes(json);
    CLI::Option* const peaks = command->add_flag("--peaks", options->peaks, "Print peaks as CSV");
    command->add_flag("--signal", options->signal, "Print the signal as CSV")
        ->excludes(json)
        ->excludes(peaks)
        ->excludes(jsonLines);
    json->excludes(peaks);
    jsonLines->excludes(peaks);
    command->add_option("--channel", options->channel, "Of a run, show this channel, from 1")
        ->check(refuseChannel)
        ->type_name("N");
    command->footer(infoHelp);
    command->callback([options, &status] {
        requireInputs(options->inputs);
        status = showFiles(*options);
    });
}

} // namespace korlit::host
