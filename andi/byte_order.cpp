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

} // namespace

void ReverseBytes(void* number, std::int64_t size) {
    auto* bytes = static_cast<std::byte*>(number);
    std::reverse(bytes, bytes + size);
}

void ReverseBytes(void* numbers, std::int64_t size, std::int64_t count) {
    auto* bytes = static_cast<std::byte*>(numbers);
    switch (size) {
    case 2:
        return reverseEach<std::uint16_t>(bytes, count);
    case 4:
        return reverseEach<std::uint32_t>(bytes, count);
    case 8:
        return reverseEach<std::uint64_t>(bytes, count);
    default: // single bytes have no order
        return;
    }
}

} // namespace korlit
