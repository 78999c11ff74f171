#include "host/command/options.h"

#include "host/command/command_options.h"
#include "host/command/command_tree.h"
#include "host/command/suggestions.h"
#include "host/text/output.h"
#include "host/text/utf8.h"
#include "host/text/wrong_use.h"

#include <CLI/CLI.hpp>

#include <iostream>
#include <memory>

namespace korlit::host {

namespace {
// 1 is kept for what failed or differs.
constexpr int wrongUse = 2;

/// What is wrong with the arguments: what isn't known among them, or the parser's own words.
std::string usageText(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<std::string> unknown = app.remaining(true);
    const auto commands = app.get_subcommands();
    if (commands.empty()) {
        return unknown.empty() ? "no command" : unknownCommand(unknown.front(), infoOf(app));
    }
    const bool isUnknown = dynamic_cast<const CLI::ExtrasError*>(&error) != nullptr;
    return isUnknown && !unknown.empty() ? unknownArgument(unknown, infoOf(*commands.front()))
                                         : error.what();
}

int refuse(const CLI::App& app, const std::string& words) {
    const auto commands = app.get_subcommands();
    const std::string command = commands.empty() ? "" : " " + commands.front()->get_name();
    std::cerr << "korlit" << command << ": " << printable(words) << "\nTry korlit" << command
              << " --help\n";
    return wrongUse;
}

/// The help or the version, which come by way of an error, or what is wrong.
int answer(const CLI::App& app, const CLI::ParseError& error) {
    const bool isOfNone = app.get_subcommands().empty() && !app.remaining(true).empty();
    if (error.get_exit_code() != 0 || isOfNone) {
        return refuse(app, usageText(app, error));
    }
    app.exit(error);
    finishOutput();
    return 0;
}

/// The parser of all commands, which leave their exit status in `status`.
std::unique_ptr<CLI::App> parserInto(int& status, const std::vector<std::string>& arguments) {
    auto app = std::make_unique<CLI::App>(
        "Converts chromatography data between ANDI files and native formats, and looks into "
        "them.",
        "korlit");
    app->set_version_flag("--version", std::string{"korlit "} + KORLIT_VERSION);
    app->require_subcommand(1);
    addConvertCommand(*app, arguments, status);
    for (const auto add : {addInfoCommand, addPlotCommand, addCheckCommand, addCompareCommand,
                           addVerifyCommand, addReportCommand}) {
        add(*app, status);
    }
    return app;
}

} // namespace

CommandInfo commandTree() {
    int status = 0;
    return infoOf(*parserInto(status, {}));
}

int runCommand(int argumentCount, char** arguments) {
    int status = 0;
    const std::unique_ptr<CLI::App> app =
        parserInto(status, {arguments + 1, arguments + argumentCount});
    try {
        app->parse(argumentCount, arguments);
    } catch (const CLI::ParseError& error) {
        return answer(*app, error);
    } catch (const WrongUse& error) {
        return refuse(*app, error.what());
    }
    return status;
}

} // namespace korlit::host
