#include "host/convert/recording.h"

#include "host/data/data_set.h"
#include "host/manifest/file_facts.h"
#include "host/page/page.h"
#include "host/system/machine.h"
#include "host/text/stamps.h"
#include "host/text/wrong_use.h"

#include <ctime>
#include <functional>
#include <stdexcept>
#include <utility>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

/// A path from the root, by the one name of its folder whichever way leads there.
std::string wholePath(const fs::path& file) {
    std::error_code error;
    const fs::path folder = file.parent_path();
    fs::path whole = fs::weakly_canonical(folder.empty() ? "." : folder, error);
    if (error) {
        whole = fs::absolute(folder, error);
    }
    return error ? file.string() : (whole / file.filename()).string();
}

/// Empty where it has been removed.
std::string currentFolder() {
    std::error_code ignored;
    return fs::current_path(ignored).string();
}

/// All signals of a conversion: of its source where that is an ANDI file, else of what it became.
std::vector<DataSet> signalsOf(const Plan& plan, const fs::path& stage) {
    if (formatOf(plan.kind).isAndi) {
        return loadDataSets(plan.source, plan.kind);
    }
    std::vector<DataSet> sets;
    for (const StagedFile& target : plan.targets) {
        for (DataSet& set : loadDataSets((stage / target.stagedName).string(), FileKind::Andi)) {
            sets.push_back(std::move(set));
        }
    }
    return sets;
}

} // namespace

SideFiles sideFilesOf(const RecordingOptions& options) {
    SideFiles sides;
    const auto add = [&](const fs::path& file, const char* kind) {
        const std::string problem = file.empty() ? "" : sides.add(file, kind);
        if (!problem.empty()) {
            throw WrongUse{problem};
        }
    };
    add(options.manifest, "manifest");
    add(options.page, "page");
    return sides;
}

void Witness::begin(const Plan& plan) {
    for (const StagedFile& source : plan.sources) {
        record.sources.push_back({.path = wholePath(source.path), .digest = digestOf(source.path)});
    }
}

void Witness::end(const Plan& plan, const std::vector<StagedFile>& targets, const fs::path& stage) {
    for (const StagedFile& target : targets) {
        record.outputs.push_back(
            {.path = wholePath(target.path), .digest = digestOf(stage / target.stagedName)});
    }
    const std::vector<DataSet> signals = signalsOf(plan, stage);
    for (std::size_t i = 0; i < plan.sources.size(); ++i) {
        const auto now = digestOf(plan.sources[i].path);
        if (!now || now != record.sources[i].digest) {
            throw std::runtime_error{"Its file " + plan.sources[i].path.string() +
                                     " has changed while it was converted"};
        }
    }
    describe(record, signals);
}

std::string Witness::line(const Job& job, const Outcome& outcome, const std::string& batch) const {
    FileRecord whole = record;
    whole.batch = batch;
    whole.time = isoText(std::time(nullptr));
    whole.kind = formatOf(job.plan.kind).name;
    whole.result = statusName(outcome.status);
    whole.message = outcome.message;
    whole.verdict = outcome.verdict;
    whole.warnings = outcome.warnings;
    for (const Loss& loss : outcome.losses) {
        whole.losses.push_back(loss.words);
    }
    if (whole.sources.empty()) {
        whole.sources.push_back({.path = wholePath(job.plan.source)});
    }
    if (!whole.isConverted()) {
        whole.outputs.clear();
        for (const StagedFile& target : job.plan.targets) {
            whole.outputs.push_back({.path = wholePath(target.path)});
        }
    }
    return lineOf(whole);
}

Recording::Recording(RecordingOptions recordingOptions, std::string batchName,
                     std::size_t fileCount)
    : options{std::move(recordingOptions)}, batch{std::move(batchName)} {
    const BatchRecord begun{.batch = batch,
                            .time = isoText(std::time(nullptr)),
                            .version = options.version,
                            .machine = machineName(),
                            .folder = currentFolder(),
                            .arguments = options.arguments,
                            .fileCount = fileCount};
    if (!options.manifest.empty()) {
        if (const std::string problem = manifestProblem(options.manifest); !problem.empty()) {
            throw WrongUse{problem};
        }
        write([&] {
            log.emplace(options.manifest, options.permissions);
            log->append(lineOf(begun));
        });
    }
    korlit::host::add(recorded, begun);
    end();
    if (!problemText.empty()) {
        throw WrongUse{problemText};
    }
}

void Recording::add(const Job& job, const Outcome& outcome) {
    if (!options.isAsked() || !problemText.empty()) {
        return;
    }
    const std::string line =
        outcome.record.empty() ? Witness{}.line(job, outcome, batch) : outcome.record;
    if (log) {
        write([&] { log->append(line); });
    }
    if (auto record = options.page.empty() ? std::nullopt : recordIn(line)) {
        korlit::host::add(recorded, std::move(*record));
    }
}

void Recording::end() {
    if (!options.page.empty()) {
        write([&] { writePage(options.page, recorded, options.permissions); });
    }
}

void Recording::write(const std::function<void()>& call) {
    try {
        call();
    } catch (const fs::filesystem_error& error) {
        problemText = "can't write " + error.path1().string() + ": " + error.code().message();
    } catch (const std::runtime_error& error) {
        problemText = error.what();
    }
}

} // namespace korlit::host
