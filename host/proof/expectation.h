// What a conversion makes of each value: as it is, changed by a rule, or left out. What the rules
// change or leave out are the losses that a user is told of before a conversion and the expected
// changes that a comparison finds behind it: both come from here.
#pragma once

#include "host/proof/reading.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace korlit::host {

/// Why a conversion changes a value. All of them stand in one table.
struct ChangeRule {
    const char* id;    ///< stable: "area-by-sixty"
    const char* words; ///< one line: "areas are divided by 60 on the way to ANDI"
    bool isLoss;       ///< something is gone; else it is only written in another way
};

/// One value of a source and what becomes of it. Without a source the target gets a value of its
/// own (a version of the template), without a target the value, or what its words name of it, has
/// no place there. One source may go to several targets. A rule with a target that is the same as
/// its source is a note on a value that is kept: it is no difference.
struct Expectation {
    std::optional<ValueKey> from{};
    Value source{};
    std::optional<ValueKey> to{};
    Value target{};                   ///< to the last bit
    const ChangeRule* rule = nullptr; ///< none where the value is kept as it is
    /// What happens to this one, where changeWords can't tell it from the rest.
    std::string words{};
};

/// Whether a value is kept, so that its rule is no more than a note.
inline bool isNote(const Expectation& expectation) {
    return expectation.from && expectation.to && areSame(expectation.source, expectation.target);
}

/// What happens to a value, on one line; empty without a rule. Few of these lines are ever read:
/// they are put together when somebody asks.
std::string changeWords(const Expectation& expectation);

/// What one output must hold.
struct Expectations {
    FileKind kind = FileKind::Unknown; ///< of the output
    std::vector<Expectation> values;
    NumberView signal;          ///< the source's samples that are kept
    Memory memory;              ///< what they and names lie in
    double signalFactor = 1;    ///< by which each is multiplied, in double precision, rounded once
    Expectation signalChange{}; ///< what happens to all samples: the rule, if any, and the words
};

/// Whether all values are asked for or, in a tenth of the time, those alone of which something is
/// lost: the rest is left out of the list then.
enum class Wanted : std::uint8_t { All, Losses };

/// What becomes of an ANDI file in a pair.
Expectations expectedOfPair(const Reading& andi, Wanted wanted = Wanted::All);
/// What becomes of a pair in an ANDI file. `sliceFile` is its path as the conversion was given it.
Expectations expectedOfAndi(const Reading& pair, const std::string& sliceFile,
                            Wanted wanted = Wanted::All);
/// What becomes of a channel of a run in its ANDI file.
Expectations expectedOfChannel(const Reading& channel, const std::string& runFile,
                               Wanted wanted = Wanted::All);

} // namespace korlit::host
