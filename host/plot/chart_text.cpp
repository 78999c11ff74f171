#include "host/plot/chart_text.h"

#include "host/text/stamps.h"
#include "host/text/utf8.h"

#include <algorithm>
#include <array>
#include <functional>

namespace korlit::host {

namespace {

constexpr std::array<const char*, 12> monthNames{"January",   "February", "March",    "April",
                                                 "May",       "June",     "July",     "August",
                                                 "September", "October",  "November", "December"};

/// False for controls, for what turns the direction of a text, and for the codes that are no
/// characters, which cairo refuses.
bool hasPicture(char32_t code) {
    const bool isNoCharacter = (code >= 0xFDD0 && code <= 0xFDEF) || (code & 0xFFFEU) == 0xFFFEU;
    return !isSteering(code) && !isNoCharacter;
}

} // namespace

std::string drawableText(const std::string& bytes) {
    std::u32string characters = charactersOf(bytes);
    std::ranges::replace_if(characters, std::not_fn(hasPicture), U' ');
    std::string text = encoded(characters);
    text.erase(text.find_last_not_of(' ') + 1);
    text.erase(0, text.find_first_not_of(' '));
    return text;
}

std::string firstCharacters(const std::string& text, std::size_t count) {
    return encoded(charactersOf(text).substr(0, count));
}

std::string readableStamp(const std::string& text) {
    const auto stamp = stampOrStartIn(text);
    if (!stamp) {
        return text;
    }
    const auto month = static_cast<std::size_t>(std::stoi(stamp->month));
    return std::to_string(std::stoi(stamp->day)) + ' ' + monthNames.at(month - 1) + ' ' +
           stamp->year + ", " + stamp->time +
           (stamp->offset.empty() ? "" : " (UTC" + stamp->offset + ')');
}

std::string raised(int number) {
    constexpr std::array<const char*, 10> digits{"⁰", "¹", "²", "³", "⁴", "⁵", "⁶", "⁷", "⁸", "⁹"};
    std::string text;
    for (const char character : std::to_string(number)) {
        text += character == '-' ? "⁻" : digits.at(static_cast<std::size_t>(character - '0'));
    }
    return text;
}

} // namespace korlit::host
