// The zone in a stamp, which is that of the machine that converted.
#pragma once

#include "host/proof/expectation.h"

namespace korlit::host {

/// Has a stamp of the machine's zone expected with the zone that the output has, if all ahead of it
/// is the same and a zone can have it: for an output that may have been made elsewhere.
void takeZone(Expectations& expected, const Reading& output);

} // namespace korlit::host
