// Whether two paths are one file, whatever names and links lead to it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace korlit::host {

struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;

    auto operator<=>(const FileIdentity&) const = default;
};

/// Of the file or folder that a path leads to; nothing where there is none.
std::optional<FileIdentity> identityOf(const std::filesystem::path& path);

/// What stands at a place: which file, or which link itself, and when it was last changed.
struct Occupant {
    FileIdentity identity;
    std::int64_t changed = 0; ///< ns since 1970

    auto operator<=>(const Occupant&) const = default;
};

/// Nothing where the place is free.
std::optional<Occupant> occupantOf(const std::filesystem::path& place);

} // namespace korlit::host
