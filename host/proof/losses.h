// What a user is told of before a conversion, or with it.
#pragma once

#include "host/proof/prospect.h"

#include <cstdint>
#include <string>
#include <vector>

namespace korlit::host {

struct Loss {
    std::string rule;  ///< its id
    std::string words; ///< one line

    bool operator==(const Loss&) const = default;
};

/// How losses are told: with their words, or by their rules alone, as a summary wants them.
enum class LossText : std::uint8_t { Words, RulesOnly };

/// The losses among what is expected, in its order: one for all values of a column of peaks that go
/// the same way, and each only once.
std::vector<Loss> lossesOf(const Expectations& expected, LossText text = LossText::Words);

/// Those of all outputs of a source; of a run, with their channel unless all channels have them.
std::vector<Loss> lossesOf(const Prospect& prospect, LossText text = LossText::Words);

} // namespace korlit::host
