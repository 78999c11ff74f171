// Files that come to their place in one go.
#pragma once

#include <filesystem>
#include <system_error>

namespace korlit::host {

/// Renames a file within a file system, but never over one that is there: the error is then
/// std::errc::file_exists.
std::error_code moveToFreePlace(const std::filesystem::path& from, const std::filesystem::path& to);

} // namespace korlit::host
