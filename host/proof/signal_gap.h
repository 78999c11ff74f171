// In which samples an output departs from what is expected of it.
#pragma once

#include "host/proof/expectation.h"

#include <cstddef>

namespace korlit::host {

/// Within which distance two numbers count as equal. By default none: one bit counts.
struct Tolerance {
    double relative = 0; ///< to the larger of the two
    double absolute = 0; ///< for what is near zero; the wider of both counts

    bool isNone() const { return relative == 0 && absolute == 0; }
};

/// Whether two numbers are no further apart than that; not a number is at not a number.
bool areClose(double a, double b, const Tolerance& tolerance);
/// The same for any two values. Without a tolerance a bit makes the difference.
bool areClose(const Value& a, const Value& b, const Tolerance& tolerance);

struct SignalGap {
    std::size_t count = 0;    ///< of samples that differ
    std::size_t furthest = 0; ///< index of those furthest apart
    double distance = -1;     ///< between them; infinite if only one of them is a number
    double expected = 0;      ///< the sample there
    double found = 0;
};

/// Looks at as many samples as both have.
SignalGap gapOf(const Expectations& expectations, const NumberView& output,
                const Tolerance& tolerance);

} // namespace korlit::host
