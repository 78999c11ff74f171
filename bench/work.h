// One line of work, as the programs that are timed against each other take it on their command
// line.
#pragma once

#include <array>
#include <charconv>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <string>
#include <string_view>

namespace korlit::bench {

/// Files and places in them. Sizes are bytes; the input files of conversion i are STEM-i with the
/// extensions of the direction, and so are its output files.
struct Work {
    std::string direction; ///< to-pair, to-andi or run-to-andi
    std::string stem;
    std::int64_t conversions = 0;
    std::int64_t channels = 0;
    std::int64_t points = 0; ///< of a channel
    std::int64_t peaks = 0;
    std::int64_t signalIn =
        0; ///< offset of the samples in the input, of the first channel's in a run
    std::int64_t signalOut = 0;  ///< offset of the samples in the output
    std::int64_t outputSize = 0; ///< of the file that holds the samples
};

inline std::int64_t toNumber(std::string_view text) {
    std::int64_t number = 0;
    std::from_chars(text.data(), text.data() + text.size(), number);
    return number;
}

/// The words are DIRECTION STEM and the numbers in the order of the record.
inline Work readWork(std::span<char*> words) {
    constexpr std::size_t wordCount = 9;
    if (words.size() != wordCount) {
        std::fputs("wants the words of a line of work\n", stderr);
        std::exit(2);
    }
    Work work{.direction = words[0], .stem = words[1]};
    const std::array<std::int64_t*, wordCount - 2> numbers{
        &work.conversions, &work.channels,  &work.points,    &work.peaks,
        &work.signalIn,    &work.signalOut, &work.outputSize};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        *numbers[i] = toNumber(words[i + 2]);
    }
    return work;
}

inline std::string pathOf(const Work& work, std::int64_t conversion, const char* extension) {
    return work.stem + "-" + std::to_string(conversion) + extension;
}

/// The file of a channel, counted from 0.
inline std::string channelPath(const Work& work, std::int64_t conversion, std::int64_t channel) {
    return pathOf(work, conversion, "") + std::to_string(channel + 1) + ".cdf";
}

} // namespace korlit::bench
