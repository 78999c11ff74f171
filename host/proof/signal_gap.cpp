#include "host/proof/signal_gap.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>
#include <span>

namespace korlit::host {

namespace {

constexpr std::size_t blockLength = 4096;
using Block = std::array<double, blockLength>;

/// What a conversion makes of samples.
void scale(std::span<double> samples, double factor) {
    for (double& sample : samples) {
        sample = static_cast<float>(sample * factor);
    }
}

bool haveSameBytes(const NumberView& a, const NumberView& b) {
    const std::span floats = a.floats();
    const std::span others = b.floats();
    return !floats.empty() && floats.size() == others.size() &&
           std::memcmp(floats.data(), others.data(), floats.size_bytes()) == 0;
}

void addSample(SignalGap& gap, std::size_t index, double expected, double found) {
    const double difference = std::abs(expected - found);
    const double distance =
        std::isnan(difference) ? std::numeric_limits<double>::infinity() : difference;
    ++gap.count;
    if (distance > gap.distance) {
        gap.furthest = index;
        gap.distance = distance;
        gap.expected = expected;
        gap.found = found;
    }
}

} // namespace

bool areClose(double a, double b, const Tolerance& tolerance) {
    return a == b || (std::isnan(a) && std::isnan(b)) ||
           (std::isfinite(a) && std::isfinite(b) &&
            std::abs(a - b) <= std::max(tolerance.relative * std::max(std::abs(a), std::abs(b)),
                                        tolerance.absolute));
}

bool areClose(const Value& a, const Value& b, const Tolerance& tolerance) {
    const auto* number = std::get_if<double>(&a);
    const auto* other = std::get_if<double>(&b);
    return areSame(a, b) || (!tolerance.isNone() && number != nullptr && other != nullptr &&
                             areClose(*number, *other, tolerance));
}

SignalGap gapOf(const Expectations& expectations, const NumberView& output,
                const Tolerance& tolerance) {
    SignalGap gap;
    if (expectations.signalFactor == 1 && haveSameBytes(expectations.signal, output)) {
        return gap;
    }
    const std::size_t count = std::min(expectations.signal.size(), output.size());
    Block expected{};
    Block found{};
    for (std::size_t first = 0; first < count; first += blockLength) {
        const std::size_t length = std::min(blockLength, count - first);
        expectations.signal.copy(first, std::span{expected}.first(length));
        scale(std::span{expected}.first(length), expectations.signalFactor);
        output.copy(first, std::span{found}.first(length));
        if (std::memcmp(expected.data(), found.data(), length * sizeof(double)) == 0) {
            continue;
        }
        for (std::size_t i = 0; i < length; ++i) {
            if (!areClose(Value{expected[i]}, Value{found[i]}, tolerance)) {
                addSample(gap, first + i, expected[i], found[i]);
            }
        }
    }
    return gap;
}

} // namespace korlit::host
