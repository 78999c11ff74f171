#include "host/system/file_identity.h"

#include <sys/stat.h>

namespace korlit::host {

std::optional<FileIdentity> identityOf(const std::filesystem::path& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return FileIdentity{.device = status.st_dev, .inode = status.st_ino};
}

std::optional<Occupant> occupantOf(const std::filesystem::path& place) {
    constexpr std::int64_t nanoseconds = 1'000'000'000;
    struct stat status {};
    if (lstat(place.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return Occupant{.identity = {.device = status.st_dev, .inode = status.st_ino},
                    .changed = status.st_mtim.tv_sec * nanoseconds + status.st_mtim.tv_nsec};
}

} // namespace korlit::host
