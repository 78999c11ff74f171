#include "host/text/stamps.h"

#include "platform/text.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdint>
#include <span>

namespace korlit::host {

namespace {

/// A field of digits, with the greatest number that it may hold.
struct Field {
    std::size_t place;
    std::size_t width;
    int greatest;
};

constexpr Field year{.place = 0, .width = 4, .greatest = 9999};
constexpr Field month{.place = 4, .width = 2, .greatest = 12};
constexpr Field day{.place = 6, .width = 2, .greatest = 31};
constexpr std::size_t signPlace = 14;
constexpr std::size_t stampLength = 19;
constexpr std::array<Field, 6> dateAndTime{{
    year,
    month,
    day,
    {.place = 8, .width = 2, .greatest = 23},
    {.place = 10, .width = 2, .greatest = 59},
    {.place = 12, .width = 2, .greatest = 60},
}};
constexpr std::array<Field, 2> offset{{
    {.place = 15, .width = 4, .greatest = 1400}, // hours with their minutes
    {.place = 17, .width = 2, .greatest = 59},
}};

int numberIn(std::string_view text, const Field& field) {
    return readLong(text.substr(field.place, field.width)).value_or(-1);
}

bool areFields(std::string_view text, std::span<const Field> fields) {
    return std::ranges::all_of(fields, [&](const Field& field) {
        return std::ranges::all_of(text.substr(field.place, field.width), isDigit) &&
               numberIn(text, field) <= field.greatest;
    });
}

bool isCalendarDate(std::string_view text) {
    const std::chrono::year_month_day date{
        std::chrono::year{numberIn(text, year)},
        std::chrono::month{static_cast<unsigned>(numberIn(text, month))},
        std::chrono::day{static_cast<unsigned>(numberIn(text, day))}};
    return date.ok() && numberIn(text, year) > 0;
}

bool hasDateAndTime(std::string_view text) {
    return text.size() >= signPlace && areFields(text, dateAndTime) && isCalendarDate(text);
}

bool hasOffset(std::string_view text) {
    return text.size() == stampLength && (text[signPlace] == '+' || text[signPlace] == '-') &&
           areFields(text, offset);
}

Stamp partsOf(std::string_view text) {
    const auto part = [&](std::size_t place, std::size_t length = 2) {
        return std::string{text.substr(place, length)};
    };
    return {.year = part(0, 4),
            .month = part(4),
            .day = part(6),
            .time = part(8) + ':' + part(10) + ':' + part(12),
            .offset = text.size() == stampLength ? part(signPlace, 3) + ':' + part(17) : ""};
}

} // namespace

std::optional<Stamp> stampIn(std::string_view text) {
    return hasDateAndTime(text) && hasOffset(text) ? std::optional{partsOf(text)} : std::nullopt;
}

std::optional<Stamp> stampOrStartIn(std::string_view text) {
    return hasDateAndTime(text) && (text.size() == signPlace || hasOffset(text))
               ? std::optional{partsOf(text)}
               : std::nullopt;
}

std::string isoText(std::time_t time) {
    std::tm parts{};
    localtime_r(&time, &parts);
    std::array<char, 64> buffer{};
    std::string text{buffer.data(), std::strftime(buffer.data(), buffer.size(), "%FT%T%z", &parts)};
    constexpr std::size_t minuteDigits = 2;
    return text.insert(text.size() - minuteDigits, 1, ':');
}

std::optional<std::time_t> timeIn(const std::string& isoText) {
    std::tm parts{};
    const char* end = strptime(isoText.c_str(), "%Y-%m-%dT%H:%M:%S%z", &parts);
    if (end == nullptr || *end != '\0') {
        return std::nullopt;
    }
    const std::int64_t eastward = parts.tm_gmtoff; // which timegm() sets anew
    return timegm(&parts) - eastward;
}

} // namespace korlit::host
