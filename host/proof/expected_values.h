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
    explicit ExpectedValues(std::span<const Entry> sourceValues);

    Expectations expected;

    /// A value of the source goes to one of the target. The rule is why the two differ; where they
    /// don't, there is none. Null is a value that the source lacks: its target is empty.
    void put(const Entry* source, ValueKey to, Value target, const ChangeRule& rule,
             std::string words = {});
    /// A remark on what was put last, whether that differs or not.
    void remark(const ChangeRule& rule, std::string words);
    /// The target has a value of its own.
    void set(ValueKey to, Value target, const ChangeRule& rule);
    /// What of a value goes nowhere, or all of it.
    void leave(const Entry& source, const ChangeRule& rule, std::string words);

    /// Whether a value went anywhere, or was left for a reason.
    bool isTaken(const Entry& source) const { return taken[indexOf(source)]; }

  private:
    Expectation& add(const Entry* source, const ChangeRule* rule, std::string words);
    std::size_t indexOf(const Entry& source) const {
        return static_cast<std::size_t>(&source - entries.data());
    }

    std::span<const Entry> entries;
    std::vector<bool> taken; ///< by their index
};

} // namespace korlit::host
