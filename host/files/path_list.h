// The paths that a command is given.
#pragma once

#include "host/files/inputs.h"

#include <string>
#include <vector>

namespace korlit::host {

/// Those of the command line, and behind them those that `filesFrom` lists. Throws WrongUse where
/// that can't be read.
std::vector<std::string> pathsOf(const Inputs& inputs);

} // namespace korlit::host
