// Date-time stamps such as 20051012083437+0200, for people.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace korlit::host {

struct Stamp {
    std::string date;   ///< 2005-10-12
    std::string time;   ///< 08:34:37
    std::string offset; ///< +02:00
};

/// The parts of a stamp; nothing for a text that is none, by its form or by its calendar date, time
/// (a second may be 60) and offset (up to 14 hours).
std::optional<Stamp> stampIn(std::string_view text);

} // namespace korlit::host
