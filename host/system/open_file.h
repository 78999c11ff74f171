// A file's bytes at any place.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>

namespace korlit::host {

/// All calls throw a filesystem_error with its path where the system fails.
class OpenFile {
  public:
    enum class Use : std::uint8_t { Read, Change };

    OpenFile(const std::filesystem::path& path, Use use);
    OpenFile(const OpenFile&) = delete;
    OpenFile& operator=(const OpenFile&) = delete;
    ~OpenFile();

    std::int64_t size() const;
    /// Reads as many bytes as there are; answers how many.
    std::int64_t read(std::int64_t place, std::span<std::byte> target) const;
    void write(std::int64_t place, std::span<const std::byte> bytes) const;
    /// Moves all that lies from `place` on by `distance`, the end of the file with it.
    void moveRest(std::int64_t place, std::int64_t distance) const;

  private:
    [[noreturn]] void fail() const;

    std::filesystem::path path;
    int descriptor;
};

} // namespace korlit::host
