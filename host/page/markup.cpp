#include "host/page/markup.h"

#include "host/manifest/digest.h"
#include "host/text/utf8.h"

#include <cstdint>

namespace korlit::host {

namespace {

/// The entity of a character that could be markup; null for any other.
const char* entityOf(char character) {
    switch (character) {
    case '&':
        return "&amp;";
    case '<':
        return "&lt;";
    case '>':
        return "&gt;";
    case '"':
        return "&quot;";
    case '\'':
        return "&#39;";
    default:
        return nullptr;
    }
}

} // namespace

std::string escaped(std::string_view text) {
    std::string markup;
    for (const char character : printable(text)) {
        const char* const entity = entityOf(character);
        entity == nullptr ? markup += character : markup += entity;
    }
    return markup;
}

std::string element(std::string_view tag, std::string_view text) {
    std::string markup;
    if (!text.empty()) {
        (((markup += '<') += tag) += '>') += escaped(text);
        ((markup += "</") += tag) += '>';
    }
    return markup;
}

std::string policyHash(std::string_view script) {
    constexpr std::string_view digits =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    constexpr unsigned digitBits = 6;
    std::string base64;
    std::uint32_t bits = 0;
    unsigned bitCount = 0;
    for (const std::uint8_t byte : sha256Of(script)) {
        bits = (bits << 8U) | byte;
        for (bitCount += 8; bitCount >= digitBits;) {
            bitCount -= digitBits;
            base64 += digits[(bits >> bitCount) % digits.size()];
        }
    }
    // 32 bytes leave four bits.
    return "sha256-" + base64 + digits[(bits << (digitBits - bitCount)) % digits.size()] + '=';
}

} // namespace korlit::host
