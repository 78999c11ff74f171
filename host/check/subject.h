// An ANDI file that is looked into, with what more than one rule needs of it.
#pragma once

#include "host/files/andi_image.h"

#include <limits>
#include <optional>
#include <vector>

namespace korlit::host {

struct SampleRange {
    double smallest;
    double largest;
};

/// A loaded file with what is worked out from it.
struct Subject {
    const AndiImage& image;
    NumberView samples{};
    std::optional<SampleRange> extremes{}; ///< of the finite samples, if there are any
    double interval = std::numeric_limits<double>::quiet_NaN(); ///< in the file's unit
    bool isUniform = true;
};

Subject subjectOf(const AndiImage& image);

/// A limit that the file gives for its signal, and how far the signal goes beyond it: below zero
/// where it keeps away from it, 0 where the two agree within their rounding.
struct DetectorLimit {
    const char* name;
    double limit;
    double extreme;
    double excess;
};

/// The limits that the file gives; none of a file without samples.
std::vector<DetectorLimit> detectorLimits(const Subject& subject);

/// Elements that the dimensions of a variable make, as a number that can't overflow.
double declaredElements(const AndiImage& image, const AndiVariable& variable);

} // namespace korlit::host
