#include "andi/byte_order.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace korlit {

namespace {

std::uint16_t reversed(std::uint16_t number) {
    return __builtin_bswap16(number);
}
std::uint32_t reversed(std::uint32_t number) {
    return __builtin_bswap32(number);
}
std::uint64_t reversed(std::uint64_t number) {
    return __builtin_bswap64(number);
}

template <typename Number>
void reverseEach(std::byte* numbers, std::int64_t count) {
    for (std::int64_t i = 0; i < count; ++i) {
        Number number{};
        std::byte* place = numbers + i * static_cast<std::int64_t>(sizeof number);
        std::memcpy(&number, place, sizeof number);
        number = reversed(number);
        std::memcpy(place, &number, sizeof number);
    }
}

/// The compiler makes this twice and the program takes the one that suits the processor.
[[gnu::target_clones("avx2", "default")]] void reverseArray(std::byte* numbers, std::int64_t size,
                                                            std::int64_t count) {
    switch (size) {
    case 2:
        return reverseEach<std::uint16_t>(numbers, count);
    case 4:
        return reverseEach<std::uint32_t>(numbers, count);
    case 8:
        return reverseEach<std::uint64_t>(numbers, count);
    default: // single bytes have no order
        return;
    }
}

} // namespace

void ReverseBytes(void* numbers, std::int64_t size, std::int64_t count) {
    reverseArray(static_cast<std::byte*>(numbers), size, count);
}

} // namespace korlit
