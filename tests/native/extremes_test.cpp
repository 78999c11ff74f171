#include "native/extremes.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

namespace korlit {
namespace {

constexpr float none = std::numeric_limits<float>::quiet_NaN();
constexpr float endless = std::numeric_limits<float>::infinity();

struct Placed {
    std::size_t index;
    float sample;
};

struct Case {
    float rest; ///< all samples but those that are placed
    std::vector<Placed> placed;
    float smallest, largest;
};

TEST(Extremes, AreThoseOfOneSampleAfterTheOther) {
    // Places in whole groups of samples, across their lanes, and in the rest behind them.
    const Case cases[]{{1.0F, {}, 1.0F, 1.0F},
                       {1.0F, {{0, 2.0F}, {299, -3.0F}}, -3.0F, 2.0F},
                       {-1.0F, {{17, -endless}, {298, endless}}, -endless, endless},
                       {1.0F, {{1, none}, {64, none}, {299, none}, {100, 5.0F}}, 1.0F, 5.0F},
                       {1.0F, {{0, none}, {100, 5.0F}}, none, none},
                       {1.0F, {{195, 0.0F}, {40, -0.0F}}, -0.0F, 1.0F},
                       {1.0F, {{40, 0.0F}, {195, -0.0F}}, 0.0F, 1.0F},
                       {-1.0F, {{195, -0.0F}, {40, 0.0F}, {299, -0.0F}}, -1.0F, 0.0F},
                       {-1.0F, {{195, 0.0F}, {40, -0.0F}}, -1.0F, -0.0F},
                       {-1.0F, {{299, 0.0F}, {290, -0.0F}}, -1.0F, -0.0F},
                       {-0.0F, {{1, 0.0F}}, -0.0F, -0.0F}};
    for (const Case& each : cases) {
        std::vector<float> samples(300, each.rest);
        for (const auto& [index, sample] : each.placed) {
            samples[index] = sample;
        }
        const auto [smallest, largest] = extremesOf(samples);
        EXPECT_EQ(std::bit_cast<std::uint32_t>(smallest),
                  std::bit_cast<std::uint32_t>(each.smallest))
            << smallest;
        EXPECT_EQ(std::bit_cast<std::uint32_t>(largest), std::bit_cast<std::uint32_t>(each.largest))
            << largest;
    }
}

TEST(Extremes, OfFewSamples) {
    EXPECT_EQ(extremesOf({}).largest, 0.0F);
    for (std::size_t count = 1; count < 140; ++count) {
        // The smallest stands first, the largest last.
        std::vector<float> samples(count, 5.0F);
        samples.front() = -7.0F;
        samples.back() = 9.0F;
        const auto [smallest, largest] = extremesOf(samples);
        EXPECT_EQ(smallest, count == 1 ? 9.0F : -7.0F) << count;
        EXPECT_EQ(largest, 9.0F) << count;
    }
}

} // namespace
} // namespace korlit
