// What the commands work out of a data set.
#pragma once

#include "host/data_set.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace korlit::host {

/// The parts of an injection stamp such as 20051012083437+0200.
struct Stamp {
    std::string date;   ///< 2005-10-12
    std::string time;   ///< 08:34:37
    std::string offset; ///< +02:00
};
/// Nothing for a text that is no stamp.
std::optional<Stamp> stampIn(const std::string& text);

struct Extremes {
    std::size_t minimum; ///< index of the sample
    std::size_t maximum;
};
/// Nothing for a signal that has no number.
std::optional<Extremes> extremesOf(const std::vector<double>& signal);

/// Whether a file says at which times its samples lie.
bool hasTimes(const DataSet& set);

} // namespace korlit::host
