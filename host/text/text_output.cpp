#include "host/text/text_output.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <iostream>
#include <limits>
#include <optional>
#include <stdexcept>

namespace korlit::host {

namespace {

/// A row of UTF-8: the characters from `first` to `last` start with a byte of the bits `lead`,
/// behind which `followers` bytes carry six bits each.
struct Utf8Form {
    char32_t first;
    char32_t last;
    unsigned lead;
    unsigned leadMask;
    unsigned followers;
};
constexpr std::array<Utf8Form, 4> utf8Forms{{
    {.first = 0, .last = 0x7F, .lead = 0, .leadMask = 0x80, .followers = 0},
    {.first = 0x80, .last = 0x7FF, .lead = 0xC0, .leadMask = 0xE0, .followers = 1},
    {.first = 0x800, .last = 0xFFFF, .lead = 0xE0, .leadMask = 0xF0, .followers = 2},
    {.first = 0x10000, .last = 0x10FFFF, .lead = 0xF0, .leadMask = 0xF8, .followers = 3},
}};

struct CharacterRange {
    char32_t first;
    char32_t last;
};
constexpr CharacterRange surrogates{.first = 0xD800, .last = 0xDFFF};
constexpr std::array<CharacterRange, 4> steering{{
    {.first = 0, .last = 0x1F},
    {.first = 0x7F, .last = 0x9F},
    {.first = 0x2028, .last = 0x202E},
    {.first = 0x2066, .last = 0x2069},
}};
constexpr char32_t replacement = 0xFFFD;

constexpr unsigned followerBits = 6;
constexpr unsigned followerLead = 0x80;
constexpr unsigned followerLeadMask = 0xC0;

bool isIn(const CharacterRange& range, char32_t character) {
    return character >= range.first && character <= range.last;
}

/// Takes one character off the front of a text; nothing if the bytes there are none.
std::optional<char32_t> takeCharacter(std::string_view& text) {
    const unsigned lead = static_cast<unsigned char>(text.front());
    const auto isForm = [&](const Utf8Form& form) { return (lead & form.leadMask) == form.lead; };
    const auto* const form = std::ranges::find_if(utf8Forms, isForm);
    if (form == utf8Forms.end() || text.size() <= form->followers) {
        return std::nullopt;
    }
    char32_t character = lead & ~form->leadMask;
    for (const char each : text.substr(1, form->followers)) {
        const unsigned byte = static_cast<unsigned char>(each);
        if ((byte & followerLeadMask) != followerLead) {
            return std::nullopt;
        }
        character = (character << followerBits) | (byte & ~followerLeadMask);
    }
    text.remove_prefix(1 + form->followers);
    const bool isWhole = isIn({.first = form->first, .last = form->last}, character);
    return isWhole && !isIn(surrogates, character) ? std::optional{character} : std::nullopt;
}

std::u32string charactersOf(std::string_view text) {
    std::u32string characters;
    for (std::string_view rest = text; !rest.empty();) {
        const auto character = takeCharacter(rest);
        if (!character) {
            const auto latin1 = [](char byte) { return static_cast<unsigned char>(byte); };
            characters.resize(text.size());
            std::ranges::transform(text, characters.begin(), latin1);
            break;
        }
        characters += *character;
    }
    return characters;
}

std::string encoded(const std::u32string& characters) {
    std::string text;
    for (const char32_t character : characters) {
        const auto* const form = std::ranges::find_if(
            utf8Forms, [&](const auto& each) { return character <= each.last; });
        unsigned shift = form->followers * followerBits;
        text += static_cast<char>(form->lead | (character >> shift));
        while (shift > 0) {
            shift -= followerBits;
            text += static_cast<char>(followerLead | ((character >> shift) & ~followerLeadMask));
        }
    }
    return text;
}

bool isSteering(char32_t character) {
    return std::ranges::any_of(steering, [&](const auto& range) { return isIn(range, character); });
}

/// Room for any number: 17 digits and zeros ahead of the point or behind it.
using NumberBuffer = std::array<char, 64>;

template <typename... Format>
void append(std::string& line, Format... format) {
    NumberBuffer buffer{};
    line.append(buffer.data(),
                std::to_chars(buffer.data(), buffer.data() + buffer.size(), format...).ptr);
}

bool isInFloatRange(double number) {
    return std::abs(number) <= double{std::numeric_limits<float>::max()};
}

bool isFloat(double number) {
    return isInFloatRange(number) && double{static_cast<float>(number)} == number;
}

/// False for what is no number, which is appended as such.
bool isToBeFormatted(std::string& line, double number) {
    if (!std::isfinite(number)) {
        line += std::isnan(number) ? "nan" : number < 0 ? "-inf" : "inf";
    }
    return std::isfinite(number);
}

Json parsed(const std::string& text, double number) {
    if (!std::isfinite(number)) {
        return nullptr;
    }
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

} // namespace

std::string utf8Of(std::string_view text) {
    return encoded(charactersOf(text));
}

std::string printable(std::string_view text) {
    std::u32string characters = charactersOf(text);
    std::ranges::replace_if(characters, isSteering, replacement);
    return encoded(characters);
}

std::size_t widthOf(std::string_view text) {
    return charactersOf(text).size();
}

void appendNumber(std::string& line, double number) {
    constexpr double smallestPlain = 1e-5;
    constexpr double largestPlain = 1e15;
    if (!isToBeFormatted(line, number)) {
        return;
    }
    const double size = std::abs(number);
    const bool isPlain = size == 0 || (size >= smallestPlain && size < largestPlain);
    const auto format = isPlain ? std::chars_format::fixed : std::chars_format::scientific;
    if (isFloat(number)) {
        append(line, static_cast<float>(number), format);
    } else {
        append(line, number, format);
    }
}

void appendSampleTime(std::string& line, double minutes) {
    constexpr int digits = 10;
    if (isToBeFormatted(line, minutes)) {
        append(line, minutes, std::chars_format::general, digits);
    }
}

std::string numberText(double number) {
    std::string text;
    appendNumber(text, number);
    return text;
}

std::string timeText(double time) {
    return numberText(isInFloatRange(time) ? static_cast<float>(time) : time);
}

std::string roundedText(double number) {
    constexpr int digits = 6;
    constexpr double firstWithoutFraction = 1e5;
    constexpr double firstTooLong = 1e15;
    std::string text;
    if (!isToBeFormatted(text, number)) {
        return text;
    }
    if (std::abs(number) >= firstWithoutFraction && std::abs(number) < firstTooLong) {
        append(text, number, std::chars_format::fixed, 0);
    } else {
        append(text, number, std::chars_format::general, digits);
    }
    return text;
}

std::string threeDecimals(double number) {
    constexpr double firstTooLong = 1e9;
    if (!(std::abs(number) < firstTooLong)) {
        return roundedText(number);
    }
    std::string text;
    append(text, number, std::chars_format::fixed, 3);
    return text;
}

Json numberJson(double number) {
    return parsed(numberText(number), number);
}

Json timeJson(double time) {
    return parsed(timeText(time), time);
}

Json roundedJson(double number) {
    return parsed(roundedText(number), number);
}

std::string lineOf(const Json& value) {
    constexpr int onOneLine = -1;
    constexpr bool isAscii = true;
    return value.dump(onOneLine, ' ', isAscii) + '\n';
}

void printFailure(const std::string& file, const std::string& words) {
    std::cerr << "korlit: " << printable(file) << ": " << printable(words) << '\n';
}

void finishOutput() {
    if (!std::cout.flush()) {
        throw std::runtime_error{"standard output could not be written"};
    }
}

} // namespace korlit::host
