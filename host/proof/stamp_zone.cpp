#include "host/proof/stamp_zone.h"

#include "platform/text.h"

#include <algorithm>
#include <string_view>

namespace korlit::host {

namespace {

constexpr std::size_t zonePlace = 14;
constexpr std::size_t stampLength = 19;

/// "+0200": a sign and whole quarters of an hour, from twelve hours behind GMT to fourteen ahead.
bool isZone(std::string_view text) {
    constexpr int farthestBehind = -12 * 60;
    constexpr int farthestAhead = 14 * 60;
    constexpr int quarter = 15;
    if (!text.starts_with('+') && !text.starts_with('-')) {
        return false;
    }
    if (!std::ranges::all_of(text.substr(1), isDigit)) {
        return false;
    }
    const int hours = readShort(text.substr(1, 2)).value_or(0);
    const int minutes = readShort(text.substr(3)).value_or(0);
    const int offset = (text.front() == '-' ? -1 : 1) * (hours * 60 + minutes);
    return minutes < 60 && minutes % quarter == 0 && offset >= farthestBehind &&
           offset <= farthestAhead;
}

/// Whether a stamp is another but for its zone.
bool isInOtherZone(std::string_view stamp, std::string_view other) {
    return stamp.size() == stampLength && other.size() == stampLength &&
           stamp.substr(0, zonePlace) == other.substr(0, zonePlace) &&
           isZone(other.substr(zonePlace));
}

} // namespace

void takeZone(Expectations& expected, const Reading& output) {
    const ValueKey key{.part = parts::texts, .name = "injection_date_time_stamp"};
    const auto found = std::ranges::find(output.entries, key, &Entry::key);
    const auto* stamp =
        found == output.entries.end() ? nullptr : std::get_if<std::string>(&found->value);
    for (Expectation& each : expected.values) {
        const auto* wanted = std::get_if<std::string>(&each.target);
        if (stamp != nullptr && wanted != nullptr && each.to == key &&
            isInOtherZone(*wanted, *stamp)) {
            if (const std::size_t place = each.words.find(*wanted); place != std::string::npos) {
                each.words.replace(place, wanted->size(), *stamp);
            }
            each.target = *stamp;
        }
    }
}

} // namespace korlit::host
