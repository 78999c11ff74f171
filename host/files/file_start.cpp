#include "host/files/file_start.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korlit::host {

bool hasRunVersion(const FileStart& start) {
    constexpr float lowest = 1.0F;
    constexpr float highest = 100.0F;
    const auto version = start.recordAt<float>(0);
    return version >= lowest && version <= highest;
}

// Archives have very many files: no stream and its buffer for each.
FileStart startOf(const std::string& file) {
    FileStart start;
    struct stat status {};
    // Not to wait for the other end of a pipe.
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    const bool isKnown =
        (descriptor < 0 ? stat(file.c_str(), &status) : fstat(descriptor, &status)) == 0;
    if (isKnown && S_ISREG(status.st_mode)) {
        start.fileSize = status.st_size;
        const ssize_t count = read(descriptor, start.bytes.data(), start.bytes.size());
        start.length = count < 0 ? 0 : count;
    }
    if (descriptor >= 0) {
        close(descriptor);
    }
    return start;
}

} // namespace korlit::host
