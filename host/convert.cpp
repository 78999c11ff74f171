#include "host/commands.h"

#include "host/report.h"
#include "host/usage.h"
#include "host/work_list.h"
#include "platform/workers.h"

#include <charconv>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace korlit::host {

namespace {

constexpr int interruptedStatus = 130;

struct ConvertOptions {
    WorkOptions work;
    ReportOptions report;
    std::size_t workerCount = processorCount();
    bool isForced = false;
    bool isSkipping = false;
};

constexpr const char* footer =
    "Without --output-dir or --output the files are written beside their source, under its name:\n"
    "an ANDI file becomes a pair (.sli, .rpt), a pair an ANDI file (.cdf), and a run one ANDI "
    "file\n"
    "for each channel (1.cdf, 2.cdf, ...). Nothing that exists is replaced unless --force is "
    "given.\n"
    "\n"
    "Examples:\n"
    "  korlit convert run.cdf\n"
    "  korlit convert -r archive --output-dir converted\n"
    "  korlit convert -r archive --output-dir converted --skip-existing   (take it up again)\n"
    "  korlit convert run.sli --output exported.cdf\n"
    "  find archive -name '*.cdf' | korlit convert --files-from - --json\n"
    "\n"
    "Exit status: 0 all were converted, 1 some failed, 2 wrong use, 130 interrupted.";

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

Existing existingOf(const ConvertOptions& options) {
    if (options.isForced) {
        return Existing::Replace;
    }
    return options.isSkipping ? Existing::Skip : Existing::Refuse;
}

/// Marks the staging folders of a job. They go by the process that hands the jobs out, which clears
/// up behind its workers.
class Labels {
  public:
    std::string of(std::size_t job) const { return prefix + std::to_string(job) + "-"; }

  private:
    std::string prefix = ".korlit-" + std::to_string(processId()) + "-";
};

Outcome outcomeOf(const TaskResult& result, const Job& job, const Labels& labels) {
    if (result.isAnswered) {
        return unpackOutcome(result.text);
    }
    clearUp(job, labels.of(result.task));
    return {.message = "Not converted, its process " + result.text};
}

/// What can't be listed was asked for wrongly.
WorkList worksOf(const WorkOptions& options) {
    try {
        return listWork(options);
    } catch (const std::runtime_error& error) {
        throw WrongUse{error.what()};
    }
}

int convertAll(const ConvertOptions& options) {
    const WorkList work = worksOf(options.work);
    if (options.report.isVerbose) {
        for (const std::string& file : work.leftOut) {
            std::cerr << "Left out " << file << '\n';
        }
    }
    if (work.jobs.empty() && !options.report.isQuiet) {
        std::cerr << "korlit: nothing to convert\n";
    }
    Report report{options.report, work.jobs.size()};
    const Labels labels;
    watchInterrupts();
    runInWorkers(options.workerCount, work.jobs.size(),
                 {.run =
                      [&](std::size_t task) {
                          return packOutcome(
                              perform(work.jobs[task], existingOf(options), labels.of(task)));
                      },
                  .finished =
                      [&](const TaskResult& result) {
                          const Job& job = work.jobs[result.task];
                          report.add(job, outcomeOf(result, job, labels));
                      },
                  .tick = [&] { report.tick(); },
                  .mayGoOn = [] { return !isInterrupted(); }});
    report.end(isInterrupted());
    if (isInterrupted()) {
        return interruptedStatus;
    }
    return report.count(JobStatus::Failed) == 0 ? 0 : 1;
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

} // namespace

void addConvertCommand(CLI::App& app, int& status) {
    CLI::App* command = app.add_subcommand(
        "convert",
        "Convert ANDI files to Merivolta pairs, and pairs and Dunvale runs to ANDI files");
    const auto options = std::make_shared<ConvertOptions>();
    addWorkOptions(*command, *options);
    addReportOptions(*command, *options);
    command->footer(footer);
    command->callback([options, &status] {
        if (options->work.paths.empty() && options->work.filesFrom.empty()) {
            throw CLI::RequiredError{"PATH or --files-from"};
        }
        status = convertAll(*options);
    });
}

} // namespace korlit::host
