#include "host/share/completions.h"

#include "host/text/words.h"

namespace korlit::host {

namespace {

std::string quoted(const std::string& text) {
    std::string all = "'";
    for (const char letter : text) {
        all += letter == '\'' || letter == '\\' ? "\\" : "";
        all += letter;
    }
    return all + '\'';
}

/// What completes the value of an option.
std::string valueOf(const OptionInfo& option) {
    switch (valueKindOf(option)) {
    case ValueKind::Choice:
        return option.isList
                   ? " -x -a " + quoted("(__fish_append , " + joined(option.choices, " ") + ')')
                   : " -x -a " + quoted(joined(option.choices, " "));
    case ValueKind::File:
        return " -r -F";
    case ValueKind::Folder:
        return " -x -a '(__fish_complete_directories)'";
    case ValueKind::Other:
        return " -x";
    case ValueKind::None:
        break;
    }
    return "";
}

std::string lineFor(const OptionInfo& option, const std::string& condition) {
    std::string names;
    for (const std::string& name : option.names) {
        names += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    }
    return "complete -c korlit -n " + quoted(condition) + names + valueOf(option) + " -d " +
           quoted(option.description) + '\n';
}

} // namespace

std::string fishCompletion(const CommandInfo& korlit) {
    const std::string atStart = "__fish_use_subcommand";
    std::string lines = "# Completion of korlit's commands, options and values for fish.\n"
                        "complete -c korlit -n " +
                        atStart + " -f\n";
    for (const OptionInfo& option : korlit.options) {
        lines += lineFor(option, atStart);
    }
    for (const CommandInfo& command : korlit.commands) {
        lines += "complete -c korlit -n " + atStart + " -a " + command.name + " -d " +
                 quoted(command.description) + '\n';
        for (const OptionInfo& option : command.options) {
            lines += lineFor(option, "__fish_seen_subcommand_from " + command.name);
        }
    }
    return lines;
}

} // namespace korlit::host
