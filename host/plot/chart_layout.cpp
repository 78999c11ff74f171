#include "host/plot/chart_layout.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace korlit::host {

namespace {

constexpr double nothing = -std::numeric_limits<double>::infinity();

/// Negative powers of ten have no exact double.
double timesPower(double number, int exponent) {
    return exponent < 0 ? number / std::pow(10.0, -exponent) : number * std::pow(10.0, exponent);
}

/// A power of ten with which values have few digits, a multiple of three; 0 where they have few.
int namedExponentFor(const Range& range) {
    const double size = std::max(std::abs(range.from), std::abs(range.to));
    if (size == 0 || (size >= 1e-2 && size < 1e6)) {
        return 0;
    }
    return static_cast<int>(std::floor(std::log10(size) / 3)) * 3;
}

/// y of the straight line through two points.
double heightBetween(const LinePoint& left, const LinePoint& right, double x) {
    if (x == left.x) {
        return left.y;
    }
    return x == right.x ? right.y
                        : left.y + (right.y - left.y) * ((x - left.x) / (right.x - left.x));
}

/// The samples of one column, from `from` up to before `to`.
void addColumn(std::vector<std::size_t>& chosen, const NumberView& samples, std::size_t from,
               std::size_t to) {
    std::size_t lowest = to;
    std::size_t highest = to;
    std::size_t gap = to;
    for (std::size_t i = from; i < to; ++i) {
        if (!isDrawable(samples[i])) {
            gap = std::min(gap, i);
            continue;
        }
        lowest = lowest == to || samples[i] < samples[lowest] ? i : lowest;
        highest = highest == to || samples[i] > samples[highest] ? i : highest;
    }
    std::array<std::size_t, 5> picked{from, lowest, highest, gap, to - 1};
    std::ranges::sort(picked);
    std::copy_if(picked.begin(), std::unique(picked.begin(), picked.end()),
                 std::back_inserter(chosen), [to](std::size_t sample) { return sample < to; });
}

/// The centres nearest to the anchors that keep a label's thickness from each other. Seen without
/// the thicknesses that lie between them, centres need only be in order, and what is out of order
/// meets at its mean.
std::vector<double> spread(std::span<const double> anchors, const Range& bounds) {
    struct Block {
        double sum;
        std::size_t count;
        double mean() const { return sum / static_cast<double>(count); }
    };
    std::vector<Block> blocks;
    for (std::size_t i = 0; i < anchors.size(); ++i) {
        blocks.push_back({anchors[i] - static_cast<double>(i) * labelThickness, 1});
        while (blocks.size() > 1 && blocks[blocks.size() - 2].mean() >= blocks.back().mean()) {
            const Block last = blocks.back();
            blocks.pop_back();
            blocks.back().sum += last.sum;
            blocks.back().count += last.count;
        }
    }
    const double first = bounds.from + labelThickness / 2;
    const double last = bounds.to - static_cast<double>(anchors.size()) * labelThickness;
    std::vector<double> centres;
    for (const Block& block : blocks) {
        const double place = std::max(first, std::min(block.mean(), last + labelThickness / 2));
        for (std::size_t i = 0; i < block.count; ++i) {
            centres.push_back(place + static_cast<double>(centres.size()) * labelThickness);
        }
    }
    return centres;
}

double largestMove(std::span<const double> anchors, std::span<const double> centres) {
    double largest = 0;
    for (std::size_t i = 0; i < anchors.size(); ++i) {
        largest = std::max(largest, std::abs(centres[i] - anchors[i]));
    }
    return largest;
}

/// The end of the group of labels, side by side, that begins with `first`.
std::size_t endOfGroup(std::span<const double> centres, std::size_t first) {
    constexpr double tolerance = 0.5;
    std::size_t end = first + 1;
    while (end < centres.size() && centres[end] - centres[end - 1] < labelThickness + tolerance) {
        ++end;
    }
    return end;
}

/// How high leaders are slanted so that they can be told from each other.
double elbowFor(double move) {
    constexpr double invisibleMove = 1;
    constexpr double slope = 0.35;
    constexpr double lowest = 12;
    constexpr double highest = 60;
    return move > invisibleMove ? std::clamp(move * slope, lowest, highest) : 0;
}

} // namespace

bool isDrawable(double value) {
    return std::abs(value) < std::numeric_limits<double>::max() / 1e6;
}

bool isGap(const LinePoint& point) {
    return std::isnan(point.y);
}

Range widened(const Range& range) {
    constexpr double narrowest = 1e-9; // of the values themselves
    constexpr double smallest = 1e-290;
    const double size = std::max(std::abs(range.from), std::abs(range.to));
    if (range.length() > size * narrowest && range.length() > smallest) {
        return range;
    }
    const double margin = size > smallest ? size / 2 : 1.0;
    return {.from = range.from - margin, .to = range.to + margin};
}

double Ticks::step() const {
    return timesPower(mantissa, exponent);
}

double Ticks::value(int index) const {
    return timesPower(static_cast<double>((first + index) * mantissa), exponent);
}

std::string Ticks::text(int index) const {
    const int shown = exponent - namedExponent;
    const double number = timesPower(static_cast<double>((first + index) * mantissa), shown);
    std::array<char, 64> digits{};
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                            std::chars_format::fixed, std::max(0, -shown));
    return error == std::errc{} ? std::string{digits.data(), end} : "";
}

Ticks ticksFor(const Range& range, int most) {
    constexpr std::array<int, 3> mantissas{1, 2, 5};
    constexpr double tolerance = 1e-6; // in steps, for what comes from floats
    const double least = range.length() / std::max(1, most);
    Ticks ticks{.exponent = static_cast<int>(std::floor(std::log10(least))),
                .namedExponent = namedExponentFor(range)};
    const auto isWide = [&](int mantissa) {
        ticks.mantissa = mantissa;
        return ticks.step() >= least * (1 - tolerance);
    };
    if (std::ranges::find_if(mantissas, isWide) == mantissas.end()) {
        ticks.mantissa = 1;
        ++ticks.exponent;
    }
    ticks.first = std::llround(std::ceil(range.from / ticks.step() - tolerance));
    const auto last = std::llround(std::floor(range.to / ticks.step() + tolerance));
    ticks.count = static_cast<int>(last - ticks.first + 1);
    return ticks;
}

std::vector<std::size_t> samplesToDraw(const NumberView& samples, std::size_t columns) {
    constexpr std::size_t mostOfColumn = 5;
    std::vector<std::size_t> chosen;
    if (samples.size() <= columns * mostOfColumn) {
        columns = samples.size();
    }
    for (std::size_t column = 0; column < columns; ++column) {
        addColumn(chosen, samples, samples.size() * column / columns,
                  samples.size() * (column + 1) / columns);
    }
    return chosen;
}

double highestWithin(std::span<const LinePoint> line, const Range& range) {
    double highest = nothing;
    for (const LinePoint& point : cutTo(line, range)) {
        highest = point.y > highest ? point.y : highest;
    }
    return highest;
}

std::vector<LinePoint> cutTo(std::span<const LinePoint> line, const Range& range) {
    const auto first = std::ranges::lower_bound(line, range.from, {}, &LinePoint::x);
    const auto last = std::ranges::upper_bound(line, range.to, {}, &LinePoint::x);
    std::vector<LinePoint> part;
    const auto addCut = [&](auto right, double x) {
        if (right != line.begin() && right != line.end()) {
            part.push_back({.x = x, .y = heightBetween(*std::prev(right), *right, x)});
        }
    };
    if (first != line.end() && first->x > range.from) {
        addCut(first, range.from);
    }
    part.insert(part.end(), first, last);
    if (last != line.begin() && std::prev(last)->x < range.to) {
        addCut(last, range.to);
    }
    return part;
}

double farthestMove(const Range& bounds) {
    constexpr double atLeast = 80;
    return std::max(atLeast, bounds.length() / 3);
}

std::vector<std::size_t> labelsWithRoom(std::span<const double> anchors, const Range& bounds) {
    std::vector<std::size_t> taken;
    std::vector<double> takenAnchors;
    for (std::size_t i = 0; i < anchors.size(); ++i) {
        const auto place = std::ranges::upper_bound(takenAnchors, anchors[i]);
        const auto rank = place - takenAnchors.begin();
        takenAnchors.insert(place, anchors[i]);
        const bool isFull =
            static_cast<double>(takenAnchors.size()) * labelThickness > bounds.length();
        if (isFull ||
            largestMove(takenAnchors, spread(takenAnchors, bounds)) > farthestMove(bounds)) {
            takenAnchors.erase(takenAnchors.begin() + rank);
        } else {
            taken.insert(taken.begin() + rank, i);
        }
    }
    return taken;
}

std::vector<LabelPlace> placeLabels(std::span<const Label> labels, const Range& bounds,
                                    const std::function<double(const Range&)>& highest) {
    std::vector<double> anchors;
    for (const Label& label : labels) {
        anchors.push_back(label.anchor);
    }
    const std::vector<double> centres = spread(anchors, bounds);
    const auto highestBelow = [&](std::size_t first, std::size_t last) {
        double base = highest({.from = centres[first] - labelThickness / 2,
                               .to = centres[last] + labelThickness / 2});
        for (const Label& label : labels.subspan(first, last + 1 - first)) {
            base = std::max(base, label.leastBase);
        }
        return base;
    };
    std::vector<LabelPlace> places;
    while (places.size() < centres.size()) {
        const std::size_t first = places.size();
        const std::size_t end = endOfGroup(centres, first);
        const double elbow = elbowFor(largestMove(std::span{anchors}.subspan(first, end - first),
                                                  std::span{centres}.subspan(first, end - first)));
        const double groupBase = highestBelow(first, end - 1);
        for (std::size_t i = first; i < end; ++i) {
            places.push_back({.centre = centres[i],
                              .base = elbow > 0 ? groupBase : highestBelow(i, i),
                              .elbow = elbow});
        }
    }
    return places;
}

Range valuesToShow(const Range& signal, std::span<const Label> labels,
                   std::span<const LabelPlace> places, double height) {
    constexpr double margin = 0.04; // of the signal, above and below
    const Range values = widened(signal);
    const double bottom = values.from - values.length() * margin;
    double scale = (values.length() * (1 + 2 * margin)) / height; // values per point
    for (std::size_t i = 0; i < places.size(); ++i) {
        const double room = height - labels[i].length - places[i].clearance() - labelClearance;
        scale = std::max(scale, (places[i].base - bottom) / std::max(room, 1.0));
    }
    return {.from = bottom, .to = bottom + scale * height};
}

} // namespace korlit::host
