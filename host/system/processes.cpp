#include "host/system/processes.h"

#include <sched.h>

#include <algorithm>
#include <thread>

namespace korlit::host {

std::size_t processorCount() {
    cpu_set_t usable;
    if (sched_getaffinity(0, sizeof usable, &usable) == 0) {
        return static_cast<std::size_t>(CPU_COUNT(&usable));
    }
    return std::max(1U, std::thread::hardware_concurrency());
}

} // namespace korlit::host
