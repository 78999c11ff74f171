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

/// "; did you mean convert?" for the nearest of the known words, if it is near.
std::string suggestion(const std::string& word, const std::vector<std::string>& known) {
    // A short word is turned into nearly any other by few changes.
    constexpr std::size_t lettersForAChange = 3;
    const auto letters = static_cast<std::size_t>(
        std::ranges::count_if(word, [](char each) { return each != '-'; }));
    const std::size_t furthest = std::clamp<std::size_t>(letters / lettersForAChange, 1, 3);
    const auto nearest = std::ranges::min_element(
        known, {}, [&](const std::string& name) { return editDistance(word, name); });
    const bool isNear = nearest != known.end() && editDistance(word, *nearest) <= furthest;
    return isNear ? "; did you mean " + *nearest + "?" : "";
}

bool isOption(const std::string& word) {
    return word.starts_with('-');
}

} // namespace

std::string unknownCommand(const std::string& word, const CommandInfo& korlit) {
    std::vector<std::string> known;
    for (const CommandInfo& command : korlit.commands) {
        known.push_back(command.name);
    }
    return isOption(word) ? "the command comes ahead of " + word + ", as in korlit convert " + word
                          : "unknown command " + word + suggestion(word, known);
}

std::string unknownArgument(const std::vector<std::string>& words, const CommandInfo& command) {
    std::vector<std::string> known;
    for (const OptionInfo& option : command.options) {
        known.push_back(option.names.back());
    }
    const auto option = std::ranges::find_if(words, isOption);
    const std::string argument = option == words.end() ? words.front() : *option;
    const std::string word = argument.substr(0, argument.find('=')); // without its value
    if (std::ranges::find(known, word) != known.end()) {
        return word + " goes behind the command";
    }
    return (isOption(word) ? "unknown option " : "unexpected argument ") + word +
           suggestion(word, known);
}

} // namespace korlit::host
