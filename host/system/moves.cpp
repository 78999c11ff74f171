#include "host/system/moves.h"

#include <fcntl.h>
#include <stdio.h> // NOLINT(modernize-deprecated-headers): renameat2
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace korlit::host {

std::error_code moveToFreePlace(const std::filesystem::path& from,
                                const std::filesystem::path& to) {
    if (renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return {};
    }
    std::error_code error{errno, std::generic_category()};
    if (error == std::errc::invalid_argument) { // a file system without this kind of rename
        if (std::filesystem::exists(std::filesystem::symlink_status(to, error))) {
            return std::make_error_code(std::errc::file_exists);
        }
        std::filesystem::rename(from, to, error);
    }
    return error;
}

void syncToDisk(const std::filesystem::path& path) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_CLOEXEC);
    const bool isSynced = descriptor >= 0 && fsync(descriptor) == 0;
    const std::error_code error{errno, std::generic_category()};
    if (descriptor >= 0) {
        close(descriptor);
    }
    if (!isSynced) {
        throw std::filesystem::filesystem_error{"Can't write", path, error};
    }
}

void makeFolders(const std::filesystem::path& folder, bool isSynced) {
    if (folder.empty() || std::filesystem::exists(folder)) {
        return;
    }
    const std::filesystem::path parent = folder.parent_path();
    makeFolders(parent, isSynced);
    std::filesystem::create_directory(folder);
    if (isSynced) {
        syncToDisk(parent.empty() ? "." : parent);
    }
}

std::optional<std::filesystem::perms> permissionsLike(const std::filesystem::path& file) {
    constexpr mode_t readAndWrite = 0666;
    static const mode_t mask = [] {
        const mode_t found = umask(0);
        umask(found);
        return found;
    }();
    struct stat status {};
    if (stat(file.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return std::filesystem::perms{status.st_mode & readAndWrite & ~mask};
}

void setPermissions(const std::filesystem::path& file,
                    const std::optional<std::filesystem::perms>& permissions) {
    std::error_code ignored;
    if (permissions && std::filesystem::status(file, ignored).permissions() != *permissions) {
        std::filesystem::permissions(file, *permissions, ignored);
    }
}

} // namespace korlit::host
