// The manual page of the command.
#pragma once

#include "host/command/command_tree.h"

#include <string>

namespace korlit::host {

/// The page in the macros of `man`, as of a date such as 2005-10-12.
std::string manualPage(const CommandInfo& korlit, const std::string& date);

} // namespace korlit::host
