// The date texts of a native header.
#pragma once

#include "datetime/stamp.h"

#include <string_view>

namespace korlit {

/// Reads the date and the time of a header into the fields: year, month, day, hour, minute.
///
/// The date is three numbers, the last two parted by a dot. Their order is that of the system's
/// short-date pattern (profile section "intl", key "sShortDate"); numbers that can't be a day or a
/// month in their place change places. A date without that dot sets nothing, the time included; a
/// time without a colon leaves the time, and so does an hour or minute that is no number. No
/// century is added to a year of two digits.
void readDateTexts(StampFields& fields, std::string_view date, std::string_view time);

/// The same from DateText and TimeText of TheSliHeader.
void ParseNativeDate(StampFields* fields);

} // namespace korlit
