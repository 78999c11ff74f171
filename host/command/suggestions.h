// What is said of words that aren't known, with what a user may have meant by them.
#pragma once

#include "host/command/command_tree.h"

#include <string>
#include <vector>

namespace korlit::host {

/// "unknown command convrt; did you mean convert?", where some command is near.
std::string unknownCommand(const std::string& word, const CommandInfo& korlit);

/// The same of the first option among the arguments, or of the first argument, that a command
/// doesn't know.
std::string unknownArgument(const std::vector<std::string>& words, const CommandInfo& command);

} // namespace korlit::host
