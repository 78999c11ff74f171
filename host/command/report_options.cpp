#include "host/command/command_options.h"
#include "host/command/help_texts.h"
#include "host/command/values.h"
#include "host/page/report.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace korlit::host {

void addReportCommand(CLI::App& app, int& status) {
    const auto options = std::make_shared<PageOptions>();
    CLI::App& command =
        *app.add_subcommand("report", "Makes an HTML page of what manifests recorded");
    command
        .add_option("MANIFEST", options->manifests, "Manifests that convert --manifest has written")
        ->required()
        ->type_name("");
    command.add_option("-o,--output", options->output, "The page: a .html file")
        ->required()
        ->check(refusePageName)
        ->type_name("FILE");
    command.footer(reportHelp);
    command.callback([options, &status] { status = reportManifests(*options); });
}

} // namespace korlit::host
