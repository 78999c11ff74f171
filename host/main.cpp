#include "host/commands.h"
#include "host/usage.h"

#include <exception>
#include <iostream>
#include <string>

namespace {

// Exit status 1 is kept for what failed or differs.
constexpr int wrongUse = 2;

} // namespace

int main(int argumentCount, char** arguments) try {
    CLI::App app{
        "Converts chromatography data between ANDI files and native formats, and looks into "
        "them."};
    app.name("korlit");
    app.set_version_flag("--version", std::string{"korlit "} + KORLIT_VERSION);
    app.require_subcommand(1);
    int status = 0;
    korlit::host::addConvertCommand(app, status);
    korlit::host::addInfoCommand(app, status);
    korlit::host::addPlotCommand(app, status);
    korlit::host::addCheckCommand(app, status);
    korlit::host::addCompareCommand(app, status);
    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::ParseError& error) {
        if (error.get_exit_code() == 0) {
            return app.exit(error); // --help and --version
        }
        const auto commands = app.get_subcommands();
        const std::string command = commands.empty() ? "" : " " + commands.front()->get_name();
        std::cerr << "korlit" << command << ": " << korlit::host::usageText(app, error)
                  << "\nTry korlit" << command << " --help\n";
        return wrongUse;
    }
    return status;
} catch (const std::exception& error) {
    std::cerr << "korlit: " << error.what() << '\n';
    return 1;
}
