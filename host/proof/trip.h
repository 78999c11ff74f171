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

/// What becomes of an ANDI file in the ANDI file made of its pair, which names `sliceFile` as its
/// source.
Expectations expectedBehindPair(const Reading& andi, const std::string& sliceFile);
/// What becomes of a pair in the pair made of its ANDI file.
Expectations expectedBehindAndi(const Reading& pair, const std::string& sliceFile);

} // namespace korlit::host
