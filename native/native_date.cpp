#include "native/native_date.h"

#include "native/native_state.h"
#include "platform/profile.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace korlit {

namespace {

constexpr const char* defaultPattern = "dd:mm:yy";

/// A text that is no number leaves the target as it was.
void readNumber(std::string_view text, std::uint16_t& target) {
    if (const auto number = readShort(text)) {
        target = static_cast<std::uint16_t>(*number);
    }
}

/// The three numbers of a date text, without their roles. Answers whether they are there.
bool readNumbers(std::string_view text, std::array<std::uint16_t, 3>& numbers) {
    const auto* digitsEnd = std::find_if_not(text.begin(), text.end(), isDigit);
    const auto digitCount = static_cast<std::size_t>(digitsEnd - text.begin());
    const std::string_view rest = text.substr(std::min(digitCount + 1, text.size()));
    const std::size_t dot = rest.find('.');
    if (dot == std::string_view::npos) {
        return false;
    }
    readNumber(text.substr(0, digitCount), numbers[0]);
    readNumber(rest.substr(0, dot), numbers[1]);
    readNumber(rest.substr(dot + 1), numbers[2]);
    return true;
}

/// Takes the pattern up to its next run of d, m or y, and that run; answers the letter, or 0 at the
/// end.
char takeLetter(std::string_view& pattern) {
    pattern.remove_prefix(std::min(pattern.find_first_of("dmy"), pattern.size()));
    if (pattern.empty()) {
        return '\0';
    }
    const char letter = pattern.front();
    pattern.remove_prefix(std::min(pattern.find_first_not_of(letter), pattern.size()));
    return letter;
}

/// The field that a letter of the pattern stands for, or that of the number's own place.
std::uint16_t& fieldOf(StampFields& fields, char letter, std::uint16_t StampFields::*ownPlace) {
    switch (letter) {
    case 'd':
        return fields.Day;
    case 'm':
        return fields.Month;
    case 'y':
        return fields.Year;
    default:
        return fields.*ownPlace;
    }
}

void assignRoles(StampFields& fields, const std::array<std::uint16_t, 3>& numbers) {
    std::array<char, 19> pattern{};
    GetProfileStringA("intl", "sShortDate", defaultPattern, pattern);
    _strlwr(pattern.data());
    std::string_view rest{pattern.data()};
    constexpr std::array<std::uint16_t StampFields::*, 3> ownPlaces{
        &StampFields::Day, &StampFields::Month, &StampFields::Year};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        fieldOf(fields, takeLetter(rest), ownPlaces[i]) = numbers[i];
    }
}

void exchangeMisplaced(StampFields& fields) {
    if (fields.Day > 31) {
        std::swap(fields.Day, fields.Year);
    }
    if (fields.Month > 12) {
        std::swap(fields.Month, fields.Day);
        if (fields.Day > 31) {
            std::swap(fields.Day, fields.Year);
        }
    }
}

} // namespace

void readDateTexts(StampFields& fields, std::string_view date, std::string_view time) {
    std::array<std::uint16_t, 3> numbers{};
    if (!readNumbers(date, numbers)) {
        return;
    }
    assignRoles(fields, numbers);
    exchangeMisplaced(fields);
    const std::size_t colon = time.find(':');
    if (colon != std::string_view::npos) {
        readNumber(time.substr(0, colon), fields.Hour);
        readNumber(time.substr(colon + 1), fields.Minute);
    }
}

void ParseNativeDate(StampFields* fields) {
    readDateTexts(*fields, textOf(TheSliHeader.DateText), textOf(TheSliHeader.TimeText));
}

} // namespace korlit
