// A signal as a small picture shows it.
#pragma once

#include "host/files/number_view.h"

#include <cstdint>
#include <vector>

namespace korlit::host {

/// The least and the greatest sample of each stretch of a signal, one stretch after the other, on a
/// scale from 0 for the least of all to `outlineTop` for the greatest. A stretch without a number
/// has outlineGap twice.
using Outline = std::vector<std::int16_t>;

constexpr std::int16_t outlineTop = 250;
constexpr std::int16_t outlineGap = -1;

/// In at most 150 stretches.
Outline outlineOf(const NumberView& signal);

/// The same in at most so many stretches.
Outline thinned(const Outline& outline, std::size_t stretches);

} // namespace korlit::host
