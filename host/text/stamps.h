// Date-time stamps such as 20051012083437+0200, for people.
#pragma once

#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace korlit::host {

/// Its parts in digits.
struct Stamp {
    std::string year;
    std::string month;
    std::string day;
    std::string time;   ///< 08:34:37
    std::string offset; ///< +02:00

    std::string date() const { return year + '-' + month + '-' + day; }
    /// In ISO 8601.
    std::string isoText() const { return date() + 'T' + time + offset; }
};

/// The parts of a stamp; nothing for a text that is none, by its form or by its calendar date, time
/// (a second may be 60) and offset (up to 14 hours).
std::optional<Stamp> stampIn(std::string_view text);

/// The same, also of a stamp that ends ahead of its offset, which is empty then.
std::optional<Stamp> stampOrStartIn(std::string_view text);

/// A time in ISO 8601, in the zone of this machine.
std::string isoText(std::time_t time);

/// The time that such a text of any zone stands for; nothing for another text.
std::optional<std::time_t> timeIn(const std::string& isoText);

} // namespace korlit::host
