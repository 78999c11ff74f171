#include "host/convert.h"

#include <CLI/CLI.hpp>

#include <exception>
#include <iostream>
#include <string>
#include <vector>

namespace {

// Exit status 1 is kept for conversions that failed.
constexpr int wrongUse = 2;

} // namespace

int main(int argumentCount, char** arguments) try {
    CLI::App app{"Converts chromatography data between ANDI files and native formats."};
    app.set_version_flag("--version", std::string{"korlit "} + KORLIT_VERSION);
    app.require_subcommand(1);

    std::vector<std::string> files;
    CLI::App* convert = app.add_subcommand(
        "convert", "Convert ANDI files (.cdf) to Merivolta pairs (.sli and .rpt) beside them,\n"
                   "slice files (.sli) with their reports to ANDI files, and Dunvale runs\n"
                   "to one ANDI file for each channel");
    convert->add_option("FILE", files, "The files to convert")->required();
    convert->footer("Exit status: 0 all were converted, 1 some failed, 2 wrong use.");

    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : wrongUse;
    }
    return korlit::host::convertFiles(files);
} catch (const std::exception& error) {
    std::cerr << "korlit: " << error.what() << '\n';
    return 1;
}
