// What the commands print as JSON. The library behind it takes long to compile: only what makes
// JSON includes this.
#pragma once

#include <nlohmann/json.hpp>

#include <string>

namespace korlit::host {

/// With the keys in the order in which they were added.
using Json = nlohmann::ordered_json;

/// What numberText, timeText and roundedText have, in JSON; null for what is no number there.
Json numberJson(double number);
Json timeJson(double time);
Json roundedJson(double number);

/// Adds the bytes of a path in hexadecimal, as KEY_bytes, where it isn't UTF-8: its text under KEY
/// alone couldn't be opened.
void addPathBytes(Json& object, const std::string& key, const std::string& path);

/// A line for a file of which nothing can be told but why.
std::string failureLine(const std::string& file, const std::string& reason);

/// The path that stands under KEY, or its bytes.
std::string pathIn(const Json& object, const std::string& key);

/// One line in UTF-8. What would steer a terminal is escaped.
std::string jsonLine(const Json& value);

} // namespace korlit::host
