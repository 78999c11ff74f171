// What a comparison looks at.
#pragma once

#include "host/proof/signal_gap.h"

#include <string>
#include <vector>

namespace korlit::host {

/// Which parts are looked at, and which numbers count as equal.
struct Comparison {
    std::vector<std::string> parts{parts::signal, parts::peaks, parts::texts};
    Tolerance tolerance;
};

} // namespace korlit::host
