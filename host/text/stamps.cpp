#include "host/text/stamps.h"

#include "platform/text.h"

#include <algorithm>
#include <array>
#include <chrono>

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
constexpr std::array<Field, 8> fields{{
    year,
    month,
    day,
    {.place = 8, .width = 2, .greatest = 23},
    {.place = 10, .width = 2, .greatest = 59},
    {.place = 12, .width = 2, .greatest = 60},
    {.place = 15, .width = 2, .greatest = 14},
    {.place = 17, .width = 2, .greatest = 59},
}};

int numberIn(std::string_view text, const Field& field) {
    return readLong(text.substr(field.place, field.width)).value_or(-1);
}

bool isField(std::string_view text, const Field& field) {
    return std::ranges::all_of(text.substr(field.place, field.width), isDigit) &&
           numberIn(text, field) <= field.greatest;
}

bool isCalendarDate(std::string_view text) {
    const std::chrono::year_month_day date{
        std::chrono::year{numberIn(text, year)},
        std::chrono::month{static_cast<unsigned>(numberIn(text, month))},
        std::chrono::day{static_cast<unsigned>(numberIn(text, day))}};
    return date.ok() && numberIn(text, year) > 0;
}

} // namespace

std::optional<Stamp> stampIn(std::string_view text) {
    const auto isGood = [&](const Field& field) { return isField(text, field); };
    if (text.size() != stampLength || (text[signPlace] != '+' && text[signPlace] != '-') ||
        !std::ranges::all_of(fields, isGood) || !isCalendarDate(text)) {
        return std::nullopt;
    }
    const auto part = [&](std::size_t place, std::size_t length = 2) {
        return std::string{text.substr(place, length)};
    };
    return Stamp{.date = part(0, 4) + '-' + part(4) + '-' + part(6),
                 .time = part(8) + ':' + part(10) + ':' + part(12),
                 .offset = part(signPlace, 3) + ':' + part(17)};
}

} // namespace korlit::host
