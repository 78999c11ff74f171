// Whether an output holds what its source's conversion must have made of it.
#pragma once

#include "host/proof/expectation.h"
#include "host/text/json.h"

#include <cstddef>
#include <string>
#include <vector>

namespace korlit::host {

/// Within which distance two numbers count as equal. By default none: one bit counts.
struct Tolerance {
    double relative = 0; ///< to the larger of the two
    double absolute = 0;
};

/// A value that isn't the same on both sides.
struct Change {
    std::string part;                 ///< "signal", "peaks" or "texts"
    const ChangeRule* rule = nullptr; ///< which explains it; none for what is unexpected
    std::string words;                ///< one line
    Json json;                        ///< an object, with the rule's id
};

struct Verdict {
    std::size_t points = 0; ///< that were compared
    std::size_t peaks = 0;
    std::vector<Change> changes;

    std::size_t unexpectedCount() const;
    bool isSame() const { return unexpectedCount() == 0; }
    /// "same data: 6,000 samples and 11 peaks; 25 differences, all expected of a pair".
    std::string words() const;

    FileKind kind = FileKind::Unknown; ///< of the output
};

/// Holds an output against what is expected of it. Every value of either side is looked at: one
/// that nobody expects is as unexpected as one that is missing.
Verdict verdictOf(const Expectations& expected, const Reading& output, const Tolerance& tolerance);

} // namespace korlit::host
