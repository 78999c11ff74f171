// The processors that this process may run on.
#pragma once

#include <cstddef>

namespace korlit::host {

/// How many processors there are for workers.
std::size_t processorCount();

} // namespace korlit::host
