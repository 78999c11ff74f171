// This process and the processors that it may run on.
#pragma once

#include <cstddef>

namespace korlit::host {

/// How many processors there are for workers.
std::size_t processorCount();

/// The number of this process.
long processId();

} // namespace korlit::host
