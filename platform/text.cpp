#include "platform/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <limits>
#include <system_error>

namespace korlit {

namespace {

/// `text` behind its white space and a plus sign, which from_chars doesn't take. Empty if a second
/// sign follows.
std::string_view numberStart(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    if (text.starts_with('+')) {
        text.remove_prefix(1);
        return text.starts_with('-') ? std::string_view{} : text;
    }
    return text;
}

} // namespace

void formatText(std::span<char> target, const char* format, ...) {
    if (target.empty()) {
        return;
    }
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(target.data(), target.size(), format, arguments);
    va_end(arguments);
}

void formatGeneral(std::span<char> target, double value) {
    constexpr int significantDigits = 6;
    std::array<char, 32> digits{};
    std::to_chars(digits.data(), digits.data() + digits.size() - 1, value,
                  std::chars_format::general, significantDigits);
    std::transform(digits.begin(), digits.end(), digits.begin(), [](char character) {
        return character >= 'a' && character <= 'z' ? static_cast<char>(character - 'a' + 'A')
                                                    : character;
    });
    formatText(target, "%8s", digits.data());
}

void lstrcpynA(char* target, const char* source, int size) {
    const std::size_t length = strnlen(source, static_cast<std::size_t>(size) - 1);
    std::copy_n(source, length, target);
    target[length] = '\0';
}

void _strlwr(char* text) {
    for (; *text != '\0'; ++text) {
        if (*text >= 'A' && *text <= 'Z') {
            *text = static_cast<char>(*text - 'A' + 'a');
        }
    }
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

std::optional<std::int32_t> readLong(std::string_view text) {
    using Limits = std::numeric_limits<std::int32_t>;
    const std::string_view digits = numberStart(text);
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    if (error == std::errc::result_out_of_range) {
        return digits.starts_with('-') ? Limits::min() : Limits::max();
    }
    return error == std::errc{} ? std::optional{number} : std::nullopt;
}

std::optional<std::int16_t> readShort(std::string_view text) {
    const std::optional<std::int32_t> number = readLong(text);
    return number ? std::optional{static_cast<std::int16_t>(*number)} : std::nullopt;
}

std::optional<float> readFloat(std::string_view text) {
    const std::string_view digits = numberStart(text);
    float number = 0.0F;
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
    return error == std::errc{} ? std::optional{number} : std::nullopt;
}

} // namespace korlit
