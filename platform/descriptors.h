// The system's file descriptors: the calls that open, read, write and close. Files are made of
// them.
#pragma once

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <span>

namespace korlit {

/// What the calls answer that open a file and fail.
constexpr int noDescriptor = -1;

/// Opens a path by the flags of open(2), taken up again when interrupted. Never waits for the other
/// end of a pipe.
int openUninterrupted(const char* path, int flags);

/// Opens a regular file for reading. Fails if it isn't there, may not be read or is anything but a
/// regular file.
int openRegularFile(const char* path);

/// Opens a regular file for reading, as above, and protects it: until closeProtected, nothing in
/// this process creates a file over it, under whatever name.
int openProtected(const char* path);
void closeProtected(int descriptor);

/// Creates a file for writing, or empties it if it exists. Fails, and leaves it as it is, if that
/// is protected.
int createFile(const char* path);

/// Answers whether all went well. The descriptor is gone in any case.
bool closeDescriptor(int descriptor);

/// The length of an open file in bytes. Negative on failure.
std::int64_t lengthOf(int descriptor);

struct Transfer {
    std::int64_t moved = 0;
    bool hasFailed = false; ///< the system failed, behind the bytes that were moved
};

/// Reads `byteCount` bytes at a place, fewer only at the end of the file or on failure, and as many
/// of the target's room as come along with them.
Transfer readAt(int descriptor, std::span<std::byte> target, std::int64_t byteCount,
                std::int64_t place);

/// Writes the bytes at a place. Answers the number written, fewer only on failure.
std::int64_t writeAt(int descriptor, std::span<const std::byte> source, std::int64_t place);

/// Repeats `transfer(done)` until `byteCount` bytes are moved or it moves nothing, but for an
/// interrupt; answers the number moved.
template <typename Call>
std::int64_t transferAll(std::int64_t byteCount, Call transfer) {
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
