// What a user is told of before a conversion, or with it.
#pragma once

#include "host/proof/prospect.h"

#include <string>
#include <vector>

namespace korlit::host {

struct Loss {
    std::string rule;  ///< its id
    std::string words; ///< one line

    bool operator==(const Loss&) const = default;
};

/// The losses among what is expected, in its order: one for all values of a column of peaks that go
/// the same way, and each only once.
std::vector<Loss> lossesOf(const Expectations& expected);

/// Those of all outputs of a source; of a run, with their channel unless all channels have them.
std::vector<Loss> lossesOf(const Prospect& prospect);

} // namespace korlit::host
