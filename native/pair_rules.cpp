#include "native/pair_rules.h"

#include "platform/text.h"

#include <bit>
#include <limits>

namespace korlit {

namespace {

constexpr float minutesPerSecond = 1.0F / 60.0F;
static_assert(std::bit_cast<std::uint32_t>(minutesPerSecond) == 0x3C888889);

/// `value` units of `unitMs` milliseconds each, truncated, in the field's 16 bits. What lies beyond
/// 32 bits has no interval and gives 0.
std::int16_t intervalMs(float value, double unitMs) {
    constexpr float roundingAid = 1e-8F;
    using Limits = std::numeric_limits<std::int32_t>;
    const double interval = (double{value} + double{roundingAid}) * unitMs;
    const bool isInRange = interval > Limits::min() - 1.0 && interval < Limits::max() + 1.0;
    return isInRange ? static_cast<std::int16_t>(static_cast<std::int32_t>(interval))
                     : std::int16_t{0};
}

} // namespace

std::int32_t countIn(std::string_view text) {
    return readLong(text).value_or(0);
}

bool isMinutes(std::string_view unit) {
    std::array<char, sizeof "min"> start{};
    unit.copy(start.data(), start.size() - 1);
    _strlwr(start.data());
    return std::string_view{start.data()} == "min";
}

bool isUniform(const std::optional<std::string_view>& flag) {
    return !flag || flag->starts_with('Y') || flag->starts_with('y');
}

PairTimes pairTimes(const std::optional<std::string_view>& interval,
                    const std::optional<std::string_view>& unit) {
    if (!interval || !unit) {
        return {.intervalMs = 1, .minutesPerUnit = minutesPerSecond};
    }
    const float value = readFloat(*interval).value_or(0.0F);
    return isMinutes(*unit)
               ? PairTimes{.intervalMs = intervalMs(value, 60000.0), .minutesPerUnit = 1.0F}
               : PairTimes{.intervalMs = intervalMs(value, 1000.0),
                           .minutesPerUnit = minutesPerSecond};
}

} // namespace korlit
