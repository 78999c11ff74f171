// Texts and numbers of a file as the commands print them.
#pragma once

#include <nlohmann/json.hpp>

#include <cstddef>
#include <string>
#include <string_view>

namespace korlit::host {

/// With the keys in the order in which they were added.
using Json = nlohmann::ordered_json;

/// A file's text as UTF-8: as it stands where it is that, else taken for Latin-1.
std::string utf8Of(std::string_view text);

/// The same for a line on a terminal: what would steer it, or turn the direction of its text, is
/// replaced by U+FFFD.
std::string printable(std::string_view text);

/// How many characters a printable text has.
std::size_t widthOf(std::string_view text);

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

/// What numberText, timeText and roundedText have, in JSON; null for what is no number there.
Json numberJson(double number);
Json timeJson(double time);
Json roundedJson(double number);

/// One line in ASCII.
std::string lineOf(const Json& value);

/// Tells on standard error why a file failed.
void printFailure(const std::string& file, const std::string& words);

/// Throws a runtime_error where standard output hasn't taken all that was printed.
void finishOutput();

} // namespace korlit::host
