#include "host/command/command_options.h"
#include "host/command/help_texts.h"
#include "host/command/values.h"
#include "host/convert/convert.h"

#include <CLI/CLI.hpp>

#include <memory>

namespace korlit::host {

namespace {

void addWorkOptions(CLI::App& command, ConvertOptions& options) {
    WorkOptions& work = options.work;
    addInputOptions(command, work.inputs,
                    "Files, and folders of which what is recognised is taken");
    addKindOption(command, work.inputs.from);
    addChoice(command,
              {.option = "--to",
               .value = "KIND",
               .names = {"andi", "pair"},
               .description = "Convert what becomes this, and in folders nothing else"},
              [&work](std::size_t i) { work.to = i == 0 ? Goal::Andi : Goal::Pair; });
    auto* folder = command
                       .add_option("-d,--output-dir", work.outputFolder,
                                   "Write into this folder, which mirrors the folders below a\n"
                                   "folder that was named")
                       ->check(refuseEmpty)
                       ->type_name("DIR");
    command
        .add_option("-o,--output", work.output,
                    "Write the one output to this file; of a pair, both under its name")
        ->check(refuseEmpty)
        ->type_name("FILE")
        ->excludes(folder);
    command
        .add_option_function<std::string>(
            "--shard",
            [&work](const std::string& text) {
                if (!readShard(text, work.shard, work.shardCount)) {
                    throw CLI::ValidationError{"--shard",
                                               "must be I/N with I from 1 to N, as in 2/5"};
                }
            },
            "Take the I-th of N parts of the work, the same parts on every machine")
        ->type_name("I/N");
}

/// A flag, which takes a value only behind an equals sign: what follows it is a path.
void addResampleOption(CLI::App& command, ConvertOptions& options) {
    const auto text = std::make_shared<std::string>();
    command
        .add_flag("--resample{usual}", *text,
                  "Bring samples that aren't equidistant, and the total ion chromatograms of\n"
                  "mass spectrometers, to equal distances: =MS milliseconds, else the median")
        ->check(refuseInterval)
        ->each([&options, text](const std::string& value) {
            options.resampleMs = readIntervalMs(value).value_or(0);
        });
}

void addReportOptions(CLI::App& command, ConvertOptions& options) {
    const auto existing = [&options](Existing value) {
        return [&options, value] { options.existing = value; };
    };
    auto* force = command.add_flag_callback("-f,--force", existing(Existing::Replace),
                                            "Replace files that exist; the old ones stay if a "
                                            "conversion fails");
    auto* skip = command
                     .add_flag_callback("--skip-existing", existing(Existing::Skip),
                                        "Pass over files that were converted; make what is "
                                        "missing of a set,\nand fail where the rest isn't what "
                                        "would be made")
                     ->excludes(force);
    command
        .add_flag_callback("-u,--update", existing(Existing::Update),
                           "Replace what is older than the source that it was made from, pass "
                           "over the rest")
        ->excludes(force)
        ->excludes(skip);
    command.add_flag("-n,--dry-run", options.isDryRun,
                     "Tell what would be done, and touch nothing");
    command.add_flag("--allow-cut", options.isCutAllowed,
                     "Convert runs that lack samples or channels as far as they go");
    addResampleOption(command, options);
    command.add_flag("--verify", options.isVerified,
                     "Hold what was written against its source, value by value, before it\n"
                     "comes to its place; anything unexpected is a failure");
    command.add_flag("--sync", options.isSynced,
                     "Have the disk hold each file before it comes to its place");
    command
        .add_option("-j,--jobs", options.workerCount,
                    "How many files to convert at a time (default: the processors)")
        ->check(refuseOutside(1, 1024))
        ->type_name("N");
    command
        .add_option("--manifest", options.recording.manifest,
                    "Append what was done to this file, with the digests of all files")
        ->check(refuseEmpty)
        ->type_name("FILE");
    command.add_option("--report", options.recording.page, "Write a page of it: a .html file")
        ->check(refusePageName)
        ->type_name("FILE");
    command.add_flag("--json", options.report.isJson, "Print a JSON object a line for each file");
    auto* quiet = command.add_flag("-q,--quiet", options.report.isQuiet, "Print only what failed");
    command
        .add_flag("-v,--verbose", options.report.isVerbose, "Print seconds and what is left out")
        ->excludes(quiet);
}

} // namespace

void addConvertCommand(CLI::App& app, const std::vector<std::string>& arguments, int& status) {
    CLI::App* command = app.add_subcommand(
        "convert",
        "Converts ANDI files to Merivolta pairs, and pairs and Dunvale runs to ANDI files");
    const auto options = std::make_shared<ConvertOptions>();
    options->recording.version = KORLIT_VERSION;
    options->recording.arguments = arguments;
    addWorkOptions(*command, *options);
    addReportOptions(*command, *options);
    command->footer(convertHelp);
    command->callback([options, &status] {
        requireInputs(options->work.inputs);
        status = convertAll(*options);
    });
}

} // namespace korlit::host
