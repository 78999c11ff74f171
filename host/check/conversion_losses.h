// What a conversion of an ANDI file leaves out.
#pragma once

#include "host/check/findings.h"
#include "host/check/subject.h"

namespace korlit::host {

/// What the file has and a Merivolta pair made of it has not.
Findings lossesInPair(const Subject& subject);

/// The words for those of them that a user would miss: texts and peak names that are cut, and a
/// peak table that is left out. The signal needn't be loaded.
std::vector<std::string> cutsInPair(const AndiImage& image);

} // namespace korlit::host
