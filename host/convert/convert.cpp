#include "host/convert/convert.h"

#include "host/system/interrupts.h"
#include "host/system/processes.h"
#include "host/system/workers.h"
#include "host/text/wrong_use.h"

#include <iostream>
#include <stdexcept>
#include <string>

namespace korlit::host {

namespace {

constexpr int interruptedStatus = 130;

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

} // namespace

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

} // namespace korlit::host
