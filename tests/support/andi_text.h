// Lays out ANDI files, right or wrong, from words, independently of the code under test.
#pragma once

#include <cstdint>
#include <cstring>
#include <sstream>
#include <string>

namespace korlit::test {

template <typename Number>
std::string big(Number number) {
    std::string bytes(sizeof number, '\0');
    std::memcpy(bytes.data(), &number, sizeof number);
    return {bytes.rbegin(), bytes.rend()};
}

inline std::string padded(std::string bytes) {
    bytes.resize((bytes.size() + 3) / 4 * 4);
    return bytes;
}

/// The bytes of words with a blank between each two: 12 is an integer, 1.5f a float, 'name' a
/// string with its length ahead, "text" (a _ for each blank) bare characters; all padded to 4.
inline std::string layOut(const std::string& words) {
    std::istringstream in{words};
    std::string bytes;
    for (std::string word; in >> word;) {
        const std::string quoted = word.substr(1, word.size() - 2);
        if (word.front() == '\'') {
            bytes += big(static_cast<std::int32_t>(quoted.size())) + padded(quoted);
        } else if (word.front() == '"') {
            bytes += padded(quoted);
        } else if (word.back() == 'f') {
            bytes += big(std::stof(word));
        } else {
            bytes += big(static_cast<std::int32_t>(std::stoll(word)));
        }
    }
    return bytes;
}

/// The sections of a file in words, a small valid one if nothing is changed: the points 5, 7 and 6.
/// A variable is 'name', its dimensions, its attributes, type, size, offset. Data stand at 1024.
struct AndiText {
    std::string start = "1128547841"; // "CDF" and the version 1
    std::string records = "0";
    std::string dimensions = "10 1 'point_number' 3";
    std::string globals = "0 0";
    std::string variables = "11 1 'ordinate_values' 1 0 0 0 5 12 1024";
    std::string data = "5f 7f 6f";

    [[nodiscard]] std::string bytes() const {
        std::string header = layOut(start) + layOut(records) + layOut(dimensions) + layOut(globals);
        header += layOut(variables);
        header.resize(1024);
        return header + layOut(data);
    }
};

/// A global attribute list of one text.
inline std::string oneText(const std::string& name, const std::string& text) {
    return "12 1 '" + name + "' 2 " + std::to_string(text.size()) + " \"" + text + '"';
}

} // namespace korlit::test
