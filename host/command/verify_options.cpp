#include "host/command/command_options.h"
#include "host/command/help_texts.h"
#include "host/command/values.h"
#include "host/manifest/verify.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace korlit::host {

void addVerifyCommand(CLI::App& app, int& status) {
    const auto options = std::make_shared<VerifyOptions>();
    CLI::App& command = *app.add_subcommand(
        "verify", "Tells which files are as they were when a manifest recorded them");
    command
        .add_option("MANIFEST", options->manifests, "Manifests that convert --manifest has written")
        ->required()
        ->type_name("");
    command
        .add_option("--root", options->root,
                    "Look in this folder for what lay below the one that the batch ran in")
        ->check(refuseEmpty)
        ->type_name("DIR");
    command.add_flag("--json", options->isJson, "Print a JSON object a line for each file");
    command.add_flag("-q,--quiet", options->isQuiet, "Print only what isn't as it was");
    command.footer(verifyHelp);
    command.callback([options, &status] { status = verifyFiles(*options); });
}

} // namespace korlit::host
