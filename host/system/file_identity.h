// Whether two paths are one file or one place, whatever names and links lead there.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

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

/// A folder that is there, and the way from it to one that isn't yet.
struct FolderPlace {
    std::optional<FileIdentity> above;
    std::string below;

    auto operator<=>(const FolderPlace&) const = default;
};

FolderPlace folderPlaceOf(std::filesystem::path folder);

/// Where a file is, or would be made.
struct FilePlace {
    FolderPlace folder;
    std::string name;

    auto operator<=>(const FilePlace&) const = default;
};

/// Links to what isn't there lead to where it would be made.
FilePlace filePlaceOf(std::filesystem::path file);

} // namespace korlit::host
