#include "host/system/access.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace korlit::host {

std::string openProblem(const std::filesystem::path& file) {
    struct stat status {};
    // Not to wait for the other end of a pipe.
    const int descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        return std::generic_category().message(errno);
    }
    const bool isKnown = fstat(descriptor, &status) == 0;
    close(descriptor);
    if (isKnown && S_ISDIR(status.st_mode)) {
        return "it is a folder";
    }
    return isKnown && !S_ISREG(status.st_mode) ? "it is no regular file" : "";
}

} // namespace korlit::host
