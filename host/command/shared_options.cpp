#include "host/command/command_options.h"
#include "host/command/values.h"
#include "host/text/words.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <iterator>

namespace korlit::host {

std::string shown(const std::vector<std::string>& choices) {
    return '{' + joined(choices, ",") + '}';
}

void addKindOption(CLI::App& command, FileKind& kind) {
    const auto formats = knownFormats();
    std::vector<std::string> names;
    std::ranges::transform(formats, std::back_inserter(names), &Format::name);
    const auto read = [&kind, formats, names](const std::string& name) {
        const auto format = std::ranges::find(formats, name, &Format::name);
        if (format == formats.end()) {
            throw CLI::ValidationError{"--from", "must be " + alternatives(names)};
        }
        kind = format->kind;
    };
    command
        .add_option_function<std::string>(
            "--from", read, "Take all files for this kind instead of recognising each")
        ->type_name("KIND:" + shown(names));
}

} // namespace korlit::host
