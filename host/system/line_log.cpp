#include "host/system/line_log.h"

#include "platform/descriptors.h"
#include "platform/file_size_signal.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <span>
#include <string>
#include <system_error>

namespace korlit::host {

namespace {

/// Holds all others back. Where a file system has no locks, O_APPEND alone keeps the lines apart.
class Lock {
  public:
    explicit Lock(int opened) : descriptor{opened} {
        while (flock(descriptor, LOCK_EX) != 0 && errno == EINTR) {
        }
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;
    ~Lock() { flock(descriptor, LOCK_UN); }

  private:
    int descriptor;
};

bool isCut(int descriptor, std::int64_t length) {
    char last = '\n';
    return length > 0 && pread(descriptor, &last, 1, length - 1) == 1 && last != '\n';
}

} // namespace

LineLog::LineLog(const std::filesystem::path& file, std::filesystem::perms most)
    : path{file}, descriptor{openUninterrupted(file.c_str(), O_RDWR | O_APPEND | O_CREAT)} {
    struct stat status {};
    if (descriptor >= 0 && (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))) {
        closeDescriptor(descriptor);
        descriptor = noDescriptor;
        errno = EINVAL;
    }
    if (descriptor < 0) {
        throw std::filesystem::filesystem_error{"Can't open", path,
                                                std::error_code{errno, std::generic_category()}};
    }
    if (status.st_size == 0) {
        fchmod(descriptor, status.st_mode & static_cast<mode_t>(most));
    }
}

LineLog::~LineLog() {
    closeDescriptor(descriptor);
}

void LineLog::append(std::string_view lines) const {
    const Lock lock{descriptor};
    const std::int64_t length = lengthOf(descriptor);
    std::string all{isCut(descriptor, length) ? "\n" : ""};
    all += lines;
    const FileSizeSignalHeld held;
    errno = ENOSPC;
    if (length < 0 ||
        writeAt(descriptor, std::as_bytes(std::span{all}), length) != std::ssize(all)) {
        const std::error_code error{errno, std::generic_category()};
        // To leave a cut line is the worst that can become of this.
        [[maybe_unused]] const int ignored = length < 0 ? 0 : ftruncate(descriptor, length);
        throw std::filesystem::filesystem_error{"Can't write", path, error};
    }
}

} // namespace korlit::host
