#include "andi/byte_order.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace korlit {
namespace {

TEST(ByteOrder, ReversesEachNumberOfAnArrayAndNothingBehind) {
    for (const std::ptrdiff_t size : {1, 2, 4, 8}) {
        // Counts that fill the processor's registers, and that leave a rest.
        for (std::ptrdiff_t count = 0; count < 70; ++count) {
            // One byte off the start of a number's place.
            std::vector<unsigned char> bytes(static_cast<std::size_t>(1 + size * count + 8));
            for (std::size_t i = 0; i < bytes.size(); ++i) {
                bytes[i] = static_cast<unsigned char>(i * 37 + 11);
            }
            std::vector<unsigned char> expected = bytes;
            for (std::ptrdiff_t i = 0; i < count; ++i) {
                const auto number = expected.begin() + 1 + i * size;
                std::reverse(number, number + size);
            }
            ReverseBytes(bytes.data() + 1, size, count);
            EXPECT_EQ(bytes, expected) << count << " numbers of " << size;
        }
    }
}

} // namespace
} // namespace korlit
