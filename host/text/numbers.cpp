#include "host/text/numbers.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace korlit::host {

namespace {

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

} // namespace

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

std::string groupedDigits(std::int64_t count) {
    constexpr std::size_t groupLength = 3;
    std::string digits = std::to_string(count);
    for (std::size_t place = digits.size(); place > groupLength;) {
        place -= groupLength;
        digits.insert(place, 1, ',');
    }
    return digits;
}

} // namespace korlit::host
