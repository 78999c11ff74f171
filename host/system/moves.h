// Files that come to their place in one go.
#pragma once

#include <filesystem>
#include <optional>
#include <system_error>

namespace korlit::host {

/// Renames a file within a file system, but never over one that is there: the error is then
/// std::errc::file_exists.
std::error_code moveToFreePlace(const std::filesystem::path& from, const std::filesystem::path& to);

/// Has two files of a file system change places. Where that can't be done in one go the second is
/// put `aside`, a free place, for a moment.
std::error_code exchange(const std::filesystem::path& staged, const std::filesystem::path& place,
                         const std::filesystem::path& aside);

/// Ends a move or an exchange of these that was cut short by a kill: each file is in one place
/// then, and none aside. Answers the error where the one that is aside can't be put back.
std::error_code tidyMove(const std::filesystem::path& staged, const std::filesystem::path& place,
                         const std::filesystem::path& aside);

/// Makes a folder and those above it that are missing. Has the disk hold their names if `isSynced`.
/// Throws a filesystem_error where that fails.
void makeFolders(const std::filesystem::path& folder, bool isSynced);

/// Has the disk hold what a file contains, or the names in a folder. Throws a filesystem_error
/// where that fails.
void syncToDisk(const std::filesystem::path& path);

/// What a file may be read and written by, less what the process's mask takes away; nothing where
/// there is none.
std::optional<std::filesystem::perms> permissionsLike(const std::filesystem::path& file);
/// Gives them to a file, where they are known and it has others.
void setPermissions(const std::filesystem::path& file,
                    const std::optional<std::filesystem::perms>& permissions);

} // namespace korlit::host
