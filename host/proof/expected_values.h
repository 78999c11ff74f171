// Gathers what a conversion makes of the values of its source.
#pragma once

#include "host/proof/expectation.h"

#include <cstddef>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace korlit::host {

/// A value in words, of a long text the start.
std::string wordsOf(const Value& value);

/// "peak_area of peak 2".
std::string nameOf(const ValueKey& key);

class ExpectedValues {
  public:
    /// Of a source with these values.
    ExpectedValues(std::span<const Entry> sourceValues, Wanted wantedValues);

    Expectations expected;

    /// A value of the source goes to one of the target. The rule is why the two differ; where they
    /// don't, there is none. Null is a value that the source lacks: its target is empty.
    void put(const Entry* source, ValueKey to, Value target, const ChangeRule& rule,
             std::string words = {});
    /// The same with a rule that says something of the value whether it differs or not.
    void note(const Entry* source, ValueKey to, Value target, const ChangeRule& rule,
              std::string words);
    /// The target has a value of its own.
    void set(ValueKey to, Value target, const ChangeRule& rule);
    /// What of a value goes nowhere, or all of it.
    void leave(const Entry& source, const ChangeRule& rule, std::string words);

    /// Whether a value went anywhere, or was left for a reason.
    bool isTaken(const Entry& source) const { return taken[indexOf(source)]; }

    /// Whether what has this rule, or none, comes into the list.
    bool isWanted(const ChangeRule* rule) const {
        return wanted == Wanted::All || (rule != nullptr && rule->isLoss);
    }

  private:
    void add(const Entry* source, std::optional<ValueKey> to, Value target, const ChangeRule* rule,
             std::string words);
    std::size_t indexOf(const Entry& source) const {
        return static_cast<std::size_t>(&source - entries.data());
    }

    std::span<const Entry> entries;
    Wanted wanted;
    std::vector<bool> taken; ///< by their index
};

} // namespace korlit::host
