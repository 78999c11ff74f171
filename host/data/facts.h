// What the commands work out of a data set.
#pragma once

#include "host/data/data_set.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace korlit::host {

struct Extremes {
    std::size_t minimum; ///< index of the sample
    std::size_t maximum;
};
/// Nothing for a signal that has no number.
std::optional<Extremes> extremesOf(const std::vector<double>& signal);

/// Whether a file says at which times its samples lie.
bool hasTimes(const DataSet& set);

} // namespace korlit::host
