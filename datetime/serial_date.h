// Serial dates: a count of days with the time of day as its fraction. Day 2 is 1 January 1900, and
// every day from there on counts one on the Gregorian calendar.
#pragma once

#include "datetime/stamp.h"

#include <cstdint>

namespace korlit {

struct SerialStamp {
    double Serial;
    StampFields Fields;
};

/// Fills year, month, day, hour, minute and second of `stamp` from its serial date.
///
/// Days 0 and 1 are 30 and 31 December 1899. A time within 0.6 seconds of the next minute is that
/// minute; nothing is carried into the hours, so the minute may be 60. Of a year
/// beyond 65535 its low 16 bits are given. A serial date that is negative, no number or beyond 32
/// bits gives 30 December 1899, 00:00:00.
void DecodeSerialDate(SerialStamp* stamp);

/// 1 for a leap year of the Gregorian calendar, else 0.
std::int32_t IsLeapYear(std::int32_t year);

} // namespace korlit
