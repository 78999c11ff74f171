#include "host/plot/chart_text.h"

#include "host/text/text_output.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string_view>

namespace korlit::host {

namespace {

constexpr std::array<const char*, 12> monthNames{"January",   "February", "March",    "April",
                                                 "May",       "June",     "July",     "August",
                                                 "September", "October",  "November", "December"};

unsigned char byteOf(char character) {
    return static_cast<unsigned char>(character);
}

bool isContinuation(char character) {
    return (byteOf(character) & 0xC0U) == 0x80U;
}

/// The code of a whole character in UTF-8.
char32_t codeOf(std::string_view character) {
    const unsigned char first = byteOf(character.front());
    char32_t code = character.size() == 1 ? first : first & (0xFFU >> (character.size() + 1));
    for (const char next : character.substr(1)) {
        code = code << 6U | (byteOf(next) & 0x3FU);
    }
    return code;
}

/// False for controls, for what turns the direction of a text, and for the codes that are no
/// characters, which cairo refuses.
bool hasPicture(char32_t code) {
    const bool isControl = code < 0x20 || (code >= 0x7F && code < 0xA0);
    const bool isDirection =
        (code >= 0x2028 && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
    const bool isNoCharacter = (code >= 0xFDD0 && code <= 0xFDEF) || (code & 0xFFFEU) == 0xFFFEU;
    return !isControl && !isDirection && !isNoCharacter;
}

int numberAt(const std::string& text, std::size_t place) {
    return (text[place] - '0') * 10 + (text[place + 1] - '0');
}

bool isDigitAt(const std::string& text, std::size_t place) {
    return std::isdigit(byteOf(text[place])) != 0;
}

/// " (UTC+02:00)" for "+0200"; nothing for what is no offset.
std::string zoneText(const std::string& offset) {
    const bool isOffset = offset.size() == 5 && (offset[0] == '+' || offset[0] == '-') &&
                          std::all_of(offset.begin() + 1, offset.end(),
                                      [](char digit) { return std::isdigit(byteOf(digit)) != 0; });
    return isOffset ? " (UTC" + offset.substr(0, 3) + ":" + offset.substr(3) + ")" : "";
}

} // namespace

std::string drawableText(const std::string& bytes) {
    const std::string all = utf8Of(bytes);
    std::string text;
    for (std::string_view rest = all; !rest.empty();) {
        const auto* const next = std::find_if_not(rest.begin() + 1, rest.end(), isContinuation);
        const auto character = rest.substr(0, static_cast<std::size_t>(next - rest.begin()));
        text += hasPicture(codeOf(character)) ? character : " ";
        rest.remove_prefix(character.size());
    }
    text.erase(text.find_last_not_of(' ') + 1);
    text.erase(0, text.find_first_not_of(' '));
    return text;
}

std::string firstCharacters(const std::string& text, std::size_t count) {
    std::size_t end = 0;
    for (; end < text.size(); ++end) {
        if (!isContinuation(text[end]) && count-- == 0) {
            break;
        }
    }
    return text.substr(0, end);
}

std::string readableStamp(const std::string& stamp) {
    constexpr std::size_t digitCount = 14;
    if (stamp.size() < digitCount) {
        return stamp;
    }
    for (std::size_t place = 0; place < digitCount; ++place) {
        if (!isDigitAt(stamp, place)) {
            return stamp;
        }
    }
    const int month = numberAt(stamp, 4);
    const int day = numberAt(stamp, 6);
    if (month < 1 || month > 12 || day < 1 || day > 31) {
        return stamp;
    }
    return std::to_string(day) + " " + monthNames.at(static_cast<std::size_t>(month - 1)) + " " +
           stamp.substr(0, 4) + ", " + stamp.substr(8, 2) + ":" + stamp.substr(10, 2) + ":" +
           stamp.substr(12, 2) + zoneText(stamp.substr(digitCount));
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
