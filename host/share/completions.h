// What completes the commands, options and values of `korlit` in a shell.
#pragma once

#include "host/command/command_tree.h"

#include <string>

namespace korlit::host {

std::string bashCompletion(const CommandInfo& korlit);
std::string zshCompletion(const CommandInfo& korlit);
std::string fishCompletion(const CommandInfo& korlit);

/// How a shell finds what may stand for a value.
enum class ValueKind { None, Choice, File, Folder, Other };

/// What the value of an option is, or the one of an argument.
ValueKind valueKindOf(const OptionInfo& option);

} // namespace korlit::host
