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

void addInputOptions(CLI::App& command, Inputs& inputs, const std::string& description) {
    command.add_option("PATH", inputs.paths, description)->type_name("");
    command.add_flag("-r,--recursive", inputs.isRecursive,
                     "Take folders with all that lies below, but for what is hidden");
    command
        .add_option("--files-from", inputs.filesFrom,
                    "Take further paths from the lines of a file; - is standard input")
        ->check(refuseEmpty)
        ->type_name("LIST");
    command.add_flag("-0,--null", inputs.isZeroSeparated,
                     "The paths of that file end with NUL characters instead of lines");
}

void requireInputs(const Inputs& inputs) {
    if (inputs.paths.empty() && inputs.filesFrom.empty()) {
        throw CLI::RequiredError{"PATH or --files-from"};
    }
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
