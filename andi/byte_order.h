// The byte order of ANDI files. Every number in them is big-endian and every host of this library
// little-endian, so each number is reversed on its way, without a test.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace korlit {

static_assert(std::endian::native == std::endian::little);

/// Reverses the `size` bytes of one number in place.
inline void ReverseBytes(void* number, std::int64_t size) {
    auto* bytes = static_cast<std::byte*>(number);
    std::reverse(bytes, bytes + size);
}

/// Reverses each of `count` numbers of `size` bytes that lie one behind the other.
void ReverseBytes(void* numbers, std::int64_t size, std::int64_t count);

} // namespace korlit
