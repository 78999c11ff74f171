// The variables of an ANDI file whose elements a conversion takes for floats, whatever their type.
#pragma once

#include "host/files/andi_image.h"
#include "native/pair_rules.h"

#include <algorithm>
#include <string>
#include <string_view>

namespace korlit::host {

/// Whether a conversion copies the bytes of the variable of that name as floats.
constexpr bool isTakenAsFloats(std::string_view name) {
    return name == taken::ordinateValues ||
           std::ranges::any_of(peakSources,
                               [&](const PeakSource& source) { return name == source.name; });
}

/// "peak_area is short instead of float".
std::string wrongTypeWords(const char* name, AndiType type, AndiType expected);

/// Why the numbers that a conversion makes of a file would be others than the file's; the empty
/// text where all that it takes for floats are.
std::string floatProblem(const AndiImage& image);

} // namespace korlit::host
