// What a user is told of before a conversion, or with it.
#pragma once

#include "host/proof/expectation.h"

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

/// Those of a conversion of a source; of a run, with their channel unless all channels have them.
/// Throws a runtime_error where the source can't be read.
std::vector<Loss> lossesOf(const std::string& source, FileKind kind);

} // namespace korlit::host
