#include "host/text/json.h"

#include "host/text/numbers.h"
#include "host/text/utf8.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string_view>

namespace korlit::host {

namespace {

Json parsed(const std::string& text, double number) {
    if (!std::isfinite(number)) {
        return nullptr;
    }
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

/// All that steers is below U+10000, and so has one escape.
std::u32string escaped(char32_t character) {
    constexpr std::u32string_view digits = U"0123456789abcdef";
    std::u32string escape = U"\\u";
    for (const unsigned shift : {12U, 8U, 4U, 0U}) {
        escape += digits[(character >> shift) & 0xFU];
    }
    return escape;
}

} // namespace

Json numberJson(double number) {
    return parsed(numberText(number), number);
}

Json timeJson(double time) {
    return parsed(timeText(time), time);
}

Json roundedJson(double number) {
    return parsed(roundedText(number), number);
}

void addPathBytes(Json& object, const std::string& key, const std::string& path) {
    constexpr std::string_view digits = "0123456789abcdef";
    if (utf8Of(path) == path) {
        return;
    }
    std::string bytes;
    for (const char each : path) {
        const auto byte = static_cast<unsigned char>(each);
        bytes += {digits[byte / digits.size()], digits[byte % digits.size()]};
    }
    object[key + "_bytes"] = bytes;
}

std::string pathIn(const Json& object, const std::string& key) {
    const auto found = object.find(key + "_bytes");
    if (found == object.end()) {
        return object.at(key);
    }
    const std::string digits = *found;
    std::string path;
    for (std::size_t i = 0; i + 1 < digits.size(); i += 2) {
        unsigned byte = 0;
        std::from_chars(digits.data() + i, digits.data() + i + 2, byte, 16);
        path += static_cast<char>(byte);
    }
    return path;
}

std::string jsonLine(const Json& value) {
    std::u32string line;
    for (const char32_t character : charactersOf(value.dump())) {
        isSteering(character) ? line += escaped(character) : line += character;
    }
    return encoded(line) + '\n';
}

std::string failureLine(const std::string& file, const std::string& reason) {
    Json object{{"file", utf8Of(file)}, {"error", utf8Of(reason)}};
    addPathBytes(object, "file", file);
    return jsonLine(object);
}

} // namespace korlit::host
