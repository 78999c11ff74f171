// What the values of options must be.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace korlit::host {

/// What is wrong with a value; the empty text for a good one.
std::string refuseEmpty(const std::string& text);
std::string refusePageName(const std::string& text);
std::string refuseMinutes(const std::string& text);
std::string refuseAxisEnd(const std::string& text);
std::string refuseTolerance(const std::string& text);
std::string refuseInterval(const std::string& text);
std::string refuseChannel(const std::string& text);

/// The same for numbers of a range.
std::function<std::string(const std::string&)> refuseOutside(double least, double most);

/// Reads "2/5", the second of five parts. False for what is none.
bool readShard(const std::string& text, std::size_t& shard, std::size_t& count);

/// The milliseconds between samples that a pair can hold; nothing for any other text.
std::optional<std::int16_t> readIntervalMs(const std::string& text);

/// "andi, merivolta or dunvale", of two words at least.
std::string alternatives(const std::vector<std::string>& words);

} // namespace korlit::host
