// The injection time as it is written out for people, as in "12 Oct 2005  08:34 AM".
#pragma once

#include "datetime/stamp.h"

#include <array>

namespace korlit {

using InjectionTimeText = std::array<char, 64>;

/// Day, month name, year, hour on the twelve-hour dial, minute, AM or PM. A month that is none has
/// no name; the hours 0 and 12 are AM.
InjectionTimeText InjectionTime(const StampFields& fields);

} // namespace korlit
