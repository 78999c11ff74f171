#include "host/convert/convert.h"

#include "host/convert/converter.h"
#include "host/system/interrupts.h"
#include "host/system/workers.h"
#include "host/text/output.h"
#include "host/text/utf8.h"

#include <iostream>
#include <random>
#include <set>
#include <system_error>
#include <utility>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

/// What no other batch has, on this machine or on another.
std::string newBatchName() {
    std::random_device random;
    std::string name;
    for (int i = 0; i < 4; ++i) {
        name += std::to_string(random()) + '-';
    }
    return name;
}

/// Ends what killed processes have left in these folders.
void settleFolders(const std::set<fs::path>& folders) {
    SettledOutcomes ofOthers;
    for (const fs::path& folder : folders) {
        settleFolder(folder, "none", ofOthers);
    }
}

/// The folders that were named, of which the list is made.
std::set<fs::path> namedFolders(const WorkOptions& options) {
    std::set<fs::path> folders{options.outputFolder};
    for (const std::string& path : options.inputs.paths) {
        std::error_code ignored;
        if (fs::is_directory(path, ignored)) {
            folders.insert(path);
        }
    }
    return folders;
}

/// A worker that was killed behind its last move has converted its file all the same.
Outcome outcomeOf(const TaskResult& result, const Job& job, const std::string& batch,
                  SettledOutcomes& settled) {
    if (result.isAnswered) {
        return unpackOutcome(result.text);
    }
    if (!job.plan.targets.empty()) {
        settleFolder(job.plan.targets.front().path.parent_path(), batch, settled);
    }
    const auto known = settled.find(result.task);
    return known != settled.end() ? known->second
                                  : Outcome{.message = "Not converted, its process " + result.text};
}

void planAll(const WorkList& work, Existing existing, Report& report) {
    for (std::size_t i = 0; i < work.size(); ++i) {
        const Job job = work.job(i);
        report.add(job, plannedOutcome(decide(job, existing)));
    }
}

/// Words take more time than all else that is known of a small file.
std::optional<LossText> lossTextFor(const ReportOptions& report, const Recording& recording) {
    if (report.isVerbose || report.isJson || recording.isAsked()) {
        return LossText::Words;
    }
    return report.isQuiet ? std::nullopt : std::optional{LossText::RulesOnly};
}

void convertInWorkers(const WorkList& work, const ConvertOptions& options, Report& report,
                      Recording& recording) {
    const std::string& batch = recording.batchName();
    Converter converter{{.existing = options.existing,
                         .isCutAllowed = options.isCutAllowed,
                         .isVerified = options.isVerified,
                         .resampleMs = options.resampleMs,
                         .losses = lossTextFor(options.report, recording),
                         .isSynced = options.isSynced,
                         .isRecorded = recording.isAsked(),
                         .batch = batch}};
    settleFolders(work.targetFolders());
    SettledOutcomes settled;
    runInWorkers(options.workerCount, work.size(),
                 {.run =
                      [&](std::size_t task) {
                          return packOutcome(task, converter.perform(work.job(task), task));
                      },
                  .end = [&] { converter.end(); },
                  .finished =
                      [&](const TaskResult& result) {
                          const Job job = work.job(result.task);
                          const Outcome outcome = outcomeOf(result, job, batch, settled);
                          report.add(job, outcome);
                          recording.add(job, outcome);
                      },
                  .tick = [&] { report.tick(); },
                  .mayGoOn = [&] { return !isInterrupted() && recording.problem().empty(); }});
}

} // namespace

int convertAll(const ConvertOptions& options) {
    if (!options.isDryRun) {
        settleFolders(namedFolders(options.work));
    }
    const WorkList work = listWork(options.work, sideFilesOf(options.recording));
    if (options.report.isVerbose) {
        for (const std::string& file : work.ignored()) {
            std::cerr << "Ignored " << printable(file) << '\n';
        }
    }
    Report report{options.report,
                  {.jobCount = work.size(),
                   .ignoredCount = work.ignored().size(),
                   .reachedCount = work.reachedCount()}};
    RecordingOptions recordingOptions = options.isDryRun ? RecordingOptions{} : options.recording;
    recordingOptions.permissions = work.recordPermissions();
    Recording recording{std::move(recordingOptions), newBatchName(), work.size()};
    bool isStopped = false;
    watchInterrupts();
    try {
        options.isDryRun ? planAll(work, options.existing, report)
                         : convertInWorkers(work, options, report, recording);
    } catch (const std::system_error& error) {
        std::cerr << "korlit: " << error.what() << '\n';
        isStopped = true;
    }
    recording.end();
    if (!recording.problem().empty()) {
        std::cerr << "korlit: " << printable(recording.problem()) << '\n';
        isStopped = true;
    }
    report.end(isInterrupted());
    finishOutput();
    if (isInterrupted()) {
        return interruptedStatus;
    }
    return report.count(JobStatus::Failed) == 0 && !isStopped ? 0 : 1;
}

} // namespace korlit::host
