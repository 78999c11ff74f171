#include "host/manifest/outline.h"

#include "host/data/facts.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace korlit::host {

namespace {

constexpr std::size_t stretchLimit = 150;

/// Where a stretch of `count` things begins, when `total` are shared out.
std::size_t begin(std::size_t stretch, std::size_t count, std::size_t total) {
    return static_cast<std::size_t>(static_cast<double>(total) * static_cast<double>(stretch) /
                                    static_cast<double>(count));
}

} // namespace

Outline outlineOf(const NumberView& signal) {
    const auto all = extremesOf(signal, isFinite);
    const std::size_t count = std::min(stretchLimit, signal.size());
    Outline outline(2 * count, outlineGap);
    if (!all) {
        return outline;
    }
    const double lowest = signal[all->minimum];
    // Halved, so that the widest range has a length.
    const double halfRange = signal[all->maximum] / 2 - lowest / 2;
    const auto scaled = [&](double sample) {
        return static_cast<std::int16_t>(
            halfRange > 0 ? std::lround((sample / 2 - lowest / 2) / halfRange * outlineTop) : 0);
    };
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t first = begin(i, count, signal.size());
        const NumberView part = signal.part(first, begin(i + 1, count, signal.size()) - first);
        if (const auto extremes = extremesOf(part, isFinite)) {
            outline[2 * i] = scaled(part[extremes->minimum]);
            outline[2 * i + 1] = scaled(part[extremes->maximum]);
        }
    }
    return outline;
}

Outline thinned(const Outline& outline, std::size_t stretches) {
    const std::size_t had = outline.size() / 2;
    const std::size_t count = std::min(stretches, had);
    Outline result;
    for (std::size_t i = 0; i < count; ++i) {
        std::int16_t least = outlineGap;
        std::int16_t greatest = outlineGap;
        for (std::size_t each = begin(i, count, had); each < begin(i + 1, count, had); ++each) {
            if (outline[2 * each] != outlineGap) {
                least =
                    least == outlineGap ? outline[2 * each] : std::min(least, outline[2 * each]);
                greatest = std::max(greatest, outline[2 * each + 1]);
            }
        }
        result.insert(result.end(), {least, greatest});
    }
    return result;
}

} // namespace korlit::host
