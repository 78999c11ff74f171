// The smallest and the largest of a signal's samples.
#pragma once

#include <span>

namespace korlit {

struct Extremes {
    float smallest;
    float largest;
};

/// Zeros for no samples. Of samples that are equal the first counts, which tells zeros of both
/// signs apart; a sample that is no number counts only if it comes first, and then it is both.
Extremes extremesOf(std::span<const float> samples);

} // namespace korlit
