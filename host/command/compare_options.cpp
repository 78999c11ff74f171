#include "host/command/command_options.h"
#include "host/command/help_texts.h"
#include "host/command/values.h"
#include "host/compare/compare.h"
#include "host/compare/folders.h"

#include <CLI/CLI.hpp>

#include <filesystem>
#include <memory>
#include <system_error>

namespace korlit::host {

namespace {

void addComparisonOptions(CLI::App& command, CompareOptions& options) {
    const std::vector<std::string> names{parts::signal, parts::peaks, parts::texts};
    Tolerance& tolerance = options.comparison.tolerance;
    command
        .add_option("--tolerance", tolerance.relative,
                    "Numbers count as equal within T times the larger")
        ->check(refuseTolerance)
        ->type_name("T");
    command
        .add_option("--absolute-tolerance", tolerance.absolute,
                    "Numbers count as equal within A, for what is near zero")
        ->check(refuseTolerance)
        ->type_name("A");
    command
        .add_option("--only", options.comparison.parts,
                    "Compare these parts only, with commas between them")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(CLI::IsMember{names}.description(""))
        ->type_name("PARTS:{signal,peaks,texts}");
    command.add_flag("--strict", options.isStrict, "Count the expected differences too");
    command.add_option("--channel", options.channel, "Of a run, compare this channel, from 1")
        ->check(refuseChannel)
        ->type_name("N");
}

bool isFolder(const std::string& path) {
    std::error_code ignored;
    return std::filesystem::is_directory(path, ignored);
}

} // namespace

void addCompareCommand(CLI::App& app, int& status) {
    const auto options = std::make_shared<CompareOptions>();
    CLI::App* const command = app.add_subcommand(
        "compare", "Tells whether two data sets are the same, and in what they differ");
    command
        ->add_option("A", options->a, "ANDI file, slice file of a pair, run, or a folder of these")
        ->required()
        ->type_name("");
    command->add_option("B", options->b, "The other")->required()->type_name("");
    command->add_flag("-r,--recursive", options->isRecursive,
                      "Take folders with all that lies below, but for what is hidden");
    addComparisonOptions(*command, *options);
    CLI::Option* const json = command->add_flag(
        "--json", options->json, "Print a JSON object, for each pair of files a line");
    CLI::Option* const quiet =
        command->add_flag("-q,--quiet", options->quiet, "Print nothing, answer by the exit status")
            ->excludes(json);
    command
        ->add_flag("-v,--verbose", options->isVerbose,
                   "Print a line for each expected difference, not for each rule")
        ->excludes(quiet);
    command->footer(compareHelp);
    command->callback([options, &status] {
        status = isFolder(options->a) || isFolder(options->b) ? compareFolders(*options)
                                                              : compareFiles(*options);
    });
}

} // namespace korlit::host
