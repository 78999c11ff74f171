#include "host/facts.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <regex>

namespace korlit::host {

namespace {

bool isCalendarDate(const std::string& year, const std::string& month, const std::string& day) {
    const std::chrono::year_month_day date{
        std::chrono::year{std::stoi(year)},
        std::chrono::month{static_cast<unsigned>(std::stoul(month))},
        std::chrono::day{static_cast<unsigned>(std::stoul(day))}};
    return date.ok();
}

bool isFirstSmaller(double a, double b) {
    return !std::isnan(a) && (std::isnan(b) || a < b);
}

bool isFirstSmallerButNan(double a, double b) {
    return !std::isnan(b) && (std::isnan(a) || a < b);
}

} // namespace

std::optional<Stamp> stampIn(const std::string& text) {
    static const std::regex pattern{R"((\d{4})(\d\d)(\d\d)([01]\d|2[0-3])([0-5]\d)([0-5]\d|60))"
                                    R"(([+-])(\d\d)([0-5]\d))"};
    std::smatch part;
    if (!std::regex_match(text, part, pattern) || !isCalendarDate(part[1], part[2], part[3])) {
        return std::nullopt;
    }
    return Stamp{.date = part[1].str() + '-' + part[2].str() + '-' + part[3].str(),
                 .time = part[4].str() + ':' + part[5].str() + ':' + part[6].str(),
                 .offset = part[7].str() + part[8].str() + ':' + part[9].str()};
}

std::optional<Extremes> extremesOf(const std::vector<double>& signal) {
    const auto lowest = std::ranges::min_element(signal, isFirstSmaller);
    const auto highest = std::ranges::max_element(signal, isFirstSmallerButNan);
    if (lowest == signal.end() || std::isnan(*lowest)) {
        return std::nullopt;
    }
    return Extremes{.minimum = static_cast<std::size_t>(lowest - signal.begin()),
                    .maximum = static_cast<std::size_t>(highest - signal.begin())};
}

bool hasTimes(const DataSet& set) {
    return set.isUniform && std::isfinite(set.samplingInterval) && set.samplingInterval > 0 &&
           std::isfinite(set.delayTime);
}

} // namespace korlit::host
