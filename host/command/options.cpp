#include "host/command/options.h"

#include "host/check/check.h"
#include "host/command/help_texts.h"
#include "host/command/suggestions.h"
#include "host/compare/compare.h"
#include "host/convert/convert.h"
#include "host/info/info.h"
#include "host/plot/chart_file.h"
#include "host/plot/chart_layout.h"
#include "host/plot/plot.h"
#include "host/text/wrong_use.h"

#include <CLI/CLI.hpp>

#include <charconv>
#include <cmath>
#include <iostream>
#include <memory>
#include <string_view>

namespace korlit::host {

namespace {

// Exit status 1 is kept for what failed or differs.
constexpr int wrongUse = 2;

/// --from, by which a user says what kind the files are.
void addKindOption(CLI::App& command, FileKind& kind) {
    command
        .add_option_function<std::string>(
            "--from",
            [&kind](const std::string& name) {
                for (const FileKind each :
                     {FileKind::Andi, FileKind::Merivolta, FileKind::Dunvale}) {
                    if (name == kindName(each)) {
                        kind = each;
                        return;
                    }
                }
                throw CLI::ValidationError{"--from", "must be andi, merivolta or dunvale"};
            },
            "Take all files for this kind instead of recognising each:\n"
            "andi, merivolta or dunvale")
        ->type_name("KIND");
}

/// "2/5" for the second of five parts.
bool readShard(const std::string& text, WorkOptions& work) {
    const std::string_view all{text};
    const std::size_t slash = all.find('/');
    if (slash == std::string_view::npos) {
        return false;
    }
    const auto readNumber = [](std::string_view digits, std::size_t& number) {
        const auto [end, error] =
            std::from_chars(digits.data(), digits.data() + digits.size(), number);
        return error == std::errc{} && end == digits.data() + digits.size();
    };
    return readNumber(all.substr(0, slash), work.shard) &&
           readNumber(all.substr(slash + 1), work.shardCount) && work.shard >= 1 &&
           work.shard <= work.shardCount;
}

void addWorkOptions(CLI::App& command, ConvertOptions& options) {
    WorkOptions& work = options.work;
    command
        .add_option("PATH", work.paths, "Files, and folders of which what is recognised is taken")
        ->type_name("");
    command.add_flag("-r,--recursive", work.isRecursive, "Take folders with all that lies below");
    command
        .add_option("--files-from", work.filesFrom,
                    "Take further paths from the lines of a file; - is standard input")
        ->type_name("LIST");
    addKindOption(command, work.from);
    auto* folder = command
                       .add_option("-d,--output-dir", work.outputFolder,
                                   "Write into this folder, which mirrors the folders below a\n"
                                   "folder that was named")
                       ->type_name("DIR");
    command
        .add_option("-o,--output", work.output,
                    "Write the one output to this file; of a pair, both under its name")
        ->type_name("FILE")
        ->excludes(folder);
    command
        .add_option_function<std::string>(
            "--shard",
            [&work](const std::string& text) {
                if (!readShard(text, work)) {
                    throw CLI::ValidationError{"--shard",
                                               "must be I/N with I from 1 to N, as in 2/5"};
                }
            },
            "Take the I-th of N parts of the work, the same parts on every machine")
        ->type_name("I/N");
}

void addReportOptions(CLI::App& command, ConvertOptions& options) {
    auto* force =
        command.add_flag("-f,--force", options.isForced,
                         "Replace files that exist; the old ones stay if a conversion fails");
    command.add_flag("--skip-existing", options.isSkipping, "Pass over files that were converted")
        ->excludes(force);
    command
        .add_option("-j,--jobs", options.workerCount,
                    "How many files to convert at a time (default: the processors)")
        ->check(CLI::Range(1, 1024).description(""))
        ->type_name("N");
    command.add_flag("--json", options.report.isJson, "Print a JSON object a line for each file");
    auto* quiet = command.add_flag("-q,--quiet", options.report.isQuiet, "Print only what failed");
    command
        .add_flag("-v,--verbose", options.report.isVerbose, "Print seconds and what is left out")
        ->excludes(quiet);
}

void addConvertCommand(CLI::App& app, int& status) {
    CLI::App* command = app.add_subcommand(
        "convert",
        "Convert ANDI files to Merivolta pairs, and pairs and Dunvale runs to ANDI files");
    const auto options = std::make_shared<ConvertOptions>();
    addWorkOptions(*command, *options);
    addReportOptions(*command, *options);
    command->footer(convertHelp);
    command->callback([options, &status] {
        if (options->work.paths.empty() && options->work.filesFrom.empty()) {
            throw CLI::RequiredError{"PATH or --files-from"};
        }
        status = convertAll(*options);
    });
}

void addInfoCommand(CLI::App& app, int& status) {
    const auto options = std::make_shared<InfoOptions>();
    CLI::App* const command =
        app.add_subcommand("info", "Shows what files hold: facts, peaks, signal");
    command->add_option("files", options->files, "ANDI files, slice files of pairs, runs")
        ->required()
        ->type_name("FILE");
    addKindOption(*command, options->from);
    CLI::Option* const json = command->add_flag("--json", options->json, "Print JSON");
    CLI::Option* const peaks = command->add_flag("--peaks", options->peaks, "Print peaks as CSV");
    command->add_flag("--signal", options->signal, "Print the signal as CSV")
        ->excludes(json)
        ->excludes(peaks);
    json->excludes(peaks);
    command->footer(infoHelp);
    command->callback([options, &status] { status = showFiles(*options); });
}

std::string refuseEnding(const std::string& output) {
    return chartFormatOf(output) ? "" : "a chart is a .svg, .png or .pdf file, not " + output;
}

std::string refuseInfinite(const std::string& number) {
    double value = 0;
    return CLI::detail::lexical_cast(number, value) && !isDrawable(value)
               ? "not a number of minutes"
               : "";
}

void addPlotCommand(CLI::App& app, int& status) {
    constexpr double leastSize = 200;
    constexpr double largestSize = 10000;
    const auto options = std::make_shared<PlotOptions>();
    CLI::App* command =
        app.add_subcommand("plot", "Draw the chromatogram of a file as SVG, PNG or PDF");
    command->footer(plotHelp);
    command->add_option("FILE", options->file, "An ANDI file, a slice file or a run")->required();
    command->add_option("-o,--output", options->output, "The chart: a .svg, .png or .pdf file")
        ->required()
        ->check(refuseEnding);
    command->add_option("--width", options->width, "Its width in points or pixels")
        ->capture_default_str()
        ->check(CLI::Range(leastSize, largestSize));
    command
        ->add_option("--height", options->height, "Its height, else after the number of channels")
        ->check(CLI::Range(leastSize, largestSize));
    command->add_option("--from", options->from, "Where the time axis starts, in minutes")
        ->check(refuseInfinite);
    command->add_option("--to", options->to, "Where it ends")->check(refuseInfinite);
    command->add_flag("--no-peaks", options->isWithoutPeaks, "Draw the signal alone");
    command->add_option("--title", options->title, "The title, else the sample's name");
    command->callback([options, &status] {
        plotFile(*options);
        status = 0;
    });
}

void addCheckCommand(CLI::App& app, int& status) {
    auto options = std::make_shared<CheckOptions>();
    CLI::App& command = *app.add_subcommand(
        "check", "Tells what in ANDI files departs from the chromatography template, and what a "
                 "conversion leaves out");
    command.add_option("FILE", options->files, "ANDI files")->required();
    command.add_flag("--json", options->isJson, "Print one JSON object a line for each file");
    command.add_flag("-q,--quiet", options->isQuiet,
                     "Print errors and warnings only, and nothing of files that conform");
    command.footer(checkHelp);
    command.callback([options, &status] { status = checkFiles(*options); });
}

void addComparisonOptions(CLI::App& command, CompareOptions& options) {
    const auto isFinite = [](const std::string& text) -> std::string {
        double number = 0;
        return CLI::detail::lexical_cast(text, number) && std::isfinite(number) && number >= 0
                   ? ""
                   : text + " is no tolerance";
    };
    command.add_option("--tolerance", options.comparison.tolerance, "Relative; see below")
        ->check(CLI::Validator{isFinite, ""})
        ->type_name("T");
    command
        .add_option("--only", options.comparison.parts,
                    "Compare these parts only: signal,peaks,texts")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(CLI::IsMember{{"signal", "peaks", "texts"}})
        ->type_name("PARTS");
    command.add_option("--channel", options.channel, "Of a run, compare this channel, from 1")
        ->check(CLI::PositiveNumber)
        ->type_name("N");
}

void addCompareCommand(CLI::App& app, int& status) {
    const auto options = std::make_shared<CompareOptions>();
    CLI::App* const command = app.add_subcommand("compare", "Tells in what two data sets differ");
    command->add_option("A", options->a, "ANDI file, slice file of a pair, or run")->required();
    command->add_option("B", options->b, "The other")->required();
    addComparisonOptions(*command, *options);
    CLI::Option* const json = command->add_flag("--json", options->json, "Print one JSON object");
    command->add_flag("-q,--quiet", options->quiet, "Print nothing, answer by the exit status")
        ->excludes(json);
    command->footer(compareHelp);
    command->callback([options, &status] { status = compareFiles(*options); });
}

std::vector<std::string> optionNames(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

std::vector<std::string> commandNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands({})) {
        names.push_back(command->get_name());
    }
    return names;
}

/// An option as it was given, without its value.
std::string nameOf(const std::string& argument) {
    return argument.substr(0, argument.find('='));
}

/// What is wrong with the arguments: names the command or option that isn't known and suggests the
/// nearest one, or has the parser's own words.
std::string usageText(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<std::string> unknown = app.remaining(true);
    const auto commands = app.get_subcommands();
    if (commands.empty()) {
        return unknown.empty() ? "no command"
                               : "unknown command " + unknown.front() +
                                     suggestion(unknown.front(), commandNames(app));
    }
    if (dynamic_cast<const CLI::ExtrasError*>(&error) == nullptr || unknown.empty()) {
        return error.what();
    }
    const auto isOption = [](const std::string& word) { return word.starts_with('-'); };
    const auto option = std::ranges::find_if(unknown, isOption);
    const std::string word = nameOf(option == unknown.end() ? unknown.front() : *option);
    return (isOption(word) ? "unknown option " : "unexpected argument ") + word +
           suggestion(word, optionNames(*commands.front()));
}

int refuse(const CLI::App& app, const std::string& words) {
    const auto commands = app.get_subcommands();
    const std::string command = commands.empty() ? "" : " " + commands.front()->get_name();
    std::cerr << "korlit" << command << ": " << words << "\nTry korlit" << command << " --help\n";
    return wrongUse;
}

} // namespace

int runCommand(int argumentCount, char** arguments) {
    CLI::App app{
        "Converts chromatography data between ANDI files and native formats, and looks into "
        "them."};
    app.name("korlit");
    app.set_version_flag("--version", std::string{"korlit "} + KORLIT_VERSION);
    app.require_subcommand(1);
    int status = 0;
    addConvertCommand(app, status);
    addInfoCommand(app, status);
    addPlotCommand(app, status);
    addCheckCommand(app, status);
    addCompareCommand(app, status);
    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::ParseError& error) {
        // --help and --version come this way, too.
        return error.get_exit_code() == 0 ? app.exit(error) : refuse(app, usageText(app, error));
    } catch (const WrongUse& error) {
        return refuse(app, error.what());
    }
    return status;
}

} // namespace korlit::host
