// The guard around an export's body.
#pragma once

#include <cstdint>

namespace korlit {

/// Runs `body` and answers its result; a fault inside ends the call with 0 and doesn't reach the
/// host.
template <typename Body>
std::int32_t guarded(Body body) noexcept {
    try {
        return body();
    } catch (...) {
        return 0;
    }
}

} // namespace korlit
