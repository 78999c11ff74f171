#include "platform/ctime.h"

#include <array>

namespace korlit {

namespace {

bool isWithin(int number, int first, int last) {
    return number >= first && number <= last;
}

int monthLength(int year, int month) {
    constexpr std::array<int, 12> lengths{31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool isLeapYear = year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
    return month == 2 && isLeapYear ? 29 : lengths[static_cast<std::size_t>(month - 1)];
}

} // namespace

CTime::CTime(int year, int month, int day, int hour, int minute, int second, int daylightSaving) {
    if (!isWithin(year, 1900, 9999) || !isWithin(month, 1, 12) ||
        !isWithin(day, 1, monthLength(year, month)) || !isWithin(hour, 0, 23) ||
        !isWithin(minute, 0, 60) || !isWithin(second, 0, 60)) {
        return;
    }
    std::tm fields{};
    fields.tm_year = year - 1900;
    fields.tm_mon = month - 1;
    fields.tm_mday = day;
    fields.tm_hour = hour;
    fields.tm_min = minute;
    fields.tm_sec = second;
    fields.tm_isdst = daylightSaving;
    // -1 is an instant too; only the weekday tells whether mktime found one.
    fields.tm_wday = -1;
    const std::time_t found = std::mktime(&fields);
    if (fields.tm_wday >= 0) {
        instant = found;
    }
}

std::optional<std::tm> CTime::GetLocalTm() const {
    std::tm fields{};
    return instant && localtime_r(&*instant, &fields) != nullptr ? std::optional{fields}
                                                                 : std::nullopt;
}

std::optional<std::tm> CTime::GetGmtTm() const {
    std::tm fields{};
    return instant && gmtime_r(&*instant, &fields) != nullptr ? std::optional{fields}
                                                              : std::nullopt;
}

} // namespace korlit
