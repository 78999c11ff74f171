// What the parser of each command is made of. Seen within this room alone, which is the only one
// that knows the command line library.
#pragma once

#include "host/command/command_tree.h"
#include "host/files/formats.h"

#include <string>
#include <vector>

namespace CLI {
class App;
} // namespace CLI

namespace korlit::host {

/// Adds a command, which leaves its exit status in `status` when it has run.
void addConvertCommand(CLI::App& app, int& status);
void addInfoCommand(CLI::App& app, int& status);
void addPlotCommand(CLI::App& app, int& status);
void addCheckCommand(CLI::App& app, int& status);
void addCompareCommand(CLI::App& app, int& status);

/// --from, by which a user says what kind the files are.
void addKindOption(CLI::App& command, FileKind& kind);

/// A command, or all of them, as plain data.
CommandInfo infoOf(const CLI::App& app);

/// Choices as the help shows them behind the name of a value, and as the command tree reads them.
std::string shown(const std::vector<std::string>& choices);

} // namespace korlit::host
