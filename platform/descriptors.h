// The system's file descriptors, for the pieces of this layer that are made of them.
#pragma once

#include <cerrno>
#include <cstdint>

namespace korlit {

/// Opens a path by the flags of open(2), taken up again when interrupted. Never waits for the other
/// end of a pipe. Negative on failure.
int openUninterrupted(const char* path, int flags);

/// Opens a regular file for reading. Negative if it isn't there, may not be read or is anything but
/// a regular file.
int openRegularFile(const char* path);

/// The length of an open file in bytes. Negative on failure.
std::int64_t lengthOf(int descriptor);

/// Repeats `transfer(done)` until `byteCount` bytes are moved or it moves nothing; answers the
/// number moved.
template <typename Transfer>
std::int64_t transferAll(std::int64_t byteCount, Transfer transfer) {
    std::int64_t done = 0;
    while (done < byteCount) {
        const std::int64_t moved = transfer(done);
        if (moved > 0) {
            done += moved;
        } else if (moved == 0 || errno != EINTR) {
            break;
        }
    }
    return done;
}

} // namespace korlit
