// What the commands work out of a data set.
#pragma once

#include "host/data/data_set.h"

#include <cstddef>
#include <optional>

namespace korlit::host {

struct Extremes {
    std::size_t minimum; ///< index of the sample
    std::size_t maximum;

    bool operator==(const Extremes&) const = default;
};

/// Whether a sample is one, which an infinite one is.
bool isNumber(double sample);
bool isFinite(double sample);

/// The first of the lowest and of the highest samples among those that count; nothing if none does.
std::optional<Extremes> extremesOf(const NumberView& signal,
                                   bool (*counts)(double sample) = isNumber);

/// What a limit that a file gives for its signal and the signal's extreme may differ by, being
/// floats on their way through some calculation.
double limitRounding(double smallest, double largest, double extreme);

/// A share of the way from one sample to the next. One that is no number makes none, for which
/// std::lerp may answer the other.
constexpr double between(double left, double right, double share) {
    return left * (1 - share) + right * share;
}

/// Whether a file says at which times its samples lie.
bool hasTimes(const DataSet& set);

/// Minutes from one sample to the next, as many being longer as shorter, where each has its own
/// time; 0 where they have none.
double medianInterval(const DataSet& set);

} // namespace korlit::host
