#include "host/command/command_options.h"
#include "host/command/values.h"
#include "host/text/words.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iterator>

namespace korlit::host {

CLI::Option* addChoice(CLI::App& command, const Choice& choice,
                       const std::function<void(std::size_t)>& take) {
    const auto read = [choice, take](const std::string& name) {
        const auto found = std::ranges::find(choice.names, name);
        if (found == choice.names.end()) {
            throw CLI::ValidationError{choice.option, "must be " + alternatives(choice.names)};
        }
        take(static_cast<std::size_t>(found - choice.names.begin()));
    };
    return command.add_option_function<std::string>(choice.option, read, choice.description)
        ->type_name(choice.value + ":{" + joined(choice.names, ",") + '}');
}

void addKindOption(CLI::App& command, FileKind& kind) {
    const auto formats = knownFormats();
    Choice choice{.option = "--from",
                  .value = "KIND",
                  .names = {},
                  .description = "Take all files for this kind instead of recognising each"};
    std::ranges::transform(formats, std::back_inserter(choice.names), &Format::name);
    addChoice(command, choice, [&kind, formats](std::size_t i) { kind = formats[i].kind; });
}

} // namespace korlit::host
