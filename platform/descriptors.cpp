#include "platform/descriptors.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korlit {

int openUninterrupted(const char* path, int flags) {
    constexpr mode_t newFileMode = 0666;
    int descriptor = -1;
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
        return -1;
    }
    return descriptor;
}

std::int64_t lengthOf(int descriptor) {
    struct stat status {};
    return fstat(descriptor, &status) == 0 ? std::int64_t{status.st_size} : -1;
}

} // namespace korlit
