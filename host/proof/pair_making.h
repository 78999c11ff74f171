// A pair in the making, as it is expected of an ANDI file.
#pragma once

#include "host/proof/andi_lookup.h"
#include "host/proof/change_rules.h"
#include "host/proof/expected_values.h"
#include "host/proof/pair_fields.h"

#include <cstddef>
#include <string>

namespace korlit::host {

/// The file, what is said of its values, and how conversions find them.
struct PairMaking {
    const Reading& andi;
    Wanted wanted;
    AndiLookup lookup{andi};
    ExpectedValues values{andi.entries, wanted};
};

/// What is kept of a text, with the rule and the words if that cuts it.
struct CutText {
    std::string text;
    const ChangeRule* rule;
    std::string words;
};
CutText cutTo(const std::string& kept, const std::string& text, const ValueKey& subject,
              const ChangeRule& rule);

/// Has said of the peak table, and of its counts, what becomes of them. `minutesPerUnit` turns the
/// file's times into minutes. Answers how many peaks the pair has.
std::int64_t expectPeaks(PairMaking& making, float minutesPerUnit);

} // namespace korlit::host
