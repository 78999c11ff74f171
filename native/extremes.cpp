#include "native/extremes.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstring>

namespace korlit {

namespace {

/// Samples that are compared at once. Each comparison is one of two samples, so the answer does not
/// depend on the processor that makes it.
using Lanes [[gnu::vector_size(32)]] = float;
constexpr std::size_t laneCount = sizeof(Lanes) / sizeof(float);

/// Lanes that take turns, so that no comparison has to wait for the one before.
constexpr std::size_t turnCount = 4;
constexpr std::size_t groupSize = laneCount * turnCount;
using Group = std::array<Lanes, turnCount>;

Group filledWith(float sample) {
    std::array<float, groupSize> samples;
    samples.fill(sample);
    return std::bit_cast<Group>(samples);
}

void take(Extremes& extremes, float smallest, float largest) {
    extremes.smallest = smallest < extremes.smallest ? smallest : extremes.smallest;
    extremes.largest = largest > extremes.largest ? largest : extremes.largest;
}

/// The extremes of whole groups.
[[gnu::target_clones("avx2", "default")]] void takeGroups(Extremes& extremes, const float* samples,
                                                          std::size_t groupCount) {
    Group smallest = filledWith(extremes.smallest);
    Group largest = filledWith(extremes.largest);
    for (std::size_t group = 0; group < groupCount; ++group, samples += groupSize) {
        for (std::size_t turn = 0; turn < turnCount; ++turn) {
            Lanes values;
            std::memcpy(&values, samples + turn * laneCount, sizeof values);
            smallest[turn] = values < smallest[turn] ? values : smallest[turn];
            largest[turn] = values > largest[turn] ? values : largest[turn];
        }
    }
    for (std::size_t i = 0; i < groupSize; ++i) {
        take(extremes, smallest[i / laneCount][i % laneCount],
             largest[i / laneCount][i % laneCount]);
    }
}

/// The first sample that equals `extreme`, which is the value of one.
float firstEqual(std::span<const float> samples, float extreme) {
    return *std::find(samples.begin(), samples.end(), extreme);
}

} // namespace

Extremes extremesOf(std::span<const float> samples) {
    if (samples.empty()) {
        return {.smallest = 0.0F, .largest = 0.0F};
    }
    Extremes extremes{.smallest = samples.front(), .largest = samples.front()};
    const std::size_t groupCount = samples.size() / groupSize;
    takeGroups(extremes, samples.data(), groupCount);
    for (const float sample : samples.subspan(groupCount * groupSize)) {
        take(extremes, sample, sample);
    }
    // The lanes have lost which of two equal zeros came first.
    if (extremes.smallest == 0.0F) {
        extremes.smallest = firstEqual(samples, extremes.smallest);
    }
    if (extremes.largest == 0.0F) {
        extremes.largest = firstEqual(samples, extremes.largest);
    }
    return extremes;
}

} // namespace korlit
