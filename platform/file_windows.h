// Two stretches of a file in memory: bytes that were read, or that are still to be written. All of
// it is arithmetic on places and sizes: what has to be read or written is answered, and done by
// whoever holds the file.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace korlit {

/// Bytes, and their place in the file.
struct Stretch {
    std::int64_t place = 0;
    std::span<const std::byte> bytes;
};

/// What is to be written out, in this order, that of its gathering; an empty stretch is none. The
/// bytes are the windows' own, until something is gathered.
using Stretches = std::array<Stretch, 2>;

/// A file is either read or written; `clear` comes first in both cases.
class FileWindows {
  public:
    /// The bytes of one window. Transfers of so many go past the windows.
    static constexpr std::int64_t size = 65536;

    /// Nothing is held.
    void clear();

    /// Takes bytes at a place, as far as the windows hold them. Answers how many.
    std::int64_t take(std::int64_t place, std::span<std::byte> target);
    /// A window for what is read at a place, to be filled from its start; `hold` says how far.
    std::span<std::byte> renew(std::int64_t place);
    void hold(std::int64_t byteCount);

    /// Makes room for up to `size` bytes at a place, which `gather` then puts there. Answers what
    /// must be written out between the two.
    Stretches makeRoom(std::int64_t place, std::int64_t byteCount);
    void gather(std::int64_t place, std::span<const std::byte> source);

    /// Lets go of all that is gathered, and answers it.
    Stretches giveAll();

  private:
    struct Window {
        std::int64_t start = 0;
        std::int64_t length = 0;
        std::array<std::byte, size> bytes;

        std::int64_t end() const { return start + length; }
        bool adjoins(std::int64_t place, std::int64_t byteCount) const;
        bool overlaps(std::int64_t place, std::int64_t byteCount) const;
        Stretch give();
    };

    std::int64_t takeFromLatest(std::int64_t place, std::span<std::byte> target);
    Window& latestWindow() { return windows[latest]; }
    Window& otherWindow() { return windows[1 - latest]; }

    // A header and the data far behind it are read, and written, by turns.
    std::array<Window, 2> windows;
    std::size_t latest = 0; ///< the window that was used last
};

} // namespace korlit
