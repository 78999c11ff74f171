#include "platform/descriptors.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korlit {

int openUninterrupted(const char* path, int flags) {
    constexpr mode_t newFileMode = 0666;
    int descriptor = noDescriptor;
    do {
        // O_NONBLOCK: opening a pipe that nobody serves fails or returns instead of waiting.
        descriptor = open(path, flags | O_CLOEXEC | O_NONBLOCK, newFileMode);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

int openRegularFile(const char* path) {
    const int descriptor = openUninterrupted(path, O_RDONLY);
    struct stat status {};
    if (descriptor >= 0 && (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))) {
        close(descriptor);
        return noDescriptor;
    }
    return descriptor;
}

int createFile(const char* path) {
    return openUninterrupted(path, O_WRONLY | O_CREAT | O_TRUNC);
}

bool closeDescriptor(int descriptor) {
    // An interrupted close has released the descriptor all the same and must not be repeated.
    return close(descriptor) == 0 || errno == EINTR;
}

std::int64_t lengthOf(int descriptor) {
    struct stat status {};
    return fstat(descriptor, &status) == 0 ? std::int64_t{status.st_size} : -1;
}

Transfer readAt(int descriptor, std::span<std::byte> target, std::int64_t byteCount,
                std::int64_t place) {
    bool hasFailed = false;
    const std::int64_t moved = transferAll(byteCount, [&](std::int64_t done) {
        const std::span<std::byte> left = target.subspan(static_cast<std::size_t>(done));
        const ssize_t count = pread(descriptor, left.data(), left.size(), place + done);
        hasFailed = count < 0 && errno != EINTR;
        return count;
    });
    return {.moved = moved, .hasFailed = hasFailed};
}

std::int64_t writeAt(int descriptor, std::span<const std::byte> source, std::int64_t place) {
    return transferAll(std::ssize(source), [&](std::int64_t done) {
        const std::span<const std::byte> left = source.subspan(static_cast<std::size_t>(done));
        return pwrite(descriptor, left.data(), left.size(), place + done);
    });
}

} // namespace korlit
