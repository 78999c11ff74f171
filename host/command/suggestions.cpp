#include "host/command/suggestions.h"

#include <algorithm>
#include <numeric>

namespace korlit::host {

namespace {

/// Single-character changes that turn one word into the other.
std::size_t editDistance(const std::string& from, const std::string& to) {
    std::vector<std::size_t> row(to.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (const char letter : from) {
        std::size_t diagonal = row[0]++;
        for (std::size_t j = 0; j < to.size(); ++j) {
            const std::size_t change = diagonal + (letter == to[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({change, row[j] + 1, row[j + 1] + 1});
        }
    }
    return row.back();
}

} // namespace

std::string suggestion(const std::string& word, const std::vector<std::string>& known) {
    constexpr std::size_t furthest = 3;
    const auto nearest = std::ranges::min_element(
        known, {}, [&](const std::string& name) { return editDistance(word, name); });
    const bool isNear = nearest != known.end() && editDistance(word, *nearest) <= furthest;
    return isNear ? "; did you mean " + *nearest + "?" : "";
}

} // namespace korlit::host
