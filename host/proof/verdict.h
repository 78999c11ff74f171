// Whether an output holds what its source's conversion must have made of it.
#pragma once

#include "host/proof/expectation.h"
#include "host/proof/signal_gap.h"
#include "host/text/json.h"

#include <cstddef>
#include <string>
#include <vector>

namespace korlit::host {

/// A value that isn't the same on both sides.
struct Change {
    std::string part;                 ///< "signal", "peaks" or "texts", or of an ANDI file another
    const ChangeRule* rule = nullptr; ///< which explains it; none for what is unexpected
    std::string words{};              ///< one line; empty for what the expectation tells
    Json details{};                   ///< of what no expectation is about
    /// What an expected change is about, where it stands in the expectations: they must be there
    /// for as long as its text or its JSON is asked for.
    const Expectation* expectation = nullptr;

    /// What it is, on one line.
    std::string text() const;
    /// An object, with the rule's id or null.
    Json json() const;
};

/// How many changes a rule explains.
struct RuleCount {
    const ChangeRule* rule;
    std::size_t count;
};

struct Verdict {
    std::size_t points = 0; ///< that were compared
    std::size_t peaks = 0;
    std::vector<Change> changes;
    std::string
        conversion; ///< what the rules are of: "a pair", "an ANDI file"; empty without rules

    std::vector<std::string> lookedAt{parts::signal, parts::peaks, parts::texts};

    /// Adds what nobody expects, of the part that `details` name.
    void addUnexpected(std::string words, Json details);
    /// Drops the changes of other parts.
    void keepOnly(const std::vector<std::string>& parts);
    std::size_t unexpectedCount() const;
    bool isSame() const { return unexpectedCount() == 0; }
    /// "same data: 6,000 samples and 11 peaks; 25 differences, all expected of a pair".
    std::string words() const;
    /// The expected changes by their rules, in the order of the first of each.
    std::vector<RuleCount> countsByRule() const;

  private:
    std::string comparedWords() const;
};

/// Adds what is wrong with the layout of an output, if anything is.
void addLayoutProblem(Verdict& verdict, const Reading& output);

/// Holds an output against what is expected of it. Every value of either side is looked at: one
/// that nobody expects is as unexpected as one that is missing, and so is what is wrong with the
/// layout of the output.
Verdict verdictOf(const Expectations& expected, const Reading& output, const Tolerance& tolerance);

} // namespace korlit::host
