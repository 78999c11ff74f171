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

FolderPlace folderPlaceOf(std::filesystem::path folder) {
    std::filesystem::path below;
    for (;;) {
        const auto identity = identityOf(folder.empty() ? "." : folder);
        if (identity || folder.empty() || !folder.has_relative_path()) {
            return {.above = identity, .below = below.lexically_normal().string()};
        }
        below = below.empty() ? folder.filename() : folder.filename() / below;
        folder = folder.parent_path();
    }
}

FilePlace filePlaceOf(std::filesystem::path file) {
    constexpr int mostLinks = 40; // as the system has it
    std::error_code error;
    for (int i = 0; i < mostLinks && !identityOf(file); ++i) {
        const std::filesystem::path next = std::filesystem::read_symlink(file, error);
        if (error) {
            break;
        }
        file = file.parent_path() / next;
    }
    return {.folder = folderPlaceOf(file.parent_path()), .name = file.filename()};
}

} // namespace korlit::host
