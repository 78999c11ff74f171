#include "host/command/command_tree.h"

#include "host/command/command_options.h"

#include <CLI/CLI.hpp>

namespace korlit::host {

namespace {

std::vector<std::string> choicesOf(const std::string& type) {
    const std::size_t start = type.find('{');
    return start == std::string::npos
               ? std::vector<std::string>{}
               : CLI::detail::split(type.substr(start + 1, type.find('}') - start - 1), ',');
}

OptionInfo optionInfoOf(const CLI::Option& option) {
    OptionInfo info{
        .names = {},
        .value = option.get_name(),
        .choices = {},
        .description = CLI::detail::find_and_replace(option.get_description(), "\n", " "),
        .isRequired = option.get_required(),
        .isList = option.get_items_expected_max() > 1 || option.get_delimiter() != '\0'};
    if (!option.get_positional()) {
        const std::string type = option.get_type_name();
        info.value = type.substr(0, type.find(':'));
        info.choices = choicesOf(type);
        for (const std::string& name : option.get_snames()) {
            info.names.push_back('-' + name);
        }
        for (const std::string& name : option.get_lnames()) {
            info.names.push_back("--" + name);
        }
    }
    return info;
}

} // namespace

CommandInfo infoOf(const CLI::App& app) {
    CommandInfo info{.name = app.get_name(),
                     .description = app.get_description(),
                     .details = app.get_footer(),
                     .arguments = {},
                     .options = {},
                     .commands = {}};
    for (const CLI::Option* option : app.get_options()) {
        (option->get_positional() ? info.arguments : info.options).push_back(optionInfoOf(*option));
    }
    for (const CLI::App* command : app.get_subcommands({})) {
        info.commands.push_back(infoOf(*command));
    }
    return info;
}

} // namespace korlit::host
