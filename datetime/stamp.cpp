#include "datetime/stamp.h"

#include "platform/ctime.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <compare>
#include <cstddef>
#include <cstdlib>
#include <span>
#include <string_view>
#include <tuple>

namespace korlit {

namespace {

struct StampField {
    std::uint16_t StampFields::*field;
    std::size_t width;
};

constexpr std::array<StampField, 6> stampFields{{
    {.field = &StampFields::Year, .width = 4},
    {.field = &StampFields::Month, .width = 2},
    {.field = &StampFields::Day, .width = 2},
    {.field = &StampFields::Hour, .width = 2},
    {.field = &StampFields::Minute, .width = 2},
    {.field = &StampFields::Second, .width = 2},
}};

/// How far local time is from GMT.
struct ZoneOffset {
    char sign;
    int hours;
    int minutes;
};

/// The offset from the two clocks, on the same day or with local time on the later day of one year.
/// Clocks on one day less than an hour apart don't tell which is behind, and count as local time
/// ahead.
ZoneOffset offsetOfClocks(const std::tm& local, const std::tm& gmt) {
    int hours = local.tm_hour - gmt.tm_hour;
    int minutes = local.tm_min - gmt.tm_min;
    const bool isLaterDay =
        local.tm_mon == gmt.tm_mon ? local.tm_mday > gmt.tm_mday : local.tm_mon > gmt.tm_mon;
    if (hours < 0 && isLaterDay) {
        hours += 24;
    }
    if (minutes < 0) {
        hours -= hours > 0 ? 1 : 0;
        minutes += 60;
    } else if (minutes > 0 && hours < 0) {
        ++hours;
        minutes = 60 - minutes;
    }
    return {.sign = hours < 0 ? '-' : '+', .hours = std::abs(hours), .minutes = minutes};
}

/// The offset from the two clocks and their days, one apart at the most.
ZoneOffset offsetOfDays(const std::tm& local, const std::tm& gmt) {
    constexpr int minutesPerDay = 24 * 60;
    const auto dayOf = [](const std::tm& time) { return std::tuple{time.tm_year, time.tm_yday}; };
    const int days = dayOf(local) < dayOf(gmt) ? -1 : 1;
    const int offset =
        days * minutesPerDay + (local.tm_hour - gmt.tm_hour) * 60 + (local.tm_min - gmt.tm_min);
    return {.sign = offset < 0 ? '-' : '+',
            .hours = std::abs(offset) / 60,
            .minutes = std::abs(offset) % 60};
}

ZoneOffset zoneOffset(const std::tm& local, const std::tm& gmt) {
    const bool isOtherYear = local.tm_year != gmt.tm_year;
    return isOtherYear || local.tm_yday < gmt.tm_yday ? offsetOfDays(local, gmt)
                                                      : offsetOfClocks(local, gmt);
}

} // namespace

int ParseAndiStamp(StampFields* fields, const char* text) {
    std::string_view rest{text};
    for (const auto& [field, width] : stampFields) {
        if (const auto number = readShort(rest.substr(0, width))) {
            fields->*field = static_cast<std::uint16_t>(*number);
        }
        rest.remove_prefix(std::min(width, rest.size()));
        if (!rest.empty() && !isDigit(rest.front())) {
            rest.remove_prefix(1);
        }
    }
    return 1;
}

int FormatAndiStamp(const StampFields* fields, char* text) {
    const CTime instant{fields->Year,   fields->Month,  fields->Day, fields->Hour,
                        fields->Minute, fields->Second, -1};
    const auto local = instant.GetLocalTm();
    const auto gmt = instant.GetGmtTm();
    if (!local || !gmt) {
        return 0;
    }
    const auto [sign, hours, minutes] = zoneOffset(*local, *gmt);
    const auto field = [](std::uint16_t value) { return static_cast<short>(value); };
    formatText({text, stampTextSize}, "%04hd%02hd%02hd%02hd%02hd%02hd%c%02d%02d",
               field(fields->Year), field(fields->Month), field(fields->Day), field(fields->Hour),
               field(fields->Minute), field(fields->Second), sign, hours, minutes);
    return 1;
}

} // namespace korlit
