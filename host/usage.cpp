#include "host/usage.h"

#include <algorithm>
#include <numeric>
#include <vector>

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

std::vector<std::string> optionNames(const CLI::App& command) {
    std::vector<std::string> names;
    for (const CLI::Option* option : command.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

std::vector<std::string> commandNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::App* command : app.get_subcommands({})) {
        names.push_back(command->get_name());
    }
    return names;
}

std::string suggestion(const std::string& word, const std::vector<std::string>& known) {
    constexpr std::size_t furthest = 3;
    const auto nearest = std::ranges::min_element(
        known, {}, [&](const std::string& name) { return editDistance(word, name); });
    const bool isNear = nearest != known.end() && editDistance(word, *nearest) <= furthest;
    return isNear ? "; did you mean " + *nearest + "?" : "";
}

/// An option as it was given, without its value.
std::string nameOf(const std::string& argument) {
    return argument.substr(0, argument.find('='));
}

} // namespace

void addKindOption(CLI::App& command, FileKind& kind) {
    command
        .add_option_function<std::string>(
            "--from",
            [&kind](const std::string& name) {
                for (const FileKind each :
                     {FileKind::Andi, FileKind::Merivolta, FileKind::Dunvale}) {
                    if (name == kindName(each)) {
                        kind = each;
                        return;
                    }
                }
                throw CLI::ValidationError{"--from", "must be andi, merivolta or dunvale"};
            },
            "Take all files for this kind instead of recognising each:\n"
            "andi, merivolta or dunvale")
        ->type_name("KIND");
}

std::string usageText(const CLI::App& app, const CLI::ParseError& error) {
    const std::vector<std::string> unknown = app.remaining(true);
    const auto commands = app.get_subcommands();
    if (commands.empty()) {
        return unknown.empty() ? "no command"
                               : "unknown command " + unknown.front() +
                                     suggestion(unknown.front(), commandNames(app));
    }
    if (dynamic_cast<const CLI::ExtrasError*>(&error) == nullptr || unknown.empty()) {
        return error.what();
    }
    const auto isOption = [](const std::string& word) { return word.starts_with('-'); };
    const auto option = std::ranges::find_if(unknown, isOption);
    const std::string word = nameOf(option == unknown.end() ? unknown.front() : *option);
    return (isOption(word) ? "unknown option " : "unexpected argument ") + word +
           suggestion(word, optionNames(*commands.front()));
}

} // namespace korlit::host
