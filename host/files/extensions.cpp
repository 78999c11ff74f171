#include "host/files/extensions.h"

#include <algorithm>
#include <cctype>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

char lowerCase(char letter) {
    return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
}

char upperCase(char letter) {
    return static_cast<char>(std::toupper(static_cast<unsigned char>(letter)));
}

/// `number` says by its bits which letters are capitals.
std::string withCapitals(std::string text, std::size_t number) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        text[i] = ((number >> i) & 1) != 0 ? upperCase(text[i]) : text[i];
    }
    return text;
}

} // namespace

bool hasExtension(const std::string& file, std::string_view extension) {
    // A name that is nothing else has none.
    const std::size_t stemEnd = file.size() - std::min(file.size(), extension.size());
    return stemEnd > 0 && file[stemEnd - 1] != '/' &&
           std::ranges::equal(std::string_view{file}.substr(stemEnd), extension, {}, lowerCase,
                              lowerCase);
}

fs::path besideWith(const fs::path& file, std::string_view extension) {
    const std::size_t spellings = std::size_t{1} << extension.size();
    const auto spelt = [&](std::size_t number) {
        return fs::path{file}.replace_extension(withCapitals(std::string{extension}, number));
    };
    std::error_code ignored;
    // From both ends: what has no capitals, or nothing else, is the most usual.
    for (std::size_t i = 0; i < spellings; ++i) {
        const std::size_t number = i % 2 == 0 ? i / 2 : spellings - 1 - i / 2;
        if (fs::exists(spelt(number), ignored)) {
            return spelt(number);
        }
    }
    return spelt(0);
}

} // namespace korlit::host
