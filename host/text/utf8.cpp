#include "host/text/utf8.h"

#include <algorithm>
#include <array>
#include <optional>

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
constexpr std::array<CharacterRange, 6> steering{{
    {.first = 0x61C, .last = 0x61C},
    {.first = 0x200E, .last = 0x200F},
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

} // namespace

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

std::string utf8Of(std::string_view text) {
    return encoded(charactersOf(text));
}

std::string printable(std::string_view text) {
    // Nearly all of what is printed.
    if (std::ranges::all_of(text, [](char each) { return each >= ' ' && each <= '~'; })) {
        return std::string{text};
    }
    std::u32string characters = charactersOf(text);
    std::ranges::replace_if(characters, isSteering, replacement);
    return encoded(characters);
}

std::string_view startOfText(std::string_view text, std::size_t size) {
    std::size_t end = 0;
    for (std::string_view rest = text; !rest.empty();) {
        if (!takeCharacter(rest)) {
            return text.substr(0, size);
        }
        const std::size_t place = text.size() - rest.size();
        end = place <= size ? place : end;
    }
    return text.substr(0, end);
}

std::size_t characterCount(std::string_view text) {
    return charactersOf(text).size();
}

} // namespace korlit::host
