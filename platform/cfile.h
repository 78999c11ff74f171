// A file as an object, for reading. It stands on its own, so that it can be handed to a library
// that was built apart.
#pragma once

#include "platform/descriptors.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace korlit {

/// Small reads are served from a window of the file that one call of the system brings in; large
/// ones go past it.
class CFile {
  public:
    CFile() = default;
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;
    /// Closes the file if it is open.
    ~CFile();

    /// Opens a regular file for reading. While it is open nothing in this process creates a file
    /// over it; others may use it. Answers whether it did.
    bool Open(const char* path);

    /// Reads up to `byteCount` bytes from where the last read ended. Answers the number read, fewer
    /// only at the end of the file, and -1 if the system failed. An end that was met is final: what
    /// a growing file gets behind it would be taken for other records.
    std::int64_t Read(void* target, std::int64_t byteCount);

    /// Moves on by so many bytes without reading them.
    void Skip(std::int64_t byteCount) { position += byteCount; }

    /// Bytes of the open file that are still to be read.
    [[nodiscard]] std::int64_t GetRemaining() const;

    void Close();

  private:
    std::int64_t copyHeld(std::span<std::byte> target, std::int64_t place) const;
    Transfer fetch(std::span<std::byte> target, std::int64_t place);

    static constexpr std::int64_t windowSize = 16384; // it lies on the stack of hosts
    std::array<std::byte, windowSize> window;
    std::int64_t windowStart = 0;
    std::int64_t windowLength = 0;
    int descriptor = -1;
    std::int64_t position = 0;
    bool isAtEnd = false;
};

} // namespace korlit
