#include "host/convert/converter.h"

#include "host/convert/delivery.h"
#include "host/convert/resampled_source.h"
#include "host/convert/verification.h"
#include "host/files/broken_files.h"
#include "host/files/diagnosis.h"
#include "host/files/float_columns.h"
#include "host/files/staging.h"
#include "host/system/moves.h"
#include "host/system/temporary_folder.h"
#include "host/text/utf8.h"
#include "host/text/words.h"

#include <chrono>
#include <exception>
#include <iostream>
#include <stdexcept>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

/// The words of an error of the file system, with its path.
std::string wordsOf(const fs::filesystem_error& error) {
    const fs::path& path = error.path2().empty() ? error.path1() : error.path2();
    return "Can't write " + path.string() + ": " + error.code().message();
}

fs::path folderOf(const Plan& plan) {
    const fs::path folder = plan.targets.front().path.parent_path();
    return folder.empty() ? "." : folder;
}

/// Throws where a run has other channels than were planned, or lacks some of what it announces and
/// that isn't allowed; else warns of what it lacks.
void lookAtRun(const Plan& plan, bool isCutAllowed, Outcome& outcome) {
    const RunCut cut = runCut(plan.source);
    if (cut.channels != 0 && cut.channels != plan.targets.size()) {
        throw std::runtime_error{"It has " + std::to_string(cut.channels) +
                                 " channels now, and had " + std::to_string(plan.targets.size()) +
                                 " when the batch began"};
    }
    if (cut.isOfSignal && !isCutAllowed) {
        throw std::runtime_error{cut.words + " (--allow-cut converts them)"};
    }
    if (!cut.words.empty()) {
        outcome.warnings.push_back(cut.words);
    }
}

/// A run that has gained channels meanwhile has a file of the next number.
void requireNoMoreStaged(const Plan& plan, const fs::path& stage) {
    std::string next = plan.targets.back().stagedName;
    ++next[next.size() - std::string_view{"1.cdf"}.size()];
    if (fs::exists(stage / next)) {
        throw std::runtime_error{channelsChangedText};
    }
}

/// What becomes of a file without a target: the library has words for it.
std::string refusalOf(const Plan& plan) {
    const TemporaryFolder stage;
    const StagedResult result = convertStaged(plan, stage.path());
    return withDiagnosis(result.message, plan, result.reason);
}

/// Why a file wasn't converted, and what would help.
std::string refusedWords(const Plan& plan, const StagedResult& result) {
    const std::string advice = formatOf(plan.kind).isAndi ? resamplingAdvice(plan.source) : "";
    return advice.empty() ? withDiagnosis(result.message, plan, result.reason)
                          : result.message + " (" + advice + ")";
}

/// The library takes any type for floats.
void requireFloats(const Plan& plan, const Prospect& prospect) {
    AndiImage header;
    const AndiImage* image = &header;
    if (prospect.sources.empty()) {
        loadHeader(header, plan.source);
    } else {
        image = prospect.sources.front().image;
    }
    if (const std::string problem = floatProblem(*image); !problem.empty()) {
        throw std::runtime_error{problem};
    }
}

/// What was done where only some files of a set were missing.
std::string completedWords(const std::vector<StagedFile>& written,
                           const std::vector<std::string>& kept) {
    std::vector<std::string> names;
    for (const StagedFile& target : written) {
        names.push_back(target.path.string());
    }
    return "Wrote " + joined(names, ", ") + "; " + joined(kept, ", ") +
           (kept.size() == 1 ? " was there already, as it must be"
                             : " were there already, as they must be");
}

/// Any file of some size is taken for a report.
void lookAtReport(const Plan& plan, Outcome& outcome) {
    const fs::path& report = plan.sources.back().path;
    if (!isReport(report.string())) {
        outcome.warnings.push_back(report.string() + ": " + noReportText);
    }
}

} // namespace

Outcome Converter::perform(const Job& job, std::size_t number) {
    const auto start = std::chrono::steady_clock::now();
    Outcome outcome;
    Witness witness;
    try {
        decideAndConvert(job, number, outcome, witness);
    } catch (const fs::filesystem_error& error) {
        outcome.message = wordsOf(error);
    } catch (const std::exception& error) {
        outcome.message = error.what();
    }
    const std::chrono::duration<double> duration = std::chrono::steady_clock::now() - start;
    outcome.seconds = duration.count();
    if (options.isRecorded && outcome.record.empty()) {
        outcome.record = witness.line(job, outcome, options.batch);
    }
    return outcome;
}

/// Another batch may put the same files in their places meanwhile. Then there is another look,
/// which finds them there.
void Converter::decideAndConvert(const Job& job, std::size_t number, Outcome& outcome,
                                 Witness& witness) {
    constexpr int lastLook = 10;
    for (int look = 1; look <= lastLook; ++look) {
        try {
            const Decision decision = decide(job, options.existing);
            outcome = decision.outcome;
            witness = {};
            if (decision.isToBegin) {
                convert(job, number, decision, outcome, witness);
            }
            return;
        } catch (const fs::filesystem_error& error) {
            if (error.code() != std::errc::file_exists || look == lastLook) {
                throw;
            }
        }
    }
}

void Converter::convert(const Job& job, std::size_t number, const Decision& decision,
                        Outcome& outcome, Witness& witness) {
    const Plan& plan = job.plan;
    const Format& format = formatOf(plan.kind);
    if (options.isRecorded) {
        witness.begin(plan);
    }
    if (plan.targets.empty()) {
        outcome.message = refusalOf(plan);
        return;
    }
    if (format.hasChannels) {
        lookAtRun(plan, options.isCutAllowed, outcome);
    }
    prepareWorkFolderIn(folderOf(plan));
    const ResampledSource source{plan, options.resampleMs, work->path()};
    const StagedResult result = convertStaged(source.plan(), work->path());
    outcome.message = source.withTruePath(result.message);
    if (!result.isConverted) {
        outcome.message = refusedWords(plan, result);
        return;
    }
    if (format.hasChannels) {
        requireNoMoreStaged(plan, work->path());
    }
    outcome.points = result.points;
    outcome.peaks = result.peaks;
    if (format.companionExtension != nullptr) {
        lookAtReport(plan, outcome);
    }
    Prospect prospect;
    if (options.isVerified || options.losses) {
        prospect = source.prospect(options.isVerified ? Wanted::All : Wanted::Losses);
    }
    if (format.isAndi) {
        requireFloats(source.plan(), prospect);
        outcome.message += " and " + plan.targets.back().path.string();
    }
    if (!outcome.kept.empty()) {
        requireAsStaged(plan, outcome.kept, work->path());
        outcome.message = completedWords(decision.targets, outcome.kept);
    }
    if (options.isVerified) {
        const Verdict verdict = verdictOfStaged(plan, work->path(), prospect);
        outcome.verdict = recorded(verdict);
        requireSame(verdict);
    }
    if (options.isRecorded) {
        witness.end(plan, decision.targets, work->path());
    }
    Outcome whole = outcome;
    whole.resampling = source.resampling();
    if (options.losses) {
        whole.losses = lossesOf(prospect, *options.losses);
    }
    whole.status = JobStatus::Converted;
    if (options.isRecorded) {
        whole.record = witness.line(job, whole, options.batch);
    }
    put(decision, plan, packOutcome(number, whole));
    outcome = whole;
}

/// Brings what was converted to its place.
void Converter::put(const Decision& decision, const Plan& plan, const std::string& record) {
    Delivery delivery{.moves = {},
                      .isReplacing = decision.isReplacing,
                      .isSynced = options.isSynced,
                      .record = options.batch + record};
    const auto permissions = permissionsLike(plan.source);
    for (const StagedFile& target : decision.targets) {
        setPermissions(work->path() / target.stagedName, permissions);
        delivery.moves.push_back({.stagedName = target.stagedName, .path = target.path});
    }
    try {
        deliver(delivery, *work);
    } catch (const OldFileKept&) {
        work->leave();
        work.reset();
        throw;
    }
    isWorkEmpty = decision.targets.size() == plan.targets.size();
}

void Converter::prepareWorkFolderIn(const fs::path& folder) {
    if (work && workParent == folder && work->isInPlace()) {
        // Until now the journal could have told of the last job.
        work->forget();
        if (!isWorkEmpty) {
            work->clear();
        }
    } else {
        makeFolders(folder, options.isSynced);
        work.emplace(folder);
        workParent = folder;
    }
    isWorkEmpty = false;
}

void settleFolder(const fs::path& folder, const std::string& batch, SettledOutcomes& settled) {
    settleAbandoned(folder.empty() ? "." : folder, [&](WorkFolder& work) {
        try {
            const auto record = settleDelivery(work);
            if (record && record->starts_with(batch)) {
                const std::string outcome = record->substr(batch.size());
                settled.emplace(packedJob(outcome), unpackOutcome(outcome));
            }
        } catch (const OldFileKept& kept) {
            work.leave();
            std::cerr << "korlit: " << printable(kept.what()) << '\n';
        }
    });
}

} // namespace korlit::host
