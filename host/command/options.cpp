#include "host/command/options.h"

#include "host/check/check.h"
#include "host/command/command_tree.h"
#include "host/command/help_texts.h"
#include "host/command/suggestions.h"
#include "host/command/values.h"
#include "host/compare/compare.h"
#include "host/convert/convert.h"
#include "host/info/info.h"
#include "host/plot/plot.h"
#include "host/text/utf8.h"
#include "host/text/words.h"
#include "host/text/wrong_use.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <array>
#include <iostream>
#include <iterator>
#include <map>
#include <memory>

namespace korlit::host {

namespace {
// 1 is kept for what failed or differs.
constexpr int wrongUse = 2;

/// Choices as the help shows them behind the name of a value, and as choicesOf reads them again.
std::string shown(const std::vector<std::string>& choices) {
    return '{' + joined(choices, ",") + '}';
}

/// --from, by which a user says what kind the files are.
void addKindOption(CLI::App& command, FileKind& kind) {
    const auto formats = knownFormats();
    std::vector<std::string> names;
    std::ranges::transform(formats, std::back_inserter(names), &Format::name);
    const auto read = [&kind, formats, names](const std::string& name) {
        const auto format = std::ranges::find(formats, name, &Format::name);
        if (format == formats.end()) {
            throw CLI::ValidationError{"--from", "must be " + alternatives(names)};
        }
        kind = format->kind;
    };
    command
        .add_option_function<std::string>(
            "--from", read, "Take all files for this kind instead of recognising each")
        ->type_name("KIND:" + shown(names));
}

void addWorkOptions(CLI::App& command, ConvertOptions& options) {
    WorkOptions& work = options.work;
    command
        .add_option("PATH", work.paths, "Files, and folders of which what is recognised is taken")
        ->type_name("");
    command.add_flag("-r,--recursive", work.isRecursive,
                     "Take folders with all that lies below, but for what is hidden");
    command
        .add_option("--files-from", work.filesFrom,
                    "Take further paths from the lines of a file; - is standard input")
        ->type_name("LIST");
    command.add_flag("-0,--null", work.isZeroSeparated,
                     "The paths of that file end with NUL characters instead of lines");
    addKindOption(command, work.from);
    const std::map<std::string, Goal> goals{{"andi", Goal::Andi}, {"pair", Goal::Pair}};
    command.add_option("--to", work.to, "Convert what becomes this, and in folders nothing else")
        ->transform(CLI::Transformer{goals})
        ->type_name("KIND:{andi,pair}");
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
                if (!readShard(text, work.shard, work.shardCount)) {
                    throw CLI::ValidationError{"--shard",
                                               "must be I/N with I from 1 to N, as in 2/5"};
                }
            },
            "Take the I-th of N parts of the work, the same parts on every machine")
        ->type_name("I/N");
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
                                        "missing of a set")
                     ->excludes(force);
    command
        .add_flag_callback("-u,--update", existing(Existing::Update),
                           "Replace what is older than its source, pass over the rest")
        ->excludes(force)
        ->excludes(skip);
    command.add_flag("-n,--dry-run", options.isDryRun,
                     "Tell what would be done, and touch nothing");
    command.add_flag("--allow-cut", options.isCutAllowed,
                     "Convert runs that lack samples or channels as far as they go");
    command.add_flag("--sync", options.isSynced,
                     "Have the disk hold each file before it comes to its place");
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
        "Converts ANDI files to Merivolta pairs, and pairs and Dunvale runs to ANDI files");
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
    command->add_option("FILE", options->files, "ANDI files, slice files of pairs, runs")
        ->required()
        ->type_name("");
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

void addPlotCommand(CLI::App& app, int& status) {
    constexpr double leastSize = 200;
    constexpr double largestSize = 10000;
    const auto options = std::make_shared<PlotOptions>();
    CLI::App* command =
        app.add_subcommand("plot", "Draws the chromatogram of a file as SVG, PNG or PDF");
    command->footer(plotHelp);
    command->add_option("FILE", options->file, "An ANDI file, a slice file or a run")
        ->required()
        ->type_name("");
    command->add_option("-o,--output", options->output, "The chart: a .svg, .png or .pdf file")
        ->required()
        ->check(refuseChartName)
        ->type_name("FILE");
    const CLI::Validator isSize = CLI::Range(leastSize, largestSize).description("");
    command
        ->add_option("--width", options->width, "Its width in points or pixels, from 200 to 10000")
        ->capture_default_str()
        ->check(isSize)
        ->type_name("N");
    command
        ->add_option("--height", options->height,
                     "Its height, from 200 to 10000; else after the number of channels")
        ->check(isSize)
        ->type_name("N");
    command->add_option("--from-time", options->from, "Where the time axis starts, in minutes")
        ->check(refuseMinutes)
        ->type_name("MINUTES");
    command->add_option("--to-time", options->to, "Where it ends")
        ->check(refuseMinutes)
        ->type_name("MINUTES");
    command->add_flag("--no-peaks", options->isWithoutPeaks, "Draw the signal alone");
    command->add_option("--title", options->title, "The title, else the sample's name")
        ->type_name("TEXT");
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
    command.add_option("FILE", options->files, "ANDI files")->required()->type_name("");
    command.add_flag("--json", options->isJson, "Print one JSON object a line for each file");
    command.add_flag("-q,--quiet", options->isQuiet,
                     "Print errors and warnings only, and nothing of files that conform");
    command.footer(checkHelp);
    command.callback([options, &status] { status = checkFiles(*options); });
}

void addComparisonOptions(CLI::App& command, CompareOptions& options) {
    const std::vector<std::string> parts{"signal", "peaks", "texts"};
    command.add_option("--tolerance", options.comparison.tolerance, "Relative; see below")
        ->check(refuseTolerance)
        ->type_name("T");
    command
        .add_option("--only", options.comparison.parts,
                    "Compare these parts only, with commas between them")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(CLI::IsMember{parts}.description(""))
        ->type_name("PARTS:" + shown(parts));
    command.add_option("--channel", options.channel, "Of a run, compare this channel, from 1")
        ->check(CLI::Validator{CLI::PositiveNumber}.description(""))
        ->type_name("N");
}

void addCompareCommand(CLI::App& app, int& status) {
    const auto options = std::make_shared<CompareOptions>();
    CLI::App* const command = app.add_subcommand("compare", "Tells in what two data sets differ");
    command->add_option("A", options->a, "ANDI file, slice file of a pair, or run")
        ->required()
        ->type_name("");
    command->add_option("B", options->b, "The other")->required()->type_name("");
    addComparisonOptions(*command, *options);
    CLI::Option* const json = command->add_flag("--json", options->json, "Print one JSON object");
    command->add_flag("-q,--quiet", options->quiet, "Print nothing, answer by the exit status")
        ->excludes(json);
    command->footer(compareHelp);
    command->callback([options, &status] { status = compareFiles(*options); });
}

std::vector<std::string> choicesOf(const std::string& type) {
    const std::size_t start = type.find('{');
    return start == std::string::npos
               ? std::vector<std::string>{}
               : CLI::detail::split(type.substr(start + 1, type.find('}') - start - 1), ',');
}

OptionInfo infoOf(const CLI::Option& option) {
    OptionInfo info{
        .names = {},
        .value = option.get_name(),
        .choices = {},
        .description = CLI::detail::find_and_replace(option.get_description(), "\n", " "),
        .isRequired = option.get_required(),
        .isList = option.get_items_expected_max() > 1 || option.get_delimiter() != '\0'};
    if (!option.get_positional()) {
        const std::string type = option.get_type_name();
        info.value = type.substr(0, type.find(':'));
        info.choices = choicesOf(type);
        for (const std::string& name : option.get_snames()) {
            info.names.push_back('-' + name);
        }
        for (const std::string& name : option.get_lnames()) {
            info.names.push_back("--" + name);
        }
    }
    return info;
}

CommandInfo infoOf(const CLI::App& app) {
    CommandInfo info{.name = app.get_name(),
                     .description = app.get_description(),
                     .details = app.get_footer(),
                     .arguments = {},
                     .options = {},
                     .commands = {}};
    for (const CLI::Option* option : app.get_options()) {
        (option->get_positional() ? info.arguments : info.options).push_back(infoOf(*option));
    }
    for (const CLI::App* command : app.get_subcommands({})) {
        info.commands.push_back(infoOf(*command));
    }
    return info;
}

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

/// The parser of all commands, which leave their exit status in `status`.
std::unique_ptr<CLI::App> parserInto(int& status) {
    auto app = std::make_unique<CLI::App>(
        "Converts chromatography data between ANDI files and native formats, and looks into "
        "them.",
        "korlit");
    app->set_version_flag("--version", std::string{"korlit "} + KORLIT_VERSION);
    app->require_subcommand(1);
    for (const auto add :
         {addConvertCommand, addInfoCommand, addPlotCommand, addCheckCommand, addCompareCommand}) {
        add(*app, status);
    }
    return app;
}

} // namespace

CommandInfo commandTree() {
    int status = 0;
    return infoOf(*parserInto(status));
}

int runCommand(int argumentCount, char** arguments) {
    int status = 0;
    const std::unique_ptr<CLI::App> app = parserInto(status);
    try {
        app->parse(argumentCount, arguments);
    } catch (const CLI::ParseError& error) {
        // --help and --version come this way, too.
        return error.get_exit_code() == 0 ? app->exit(error) : refuse(*app, usageText(*app, error));
    } catch (const WrongUse& error) {
        return refuse(*app, error.what());
    }
    return status;
}

} // namespace korlit::host
