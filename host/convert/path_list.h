// The paths that a batch is given.
#pragma once

#include "host/convert/work_options.h"

#include <string>
#include <vector>

namespace korlit::host {

/// Those of the command line, and behind them those that `filesFrom` lists. Throws a runtime_error
/// where that can't be read.
std::vector<std::string> pathsOf(const WorkOptions& options);

} // namespace korlit::host
