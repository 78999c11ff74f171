// What a batch tells while it runs: a line for each file on standard output, and on a terminal how
// far it has come on standard error.
#pragma once

#include "host/convert/job.h"

#include <array>
#include <chrono>
#include <cstddef>

namespace korlit::host {

struct ReportOptions {
    bool isJson = false;
    bool isQuiet = false;   ///< only what failed
    bool isVerbose = false; ///< with what was ignored, warnings in full, seconds
};

/// What a batch has found, besides its jobs.
struct Found {
    std::size_t jobCount = 0;
    std::size_t ignoredCount = 0;
    std::size_t reachedCount = 0; ///< of the kind asked for already
};

class Report {
  public:
    Report(const ReportOptions& reportOptions, const Found& whatIsFound);

    void add(const Job& job, const Outcome& outcome);
    /// Redraws the progress, if it is shown.
    void tick();
    /// Takes the progress away and tells the sums.
    void end(bool isInterrupted);

    std::size_t count(JobStatus status) const { return counts[static_cast<std::size_t>(status)]; }

  private:
    std::size_t doneCount() const;
    double secondsSoFar() const;
    void clearProgress() const;

    ReportOptions options;
    Found found;
    std::array<std::size_t, 4> counts{};
    std::chrono::steady_clock::time_point start = std::chrono::steady_clock::now();
    bool isProgressShown = false;
};

} // namespace korlit::host
