#include "host/system/moves.h"

#include <fcntl.h>
#include <stdio.h> // NOLINT(modernize-deprecated-headers): renameat2

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

} // namespace korlit::host
