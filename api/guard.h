// The guard around an export's body.
#pragma once

#include "platform/file_size_signal.h"

#include <cstdint>

namespace korlit {

/// Runs `body` and answers 1 or 0 as it answers true or false; a fault inside ends the call with 0
/// and doesn't reach the host, nor does the signal of a file that grows too large.
template <typename Body>
std::int32_t guarded(Body body) noexcept {
    const FileSizeSignalHeld held;
    try {
        return body() ? 1 : 0;
    } catch (...) {
        return 0;
    }
}

} // namespace korlit
