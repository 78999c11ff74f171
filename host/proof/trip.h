// What a data set becomes on a way there and back.
#pragma once

#include "host/proof/expectation.h"

#include <string>

namespace korlit::host {

/// What an output holds that is as expected.
Reading readingOf(const Expectations& expectations);

/// What two conversions make of a value together, of which the second takes what is expected of the
/// first.
Expectations composed(const Expectations& first, const Expectations& second);

/// What becomes of an ANDI file in that which comes back from a pair, or of a pair in that which
/// comes back from an ANDI file, after so many trips, 1 at least. `sliceFile` is the slice file
/// that the ANDI file was made of last.
Expectations expectedBehindTrips(const Reading& source, const std::string& sliceFile, int count);

} // namespace korlit::host
