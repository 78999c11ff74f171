#include "host/share/completions.h"

#include "host/text/words.h"

#include <map>
#include <string_view>
#include <vector>

namespace korlit::host {

namespace {

constexpr const char* start = R"(# Completion of korlit's commands, options and values for bash.
_korlit() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local command=${COMP_WORDS[1]} earlier=
    # Bash takes --name=value for three words.
    if [ "$current" = = ]; then
        current=
    elif [ "$previous" = = ]; then
        previous=${COMP_WORDS[COMP_CWORD - 2]}
    fi
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W "@commands" -- "$current")
        return
    fi
    case "$command $previous" in
)";

constexpr const char* middle = R"(    esac
    if [[ $current != -* ]]; then
        compopt -o default
        return
    fi
    case $command in
)";

constexpr const char* end = R"(    esac
}
complete -F _korlit korlit
)";

std::string namesOf(const CommandInfo& command) {
    std::string names;
    for (const OptionInfo& option : command.options) {
        names += (names.empty() ? "" : " ") + joined(option.names, " ");
    }
    return names;
}

/// The shell's words that complete the value of an option.
std::string completionOf(const OptionInfo& option) {
    const std::string choices = " -W \"" + joined(option.choices, " ") + '"';
    switch (valueKindOf(option)) {
    case ValueKind::Choice:
        return option.isList
                   ? "        [[ $current == *,* ]] && earlier=${current%,*},\n"
                     "        compopt -o nospace\n"
                     "        mapfile -t COMPREPLY < <(compgen -P \"$earlier\"" +
                         choices + " -- \"${current##*,}\")\n"
                   : "        mapfile -t COMPREPLY < <(compgen" + choices + " -- \"$current\")\n";
    case ValueKind::File:
        return "        compopt -o default\n";
    case ValueKind::Folder:
        return "        compopt -o dirnames\n";
    case ValueKind::None:
    case ValueKind::Other:
        break;
    }
    return "";
}

/// A branch for all options whose values are completed alike.
std::string valueBranches(const CommandInfo& korlit) {
    std::map<std::string, std::vector<std::string>> optionsByCompletion;
    for (const CommandInfo& command : korlit.commands) {
        for (const OptionInfo& option : command.options) {
            for (const std::string& name :
                 option.value.empty() ? std::vector<std::string>{} : option.names) {
                optionsByCompletion[completionOf(option)].push_back('"' + command.name + ' ' +
                                                                    name + '"');
            }
        }
    }
    std::string branches;
    for (const auto& [completion, options] : optionsByCompletion) {
        branches +=
            "    " + joined(options, " | ") + ")\n" + completion + "        return\n        ;;\n";
    }
    return branches;
}

} // namespace

std::string bashCompletion(const CommandInfo& korlit) {
    std::string commands = namesOf(korlit);
    std::string options;
    for (const CommandInfo& command : korlit.commands) {
        commands += ' ' + command.name;
        options += "    " + command.name + ")\n        mapfile -t COMPREPLY < <(compgen -W \"" +
                   namesOf(command) + "\" -- \"$current\")\n        ;;\n";
    }
    std::string script{start};
    constexpr std::string_view mark = "@commands";
    script.replace(script.find(mark), mark.size(), commands);
    return script + valueBranches(korlit) + middle + options + end;
}

} // namespace korlit::host
