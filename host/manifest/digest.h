// The SHA-256 of files, by which they are known again.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace korlit::host {

struct FileDigest {
    std::int64_t size = 0;
    std::string sha256; ///< in hexadecimal

    bool operator==(const FileDigest&) const = default;
};

/// Reads a file from its first byte to its last; nothing where that can't be done.
std::optional<FileDigest> digestOf(const std::filesystem::path& file);

/// Of a text, as bytes.
std::array<std::uint8_t, 32> sha256Of(std::string_view text);

} // namespace korlit::host
