// The machine that this process runs on.
#pragma once

#include <string>

namespace korlit::host {

/// Its name in the network; the empty text where it has none.
std::string machineName();

} // namespace korlit::host
