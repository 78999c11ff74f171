// The calendar record and the ANDI date-time stamp, as in 20051012083437+0200.
#pragma once

#include <cstdint>

namespace korlit {

/// Calendar fields of one moment. 0 is what a field holds that a text did not fill.
struct StampFields {
    std::uint16_t Year;
    std::uint16_t Month; ///< 1 to 12
    std::uint16_t DayOfWeek;
    std::uint16_t Day; ///< 1 to 31
    std::uint16_t Hour;
    std::uint16_t Minute;
    std::uint16_t Second;
    std::uint16_t Milliseconds;
};

/// Reads year (4 characters), month, day, hour, minute and second (2 each) from a stamp. One
/// character that is no digit may separate two fields. A field that holds no number keeps its
/// value, and so do the fields behind the text's end; what follows the seconds is not looked at.
/// Answers 1.
int ParseAndiStamp(StampFields* fields, const char* text);

/// 19 characters and the terminator.
constexpr int stampTextSize = 20;

/// Writes the stamp of a local date and time, with the zone's offset at that date, to `text`, which
/// has room for stampTextSize characters. Answers 1, or 0 with `text` as it was if the date service
/// has no such date.
int FormatAndiStamp(const StampFields* fields, char* text);

} // namespace korlit
