// In what two data sets differ.
#pragma once

#include "host/compare/comparison.h"
#include "host/data/data_set.h"
#include "host/text/json.h"

#include <string>
#include <vector>

namespace korlit::host {

struct Difference {
    std::string words; ///< one line
    Json json;         ///< an object
};

/// The differences between two signals, their peaks and texts. Times count as equal within one
/// part in a million: a file in seconds and one in minutes can't both have them to the bit.
std::vector<Difference> differencesOf(const DataSet& a, const DataSet& b,
                                      const Comparison& comparison);

/// Where one file has more channels than the other.
Difference channelDifference(std::size_t countInA, std::size_t countInB);

} // namespace korlit::host
