#include "host/system/moves.h"

#include "host/system/file_identity.h"

#include <fcntl.h>
#include <stdio.h> // NOLINT(modernize-deprecated-headers): renameat2
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

std::error_code renamed(const fs::path& from, const fs::path& to, unsigned how) {
    return renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), how) == 0 ? std::error_code{}
                                                                             : lastError();
}

/// Of a file system or a system without this kind of rename.
bool isUnknownKind(const std::error_code& error) {
    return error == std::errc::invalid_argument || error == std::errc::operation_not_supported ||
           error == std::errc::function_not_supported;
}

/// A second name is never given over one that is there; where there are no second names a look must
/// do.
std::error_code movedByLink(const fs::path& from, const fs::path& to) {
    if (link(from.c_str(), to.c_str()) == 0) {
        return unlink(from.c_str()) == 0 ? std::error_code{} : lastError();
    }
    const std::error_code error = lastError();
    if (error == std::errc::file_exists || error == std::errc::no_such_file_or_directory) {
        return error;
    }
    return occupantOf(to) ? std::make_error_code(std::errc::file_exists) : renamed(from, to, 0);
}

} // namespace

std::error_code moveToFreePlace(const fs::path& from, const fs::path& to) {
    const std::error_code error = renamed(from, to, RENAME_NOREPLACE);
    return isUnknownKind(error) ? movedByLink(from, to) : error;
}

std::error_code exchange(const fs::path& staged, const fs::path& place, const fs::path& aside) {
    std::error_code error = renamed(staged, place, RENAME_EXCHANGE);
    if (!isUnknownKind(error)) {
        return error;
    }
    error = renamed(place, aside, 0);
    if (!error) {
        error = moveToFreePlace(staged, place);
    }
    return error ? error : renamed(aside, staged, 0);
}

std::error_code tidyMove(const fs::path& staged, const fs::path& place, const fs::path& aside) {
    const auto inPlace = occupantOf(place);
    if (inPlace && occupantOf(staged) == inPlace) { // its second name
        unlink(staged.c_str());
    }
    if (!occupantOf(aside)) {
        return {};
    }
    const std::error_code error = moveToFreePlace(aside, place);
    if (error == std::errc::file_exists) {
        return occupantOf(staged) ? std::error_code{} : renamed(aside, staged, 0);
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
