#include "host/proof/trip.h"

#include "andi/chromatography_template.h"
#include "host/text/words.h"

#include <map>
#include <memory>
#include <set>
#include <utility>
#include <vector>

namespace korlit::host {

namespace {

bool isChange(const Expectation& step) {
    return step.rule != nullptr && !isNote(step);
}

Expectation composed(const Expectation& first, const Expectation& second) {
    Expectation both{.from = first.from,
                     .source = first.source,
                     .to = second.to,
                     .target = second.target,
                     .rule = isChange(second) || first.rule == nullptr ? second.rule : first.rule};
    both.words = joined(
        {isChange(first) ? changeWords(first) : "", isChange(second) ? changeWords(second) : ""},
        "; then ");
    return both;
}

Expectation composedSignal(const Expectation& first, const Expectation& second) {
    return {.rule = first.rule == nullptr ? second.rule : first.rule,
            .words = joined({first.words, second.words}, "; then ")};
}

using ByKey = std::map<ValueKey, const Expectation*>;

/// The values that aren't there in between: left out by the first step or made by the second.
void addRest(Expectations& both, const Expectations& first, const Expectations& second) {
    ByKey leftOut;
    for (const Expectation& each : first.values) {
        if (each.from && !each.to) {
            leftOut.emplace(*each.from, &each);
        }
    }
    for (const Expectation& each : second.values) {
        if (each.from) {
            continue;
        }
        const auto lost = each.to ? leftOut.find(*each.to) : leftOut.end();
        both.values.push_back(lost == leftOut.end() ? each : composed(*lost->second, each));
        if (lost != leftOut.end()) {
            leftOut.erase(lost);
        }
    }
    for (const auto& [key, each] : leftOut) {
        both.values.push_back(*each);
    }
}

/// Leaves out of the list what was only there in between, and what another value keeps.
void dropPassing(Expectations& both) {
    std::set<ValueKey> kept;
    for (const Expectation& each : both.values) {
        if (each.from && each.to) {
            kept.insert(*each.from);
        }
    }
    std::erase_if(both.values, [&](const Expectation& each) {
        return !each.to && (!each.from || kept.contains(*each.from));
    });
}

Memory joined(Memory first, const Memory& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

/// The samples as the output has them.
void setSignal(Reading& reading, const Expectations& expectations) {
    reading.signal = expectations.signal;
    reading.memory = expectations.memory;
    if (expectations.signalFactor == 1) {
        return;
    }
    const auto samples = std::make_shared<std::vector<float>>();
    samples->reserve(expectations.signal.size());
    for (std::size_t i = 0; i < expectations.signal.size(); ++i) {
        samples->push_back(
            inDetectorUnit(static_cast<float>(expectations.signal[i]), expectations.signalFactor));
    }
    reading.signal = {AndiType::Float, samples->data(), samples->size()};
    reading.memory.push_back(samples);
}

Expectations expectedBehindTrip(const Reading& source, const std::string& sliceFile) {
    if (source.kind == FileKind::Andi) {
        const Expectations pair = expectedOfPair(source);
        return composed(pair, expectedOfAndi(readingOf(pair), sliceFile));
    }
    const Expectations andi = expectedOfAndi(source, sliceFile);
    return composed(andi, expectedOfPair(readingOf(andi)));
}

} // namespace

Reading readingOf(const Expectations& expectations) {
    Reading reading;
    reading.kind = expectations.kind;
    setSignal(reading, expectations);
    for (const Expectation& each : expectations.values) {
        if (each.to && !std::holds_alternative<std::monostate>(each.target)) {
            reading.entries.push_back({.key = *each.to, .value = each.target});
        }
    }
    return reading;
}

Expectations composed(const Expectations& first, const Expectations& second) {
    ByKey inBetween;
    for (const Expectation& each : first.values) {
        if (each.to) {
            inBetween.emplace(*each.to, &each);
        }
    }
    Expectations both{.kind = second.kind,
                      .values = {},
                      .signal = second.signal,
                      .memory = joined(first.memory, second.memory),
                      .signalFactor = second.signalFactor,
                      .signalChange = composedSignal(first.signalChange, second.signalChange)};
    for (const Expectation& each : second.values) {
        if (const auto before = each.from ? inBetween.find(*each.from) : inBetween.end();
            before != inBetween.end()) {
            both.values.push_back(composed(*before->second, each));
        }
    }
    addRest(both, first, second);
    dropPassing(both);
    return both;
}

Expectations expectedBehindTrips(const Reading& source, const std::string& sliceFile, int count) {
    Expectations expected = expectedBehindTrip(source, sliceFile);
    for (int trip = 2; trip <= count; ++trip) {
        expected = composed(expected, expectedBehindTrip(readingOf(expected), sliceFile));
    }
    return expected;
}

} // namespace korlit::host
