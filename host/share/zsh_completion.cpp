#include "host/share/completions.h"

#include "host/text/words.h"

namespace korlit::host {

namespace {

constexpr const char* start = R"(#compdef korlit
# Completion of korlit's commands, options and values for zsh.
_korlit() {
    local curcontext=$curcontext state line
    local -a commands=(
)";

constexpr const char* middle = R"(    case $state in
    command)
        _describe command commands
        ;;
    argument)
        case $words[1] in
)";

constexpr const char* end = R"(        esac
        ;;
    esac
}
_korlit "$@"
)";

/// A text within single quotes and, as _arguments wants it, with its own signs escaped.
std::string escaped(const std::string& text) {
    std::string all;
    for (const char letter : text) {
        if (letter == '\'') {
            all += "'\\''";
            continue;
        }
        all += letter == '[' || letter == ']' || letter == ':' || letter == '\\' ? "\\" : "";
        all += letter;
    }
    return all;
}

std::string actionOf(const OptionInfo& value) {
    switch (valueKindOf(value)) {
    case ValueKind::Choice:
        return value.isList ? "_values -s , " + value.value + ' ' + joined(value.choices, " ")
                            : '(' + joined(value.choices, " ") + ')';
    case ValueKind::File:
        return "_files";
    case ValueKind::Folder:
        return "_files -/";
    case ValueKind::None:
    case ValueKind::Other:
        break;
    }
    return "";
}

/// What _arguments takes for an option: one text for each of its names, which exclude each other.
std::string specificationOf(const OptionInfo& option) {
    const std::string excluded = '(' + joined(option.names, " ") + ')';
    const std::string value =
        option.value.empty() ? "" : ':' + escaped(option.value) + ':' + actionOf(option);
    std::string all;
    for (const std::string& name : option.names) {
        const bool isLong = name.starts_with("--");
        const std::string behind = option.value.empty() ? "" : isLong ? "=" : "+";
        all += " \\\n                '" + excluded + name + behind + '[' +
               escaped(option.description) + ']' + value + '\'';
    }
    return all;
}

std::string argumentsOf(const CommandInfo& command) {
    std::string all;
    for (std::size_t i = 0; i < command.arguments.size(); ++i) {
        const OptionInfo& argument = command.arguments[i];
        const std::string place = argument.isList ? "*" : std::to_string(i + 1);
        all += " \\\n                '" + place + ':' + escaped(argument.value) + ':' +
               actionOf(argument) + '\'';
    }
    return all;
}

std::string specificationsOf(const CommandInfo& command) {
    std::string all;
    for (const OptionInfo& option : command.options) {
        all += specificationOf(option);
    }
    return all;
}

} // namespace

std::string zshCompletion(const CommandInfo& korlit) {
    std::string commands;
    std::string branches;
    for (const CommandInfo& command : korlit.commands) {
        commands += "        '" + command.name + ':' + escaped(command.description) + "'\n";
        branches += "        " + command.name + ")\n            _arguments -s" +
                    specificationsOf(command) + argumentsOf(command) + "\n            ;;\n";
    }
    return start + commands + "    )\n    _arguments -C" + specificationsOf(korlit) +
           " \\\n                '1:command:->command' '*::argument:->argument'\n" + middle +
           branches + end;
}

} // namespace korlit::host
