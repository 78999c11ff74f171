#include "host/convert/job.h"

#include "host/files/origin.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <iterator>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

constexpr std::array<const char*, 4> statusNames{"converted", "skipped", "failed", "planned"};

/// Why nothing can be put in a target's place; empty if nothing is in the way.
std::string obstacle(const StagedFile& target, Existing existing) {
    std::error_code ignored;
    const fs::file_status there = fs::symlink_status(target.path, ignored);
    if (!fs::exists(there)) {
        return {};
    }
    const fs::file_status status = fs::is_symlink(there) ? fs::status(target.path, ignored) : there;
    if (fs::is_directory(status)) {
        return "Can't write " + target.path.string() + ": Is a directory";
    }
    if (existing == Existing::Replace || fs::is_regular_file(status)) {
        return {};
    }
    return target.path.string() +
           (fs::exists(status) ? " is no regular file" : " is a link that leads nowhere") +
           " (--force replaces it)";
}

constexpr const char* originText = " looks like what it was made from";

bool isThere(const StagedFile& target) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(target.path, ignored));
}

/// Whether a target is older than any of the files that it is made of.
bool isOlder(const StagedFile& target, const std::vector<StagedFile>& sources) {
    std::error_code ignored;
    const auto time = fs::last_write_time(target.path, ignored);
    return std::ranges::any_of(sources, [&](const StagedFile& source) {
        return time < fs::last_write_time(source.path, ignored);
    });
}

Decision skipped(const std::string& message) {
    Decision decision;
    decision.outcome.status = JobStatus::Skipped;
    decision.outcome.message = message;
    return decision;
}

Decision failed(const std::string& message) {
    Decision decision;
    decision.outcome.message = message;
    return decision;
}

Decision begun(std::vector<StagedFile> targets, bool isReplacing) {
    return {.outcome = {},
            .targets = std::move(targets),
            .isToBegin = true,
            .isReplacing = isReplacing};
}

/// Leaves what is there, and makes what is missing.
Decision decideToSkip(const Plan& plan, const StagedFile& there) {
    std::vector<StagedFile> missing;
    std::ranges::remove_copy_if(plan.targets, std::back_inserter(missing), isThere);
    return missing.empty() ? skipped("Skipped, " + there.path.string() + " is there already")
                           : begun(missing, false);
}

Decision decideToUpdate(const Plan& plan) {
    const bool isDue = std::ranges::any_of(plan.targets, [&](const StagedFile& target) {
        return !isThere(target) || isOlder(target, plan.sources);
    });
    if (!isDue) {
        return skipped("Skipped, " + plan.targets.front().path.string() +
                       " is no older than its source");
    }
    for (const StagedFile& target : plan.targets) {
        if (isThere(target) && isOrigin(plan, target.path)) {
            return skipped("Skipped, " + target.path.string() + originText);
        }
        if (isThere(target) && !canBeMadeFrom(plan, target.path)) {
            return skipped("Skipped, " + target.path.string() +
                           " was not made from it (--force replaces it)");
        }
    }
    return begun(plan.targets, true);
}

Decision decideToReplace(const Plan& plan) {
    const auto origin = std::ranges::find_if(plan.targets, [&](const StagedFile& target) {
        return isThere(target) && isOrigin(plan, target.path);
    });
    return origin == plan.targets.end()
               ? begun(plan.targets, true)
               : failed(origin->path.string() + originText +
                        " and is not replaced: say --output-dir for another place");
}

} // namespace

const char* statusName(JobStatus status) {
    return statusNames[static_cast<std::size_t>(status)];
}

Decision decide(const Job& job, Existing existing) {
    const Plan& plan = job.plan;
    if (!job.problem.empty()) {
        return failed(job.problem);
    }
    for (const StagedFile& target : plan.targets) {
        if (const std::string words = obstacle(target, existing); !words.empty()) {
            return failed(words);
        }
    }
    const auto there = std::ranges::find_if(plan.targets, isThere);
    if (there == plan.targets.end()) {
        return begun(plan.targets, existing == Existing::Update || existing == Existing::Replace);
    }
    switch (existing) {
    case Existing::Skip:
        return decideToSkip(plan, *there);
    case Existing::Update:
        return decideToUpdate(plan);
    case Existing::Replace:
        return decideToReplace(plan);
    case Existing::Refuse:
        break;
    }
    return failed(there->path.string() + " is there already (--force replaces it)");
}

Outcome plannedOutcome(const Decision& decision) {
    if (!decision.isToBegin) {
        return decision.outcome;
    }
    Outcome outcome{.status = JobStatus::Planned, .message = "Would write "};
    for (const StagedFile& target : decision.targets) {
        outcome.message += (&target == &decision.targets.front() ? "" : ", ") +
                           target.path.string() +
                           (isThere(target) ? " (replacing what is there)" : "");
    }
    return outcome;
}

namespace {

nlohmann::json packed(const RecordedVerdict& verdict) {
    nlohmann::json expected = nlohmann::json::array();
    for (const auto& [rule, words, count] : verdict.expected) {
        expected.push_back({rule, words, count});
    }
    return {verdict.words, verdict.isSame, expected, verdict.unexpected};
}

RecordedVerdict unpacked(const nlohmann::json& json) {
    RecordedVerdict verdict{
        .words = json[0], .isSame = json[1], .expected = {}, .unexpected = json[3]};
    for (const auto& rule : json[2]) {
        verdict.expected.push_back({.rule = rule[0], .words = rule[1], .count = rule[2]});
    }
    return verdict;
}

nlohmann::json packed(const ResampledFile& resampling) {
    return {resampling.intervalMs, resampling.oldCount, resampling.newCount,
            resampling.deviation,  resampling.unit,     resampling.isTotalIon};
}

ResampledFile unpackedResampling(const nlohmann::json& json) {
    return {.intervalMs = json[0],
            .oldCount = json[1],
            .newCount = json[2],
            .deviation = json[3],
            .unit = json[4],
            .isTotalIon = json[5]};
}

} // namespace

std::string packOutcome(std::size_t job, const Outcome& outcome) {
    auto losses = nlohmann::json::array();
    for (const auto& [rule, words] : outcome.losses) {
        losses.push_back({rule, words});
    }
    const nlohmann::json json{job,
                              static_cast<int>(outcome.status),
                              outcome.message,
                              outcome.warnings,
                              losses,
                              outcome.seconds,
                              outcome.points,
                              outcome.peaks,
                              outcome.record,
                              outcome.verdict ? packed(*outcome.verdict) : nlohmann::json{},
                              outcome.resampling ? packed(*outcome.resampling) : nlohmann::json{}};
    const auto bytes = nlohmann::json::to_cbor(json);
    return {bytes.begin(), bytes.end()};
}

Outcome unpackOutcome(const std::string& text) {
    const nlohmann::json json = nlohmann::json::from_cbor(text);
    Outcome outcome{.status = static_cast<JobStatus>(json[1].get<int>()),
                    .message = json[2],
                    .warnings = json[3],
                    .seconds = json[5],
                    .points = json[6],
                    .peaks = json[7],
                    .record = json[8]};
    for (const auto& loss : json[4]) {
        outcome.losses.push_back({.rule = loss[0], .words = loss[1]});
    }
    if (!json[9].is_null()) {
        outcome.verdict = unpacked(json[9]);
    }
    if (!json[10].is_null()) {
        outcome.resampling = unpackedResampling(json[10]);
    }
    return outcome;
}

std::size_t packedJob(const std::string& text) {
    return nlohmann::json::from_cbor(text)[0];
}

} // namespace korlit::host
