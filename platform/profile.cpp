#include "platform/profile.h"

#include "platform/files.h"
#include "platform/text.h"

#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

namespace korlit {

namespace {

/// Settings are small; what lies behind this many bytes of the file is not looked at.
constexpr std::int64_t maxProfileSize = 64 * 1024L;

std::string readProfile() {
    const char* path = std::getenv("KORLIT_PROFILE");
    if (path == nullptr) {
        return {};
    }
    // Ahead of the file, which nobody would close if this found no memory.
    std::string content(maxProfileSize, '\0');
    const int file = _lopen(path);
    if (file == fileError) {
        return {};
    }
    const std::int64_t size = _hread(file, content.data(), maxProfileSize);
    _lclose(file);
    content.resize(size < 0 ? 0 : static_cast<std::size_t>(size));
    return content;
}

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string_view::npos
               ? std::string_view{}
               : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::string_view unquoted(std::string_view text) {
    const bool isQuoted = text.size() >= 2 && text.front() == text.back() &&
                          (text.front() == '"' || text.front() == '\'');
    return isQuoted ? text.substr(1, text.size() - 2) : text;
}

bool isSameWord(std::string_view first, const char* second) {
    std::string a{first};
    std::string b{second};
    _strlwr(a.data());
    _strlwr(b.data());
    return a == b;
}

std::optional<std::string_view> findValue(std::string_view profile, const char* section,
                                          const char* key) {
    bool isInSection = false;
    while (!profile.empty()) {
        const std::size_t end = std::min(profile.find('\n'), profile.size());
        const std::string_view line = trimmed(profile.substr(0, end));
        profile.remove_prefix(std::min(end + 1, profile.size()));
        const std::size_t equals = line.find('=');
        if (line.starts_with('[')) {
            isInSection = isSameWord(trimmed(line.substr(1, line.find(']') - 1)), section);
        } else if (isInSection && equals != std::string_view::npos &&
                   isSameWord(trimmed(line.substr(0, equals)), key)) {
            return unquoted(trimmed(line.substr(equals + 1)));
        }
    }
    return std::nullopt;
}

} // namespace

void GetProfileStringA(const char* section, const char* key, const char* otherwise,
                       std::span<char> value) {
    const std::string profile = readProfile();
    const std::string_view found = findValue(profile, section, key).value_or(otherwise);
    formatText(value, "%.*s", static_cast<int>(found.size()), found.data());
}

} // namespace korlit
