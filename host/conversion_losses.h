// What a conversion of an ANDI file leaves out.
#pragma once

#include "host/findings.h"

namespace korlit::host {

/// What the file has and a Merivolta pair made of it has not.
Findings lossesInPair(const AndiImage& image);

} // namespace korlit::host
