#include "host/convert/job.h"

#include "host/check/conversion_losses.h"
#include "host/system/moves.h"
#include "host/system/temporary_folder.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <chrono>
#include <exception>
#include <fstream>
#include <stdexcept>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

constexpr std::array<const char*, 3> statusNames{"converted", "skipped", "failed"};

/// Stands in a staging folder from the moment when all files are there and begin to move out.
constexpr const char* moveMark = "moving";

fs::path savedFile(const fs::path& stage, std::size_t target) {
    return stage / ("old" + std::to_string(target));
}

bool isThere(const fs::path& file) {
    std::error_code ignored;
    return fs::exists(fs::symlink_status(file, ignored));
}

/// Undoes the moves out of a staging folder unless all of them were made.
void undoMoves(const Plan& plan, const fs::path& stage) {
    const auto isMoved = [&](const StagedFile& target) {
        return !isThere(stage / target.stagedName);
    };
    if (!isThere(stage / moveMark) || std::ranges::all_of(plan.targets, isMoved)) {
        return;
    }
    for (std::size_t i = 0; i < plan.targets.size(); ++i) {
        std::error_code ignored;
        const StagedFile& target = plan.targets[i];
        if (isThere(savedFile(stage, i))) {
            fs::rename(savedFile(stage, i), target.path, ignored);
        } else if (isMoved(target)) {
            fs::remove(target.path, ignored);
        }
    }
}

/// Keeps what is to be replaced, under a second name where the file system has such.
void saveOld(const StagedFile& target, const fs::path& saved) {
    if (!isThere(target.path)) {
        return;
    }
    if (fs::is_directory(fs::symlink_status(target.path))) {
        throw std::runtime_error{"Can't replace the folder " + target.path.string()};
    }
    std::error_code error;
    fs::create_hard_link(target.path, saved, error);
    if (error) {
        fs::rename(target.path, saved);
    }
}

void moveOut(const Plan& plan, const fs::path& stage, Existing existing) {
    std::ofstream{stage / moveMark}.put('\n');
    try {
        for (std::size_t i = 0; i < plan.targets.size(); ++i) {
            const StagedFile& target = plan.targets[i];
            if (existing == Existing::Replace) {
                saveOld(target, savedFile(stage, i));
                fs::rename(stage / target.stagedName, target.path);
            } else if (const auto error = moveToFreePlace(stage / target.stagedName, target.path)) {
                throw fs::filesystem_error{"Can't write", target.path, error};
            }
        }
    } catch (const std::exception&) {
        undoMoves(plan, stage);
        throw;
    }
}

/// Whether the targets allow the job; else the outcome says why it ends here.
bool mayBegin(const Job& job, Existing existing, Outcome& outcome) {
    if (!job.problem.empty()) {
        outcome.message = job.problem;
        return false;
    }
    const auto there = std::ranges::find_if(
        job.plan.targets, [](const StagedFile& target) { return isThere(target.path); });
    if (existing == Existing::Replace || there == job.plan.targets.end()) {
        return true;
    }
    const bool areAllThere = std::ranges::all_of(
        job.plan.targets, [](const StagedFile& target) { return isThere(target.path); });
    if (existing == Existing::Skip && areAllThere) {
        outcome.status = JobStatus::Skipped;
        outcome.message = "Skipped, " + there->path.string() + " is there already";
    } else {
        outcome.message = there->path.string() + " is there already (--force replaces it)";
    }
    return false;
}

void convert(const Job& job, Existing existing, const std::string& label, Outcome& outcome) {
    const Plan& plan = job.plan;
    const fs::path folder =
        plan.targets.empty() ? fs::temp_directory_path() : plan.targets.front().path.parent_path();
    if (!folder.empty()) {
        fs::create_directories(folder);
    }
    const TemporaryFolder stage{folder.empty() ? "." : folder, label};
    const StagedResult result = convertStaged(plan, stage.path());
    outcome.message = result.message;
    outcome.points = result.points;
    outcome.peaks = result.peaks;
    if (!result.isConverted) {
        return;
    }
    if (formatOf(plan.kind).isAndi) {
        AndiImage image;
        loadWithoutSignal(image, plan.source);
        outcome.warnings = cutsInPair(image);
    }
    moveOut(plan, stage.path(), existing);
    outcome.status = JobStatus::Converted;
}

/// The words of an error of the file system, with its path.
std::string wordsOf(const fs::filesystem_error& error) {
    const fs::path& path = error.path2().empty() ? error.path1() : error.path2();
    return "Can't write " + path.string() + ": " + error.code().message();
}

} // namespace

const char* statusName(JobStatus status) {
    return statusNames[static_cast<std::size_t>(status)];
}

Outcome perform(const Job& job, Existing existing, const std::string& label) {
    const auto start = std::chrono::steady_clock::now();
    Outcome outcome;
    try {
        if (mayBegin(job, existing, outcome)) {
            convert(job, existing, label, outcome);
        }
    } catch (const fs::filesystem_error& error) {
        outcome.message = wordsOf(error);
    } catch (const std::exception& error) {
        outcome.message = error.what();
    }
    const std::chrono::duration<double> duration = std::chrono::steady_clock::now() - start;
    outcome.seconds = duration.count();
    return outcome;
}

void clearUp(const Job& job, const std::string& label) {
    if (job.plan.targets.empty()) {
        return;
    }
    const fs::path folder = job.plan.targets.front().path.parent_path();
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator{folder.empty() ? "." : folder, ignored}) {
        if (entry.path().filename().string().starts_with(label)) {
            undoMoves(job.plan, entry.path());
            fs::remove_all(entry.path(), ignored);
        }
    }
}

std::string packOutcome(const Outcome& outcome) {
    const nlohmann::json json{static_cast<int>(outcome.status),
                              outcome.message,
                              outcome.warnings,
                              outcome.seconds,
                              outcome.points,
                              outcome.peaks};
    const auto bytes = nlohmann::json::to_cbor(json);
    return {bytes.begin(), bytes.end()};
}

Outcome unpackOutcome(const std::string& text) {
    const nlohmann::json json = nlohmann::json::from_cbor(text);
    return {.status = static_cast<JobStatus>(json[0].get<int>()),
            .message = json[1],
            .warnings = json[2],
            .seconds = json[3],
            .points = json[4],
            .peaks = json[5]};
}

} // namespace korlit::host
