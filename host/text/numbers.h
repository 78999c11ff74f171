// Numbers of a file as the commands print them.
#pragma once

#include <cstdint>
#include <string>

namespace korlit::host {

/// Appends the fewest digits that come back as the same float, or as the same double where the
/// number is no float.
void appendNumber(std::string& line, double number);

/// Appends the time of a sample with ten digits: a float can't tell the samples of a long run
/// apart.
void appendSampleTime(std::string& line, double minutes);

/// A number as appendNumber appends it. A time, which may be worked out from a float in another
/// unit, has the digits of a float too.
std::string numberText(double number);
std::string timeText(double time);

/// Six digits, for people, or all that stand ahead of the point.
std::string roundedText(double number);
/// With three decimals.
std::string threeDecimals(double number);

/// A count with a comma ahead of each three digits: "21,508".
std::string groupedDigits(std::int64_t count);

} // namespace korlit::host
