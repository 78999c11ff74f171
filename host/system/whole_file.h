// Files that come to their place only when they are complete.
#pragma once

#include <filesystem>
#include <functional>
#include <ostream>

namespace korlit::host {

/// Has `write` fill a file, which then replaces one of that name. Whoever may not use the one that
/// it replaces may not use it either, and `most` are its permissions at most. Throws a
/// filesystem_error with the system's reason where that fails, and the old one stays.
void writeWhole(const std::filesystem::path& file, std::filesystem::perms most,
                const std::function<void(std::ostream&)>& write);

/// What is left of permissions for a file that tells something of `file`: its owner may use it, and
/// of all others those who may use `file` too. All are left where there is none.
std::filesystem::perms narrowedTo(const std::filesystem::path& file,
                                  std::filesystem::perms permissions);

} // namespace korlit::host
