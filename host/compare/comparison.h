// What a comparison looks at.
#pragma once

#include <string>
#include <vector>

namespace korlit::host {

/// Which parts are looked at, and which numbers count as equal.
struct Comparison {
    std::vector<std::string> parts{"signal", "peaks", "texts"};
    double tolerance = 0; ///< relative to the larger of two numbers
};

} // namespace korlit::host
