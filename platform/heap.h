// Memory as the allocation operator gives it: blocks known by their pointer alone. Global memory
// keeps to the same blocks and the same rule for their sizes.
#pragma once

#include <cstdint>

namespace korlit {

/// The smallest byte count that is refused: 2 GiB, which no block of a 32-bit process can have.
constexpr std::int64_t blockLimit = std::int64_t{1} << 31;

/// `byteCount` zero bytes, aligned for any type. Null if the count is negative, at or above
/// blockLimit, or more than the machine has. A block of 0 bytes is a block. The caller releases it
/// with deleteBytes.
///
/// A large block takes memory from the machine only as it is filled, so that what a file announces
/// and never holds costs nothing.
void* newBytes(std::int64_t byteCount);

/// Releases a block; null is passed over.
void deleteBytes(void* block);

/// The byte count that the block was asked with.
std::int64_t byteCountOf(void* block);

/// An array of `count` zero-filled items, or null as above.
template <typename Item>
Item* newItems(std::int64_t count) {
    // NOLINTNEXTLINE(bugprone-sizeof-expression): an item may be a pointer, in a table of arrays
    return static_cast<Item*>(newBytes(count * std::int64_t{sizeof(Item)}));
}

} // namespace korlit
