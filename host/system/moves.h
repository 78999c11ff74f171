// Files that come to their place in one go.
#pragma once

#include <filesystem>
#include <system_error>

namespace korlit::host {

/// Renames a file within a file system, but never over one that is there: the error is then
/// std::errc::file_exists.
std::error_code moveToFreePlace(const std::filesystem::path& from, const std::filesystem::path& to);

/// Has the disk hold what a file contains, or the names in a folder. Throws a filesystem_error
/// where that fails.
void syncToDisk(const std::filesystem::path& path);

/// Gives a file the permissions of another, to read and write, less those that the process's mask
/// takes away.
void takePermissions(const std::filesystem::path& file, const std::filesystem::path& from);

} // namespace korlit::host
