// One file of a batch: what is to become of it, and what became of it.
#pragma once

#include "host/files/staging.h"

#include <cstdint>
#include <string>
#include <vector>

namespace korlit::host {

/// What to do with a target that is there already.
enum class Existing : std::uint8_t { Refuse, Skip, Replace };

struct Job {
    Plan plan;
    std::string problem; ///< why it can't be done at all; empty if it can
};

enum class JobStatus : std::uint8_t { Converted, Skipped, Failed };

struct Outcome {
    JobStatus status = JobStatus::Failed;
    std::string message;
    std::vector<std::string> warnings{}; ///< what the target has no room for
    double seconds = 0;
    std::int64_t points = 0;
    std::int64_t peaks = 0;
};

/// "converted", "skipped", "failed".
const char* statusName(JobStatus status);

/// Does a job. The targets come to their place whole or not at all; one that is there already stays
/// as it was unless all of them are replaced. `label` marks the job's staging folders.
Outcome perform(const Job& job, Existing existing, const std::string& label);

/// Clears up behind a job whose process was killed: puts back what was being replaced and removes
/// the staging folders with that label.
void clearUp(const Job& job, const std::string& label);

/// Outcomes travel between processes as text.
std::string packOutcome(const Outcome& outcome);
Outcome unpackOutcome(const std::string& text);

} // namespace korlit::host
