#include "host/command/values.h"

#include "host/data/resampling.h"
#include "host/files/extensions.h"
#include "host/plot/chart_layout.h"
#include "host/text/numbers.h"
#include "host/text/words.h"

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <optional>
#include <string_view>

namespace korlit::host {

namespace {

/// A text that is a number as a whole.
std::optional<double> numberIn(const std::string& text) {
    char* end = nullptr;
    const double number = std::strtod(text.c_str(), &end);
    return !text.empty() && *end == '\0' ? std::optional{number} : std::nullopt;
}

bool readCount(std::string_view digits, std::size_t& count) {
    const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), count);
    return error == std::errc{} && end == digits.data() + digits.size();
}

} // namespace

std::string refuseEmpty(const std::string& text) {
    return text.empty() ? "must not be empty" : "";
}

std::string refusePageName(const std::string& text) {
    return hasExtension(text, ".html") ? "" : "a page is a .html file, not " + text;
}

std::string refuseMinutes(const std::string& text) {
    const auto minutes = numberIn(text);
    return minutes && isDrawable(*minutes) ? "" : text + " is no number of minutes";
}

std::string refuseAxisEnd(const std::string& text) {
    const auto value = numberIn(text);
    return value && isDrawable(*value) ? "" : text + " is no number for an axis";
}

std::string refuseTolerance(const std::string& text) {
    const auto tolerance = numberIn(text);
    return tolerance && std::isfinite(*tolerance) && *tolerance >= 0 ? ""
                                                                     : text + " is no tolerance";
}

std::string refuseInterval(const std::string& text) {
    return text == "usual" || readIntervalMs(text) ? "" : "must be milliseconds from 1 to 32767";
}

std::string refuseChannel(const std::string& text) {
    std::size_t channel = 0;
    return readCount(text, channel) && channel > 0
               ? ""
               : text + " is no channel: they are counted from 1";
}

std::function<std::string(const std::string&)> refuseOutside(double least, double most) {
    return [=](const std::string& text) {
        const auto number = numberIn(text);
        return number && *number >= least && *number <= most
                   ? std::string{}
                   : text + " is no number from " + numberText(least) + " to " + numberText(most);
    };
}

bool readShard(const std::string& text, std::size_t& shard, std::size_t& count) {
    const std::string_view all{text};
    const std::size_t slash = all.find('/');
    return slash != std::string_view::npos && readCount(all.substr(0, slash), shard) &&
           readCount(all.substr(slash + 1), count) && shard >= 1 && shard <= count;
}

std::optional<std::int16_t> readIntervalMs(const std::string& text) {
    std::size_t ms = 0;
    return readCount(text, ms) && ms >= std::size_t{shortestIntervalMs} &&
                   ms <= std::size_t{longestIntervalMs}
               ? std::optional{static_cast<std::int16_t>(ms)}
               : std::nullopt;
}

std::string alternatives(const std::vector<std::string>& words) {
    return joined({words.begin(), words.end() - 1}, ", ") + " or " + words.back();
}

} // namespace korlit::host
