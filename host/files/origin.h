// What files tell of how they came about: an original is never given up for a copy of it.
//
// An ANDI file names what it was made of. A pair has no room for that, but whatever an instrument
// or its software leaves in one, a conversion leaves out.
#pragma once

#include "host/files/plan.h"

#include <filesystem>

namespace korlit::host {

/// Whether what stands at a target's place can have come from an earlier conversion of the plan's
/// source: an ANDI file that names it, or a file of a pair as conversions write them. Anything else
/// is somebody's.
bool canBeMadeFrom(const Plan& plan, const std::filesystem::path& target);

/// Whether what stands at a target's place belongs to a pair that no conversion can have written:
/// its slice has more in it than conversions leave.
bool isOfInstrument(const Plan& plan, const std::filesystem::path& target);

/// Whether the plan's source was made from what stands at a target's place: an ANDI file names it,
/// or a pair as conversions write them stands beside an ANDI file that wasn't made from the pair.
bool isOrigin(const Plan& plan, const std::filesystem::path& target);

} // namespace korlit::host
