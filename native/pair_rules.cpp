#include "native/pair_rules.h"

#include "datetime/stamp.h"
#include "platform/text.h"

#include <algorithm>
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

/// Takes the digits at the start of `text` off it.
std::string_view takeDigits(std::string_view& text) {
    const auto* end = std::find_if_not(text.begin(), text.end(), isDigit);
    const std::string_view digits = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(digits.size());
    return digits;
}

} // namespace

const char* separationText(std::uint16_t type) {
    constexpr std::array<const char*, 3> kinds{"HPLC", "gel permeation chromatography",
                                               "gas chromatography"};
    return type < kinds.size() ? kinds[type] : "<unknown>";
}

PairDate pairDate(const char* stamp) {
    StampFields fields{};
    ParseAndiStamp(&fields, stamp);
    const auto field = [](std::uint16_t value) { return static_cast<short>(value); };
    PairDate texts;
    formatText(texts.date, "%02hd.%02hd.%04hd", field(fields.Day), field(fields.Month),
               field(fields.Year));
    formatText(texts.time, "%02hd:%02hd", field(fields.Hour), field(fields.Minute));
    return texts;
}

Position positionIn(std::string_view text) {
    Position position;
    position.rack = readShort(takeDigits(text)).value_or(position.rack);
    text.remove_prefix(std::min(text.find_first_of("0123456789", 1), text.size()));
    position.vial = readShort(takeDigits(text)).value_or(position.vial);
    return position;
}

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
