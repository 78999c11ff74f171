#include "datetime/serial_date.h"

#include <array>
#include <cstddef>

namespace korlit {

namespace {

/// Calendar dates are counted in 32 bits.
constexpr double serialLimit = 2147483648.0;

struct CalendarDate {
    std::int32_t year;
    std::int32_t month;
    std::int32_t day;
};

constexpr CalendarDate dayZero{.year = 1899, .month = 12, .day = 30};
constexpr CalendarDate dayOne{.year = 1899, .month = 12, .day = 31};

std::int32_t lengthOfYear(std::int32_t year) {
    return IsLeapYear(year) == 1 ? 366 : 365;
}

std::int32_t lengthOfMonth(std::int32_t year, std::int32_t month) {
    constexpr std::array<std::int32_t, 12> lengths{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    constexpr std::int32_t february = 2;
    const std::int32_t length = lengths[static_cast<std::size_t>(month - 1)];
    return month == february && IsLeapYear(year) == 1 ? length + 1 : length;
}

/// The date of a day from 1 January 1900, which is 1.
CalendarDate dateOfDay(std::int32_t day) {
    // The calendar comes back to where it was after so many years and days.
    constexpr std::int32_t cycleYears = 400;
    constexpr std::int32_t cycleDays = 146097;
    std::int32_t year = 1900 + (day - 1) / cycleDays * cycleYears;
    day = (day - 1) % cycleDays + 1;
    while (day > lengthOfYear(year)) {
        day -= lengthOfYear(year);
        ++year;
    }
    std::int32_t month = 1;
    while (day > lengthOfMonth(year, month)) {
        day -= lengthOfMonth(year, month);
        ++month;
    }
    return {.year = year, .month = month, .day = day};
}

CalendarDate dateOf(double serial) {
    if (serial == 0.0) {
        return dayZero;
    }
    const std::int32_t day = static_cast<std::int32_t>(serial) - 1;
    return day < 1 ? dayOne : dateOfDay(day);
}

void setDate(StampFields& fields, const CalendarDate& date) {
    fields.Year = static_cast<std::uint16_t>(date.year);
    fields.Month = static_cast<std::uint16_t>(date.month);
    fields.Day = static_cast<std::uint16_t>(date.day);
}

void setTime(StampFields& fields, double dayFraction) {
    fields.Hour = static_cast<std::uint16_t>(dayFraction * 24.0);
    fields.Minute = static_cast<std::uint16_t>((dayFraction * 24.0 - fields.Hour) * 60.0 + 0.01);
    // Slightly below 0 where the minute was rounded up.
    const double seconds =
        (dayFraction * 24.0 * 60.0 - fields.Hour * 60.0 - fields.Minute) * 60.0 + 0.5;
    fields.Second = static_cast<std::uint16_t>(static_cast<std::int32_t>(seconds));
}

} // namespace

void DecodeSerialDate(SerialStamp* stamp) {
    const bool isCountable = stamp->Serial >= 0.0 && stamp->Serial < serialLimit;
    const double serial = isCountable ? stamp->Serial : 0.0;
    setDate(stamp->Fields, dateOf(serial));
    setTime(stamp->Fields, serial - static_cast<std::int32_t>(serial));
}

std::int32_t IsLeapYear(std::int32_t year) {
    if (year % 400 == 0) {
        return 1;
    }
    return year % 4 == 0 && year % 100 != 0 ? 1 : 0;
}

} // namespace korlit
