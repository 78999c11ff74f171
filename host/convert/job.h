// One file of a batch: what is to become of it, and what became of it.
#pragma once

#include "host/convert/verification.h"
#include "host/data/resampled_file.h"
#include "host/files/plan.h"
#include "host/proof/losses.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace korlit::host {

struct Job {
    Plan plan;
    std::string problem; ///< why it can't be done at all; empty if it can
};

/// What to do with targets that are there already.
enum class Existing : std::uint8_t {
    Refuse,
    Skip,    ///< pass over a set that is whole; of one that isn't, make what is missing
    Update,  ///< pass over a set that is no older than its source or not made from it; replace any
             ///< other
    Replace, ///< but for what the source itself was made from
};

enum class JobStatus : std::uint8_t { Converted, Skipped, Failed, Planned };

struct Outcome {
    JobStatus status = JobStatus::Failed;
    std::string message;
    std::vector<std::string> warnings{};       ///< what the source lacks
    std::vector<Loss> losses{};                ///< of what it has
    std::optional<ResampledFile> resampling{}; ///< where samples were brought to equal distances
    double seconds = 0;
    std::int64_t points = 0;
    std::int64_t peaks = 0;
    std::optional<RecordedVerdict> verdict{}; ///< where it was asked for and came so far
    std::vector<std::string> kept{};          ///< targets that are there already and stay
    std::string record{}; ///< its line of the manifest, where one is asked for and the worker lived
};

/// "converted", "skipped", "failed", "planned".
const char* statusName(JobStatus status);

/// What is to be done about a job.
struct Decision {
    Outcome outcome;                 ///< where nothing is to be done, with the reason
    std::vector<StagedFile> targets; ///< to be put in their place; all others stay
    bool isToBegin = false;
    bool isReplacing = false;
};

/// The targets that an outcome tells of as written, or to be written.
std::vector<StagedFile> writtenTargets(const Plan& plan, const Outcome& outcome);

/// Looks at what stands at the targets' places.
Decision decide(const Job& job, Existing existing);

/// The outcome of a job that would begin, for who only wants to know.
Outcome plannedOutcome(const Decision& decision);

/// Outcomes travel between processes as text, with the number of their job.
std::string packOutcome(std::size_t job, const Outcome& outcome);
Outcome unpackOutcome(const std::string& text);
/// The job's number in such a text.
std::size_t packedJob(const std::string& text);

} // namespace korlit::host
