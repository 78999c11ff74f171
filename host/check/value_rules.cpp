#include "host/check/value_rules.h"

#include "host/check/phrases.h"
#include "host/text/numbers.h"
#include "host/text/stamps.h"
#include "native/pair_rules.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace korlit::host {

namespace {

using enum Severity;

void lookAtStamps(const Subject& subject, const RuleNotes& notes) {
    for (const char* name : stampSources) {
        const auto text = textOf(subject.image, name);
        if (text && text->empty()) {
            notes.add(Warning, std::string{name} + " is empty");
        } else if (text && !stampIn(*text)) {
            notes.add(Error, std::string{name} + " " + inQuotes(*text) +
                                 " is no date and time as YYYYMMDDhhmmss+hhmm");
        }
    }
}

void lookAtUnit(const Subject& subject, const RuleNotes& notes) {
    const auto text = textOf(subject.image, taken::retentionUnit);
    std::string unit = text.value_or("");
    _strlwr(unit.data());
    if (text && !isMinutes(unit) && !unit.starts_with("sec")) {
        notes.add(Warning, "retention_unit " + inQuotes(*text) +
                               " is neither minutes nor seconds; it counts as seconds");
    }
}

void lookAtInterval(const Subject& subject, const RuleNotes& notes) {
    const bool isThere = textOf(subject.image, taken::samplingInterval).has_value();
    const bool isGood = std::isfinite(subject.interval) && subject.interval > 0;
    if (isThere && subject.isUniform && !isGood) {
        notes.add(Error,
                  "actual_sampling_interval is " +
                      (std::isnan(subject.interval) ? "no number" : numberText(subject.interval)));
    }
}

void lookAtUniformity(const Subject& subject, const RuleNotes& notes) {
    if (subject.isUniform) {
        return;
    }
    notes.add(Error, "uniform_sampling_flag isn't Y: the file can't be converted to a pair");
    if (variableNamed(subject.image, "raw_data_retention") == nullptr) {
        notes.add(Warning, "uniform_sampling_flag isn't Y, but there is no raw_data_retention");
    }
}

struct Hits {
    std::size_t count = 0;
    std::size_t first = 0; ///< counted from 1
};

/// The indexes up to `end` on which a test is true.
template <typename Test>
Hits hitsOf(std::size_t end, const Test& test) {
    Hits hits;
    for (std::size_t i = 0; i < end; ++i) {
        if (test(i) && ++hits.count == 1) {
            hits.first = i + 1;
        }
    }
    return hits;
}

void lookAtSamples(const Subject& subject, const RuleNotes& notes) {
    const NumberView& samples = subject.samples;
    const auto [count, first] =
        hitsOf(samples.size(), [&](std::size_t i) { return !std::isfinite(samples[i]); });
    if (count > 0) {
        notes.add(Error, counted(count, "sample") + " of " + std::to_string(samples.size()) +
                             " infinite or no number, the first at point " + std::to_string(first));
    }
}

// The limits are those of the detector: a signal may stay away from them, but not go beyond.
void lookAtLimits(const Subject& subject, const RuleNotes& notes) {
    for (const auto& [name, limit, extreme, excess] : detectorLimits(subject)) {
        if (excess > 0) {
            notes.add(Warning, std::string{name} + " is " + numberText(limit) +
                                   ", but the signal goes to " + numberText(extreme));
        }
    }
}

/// One note for all peaks on which the test is true.
template <typename Test>
void noteOnPeaks(const RuleNotes& notes, std::size_t peakCount, const char* words,
                 const Test& test) {
    if (const auto [count, first] = hitsOf(peakCount, test); count > 0) {
        notes.add(Warning, counted(count, "peak") + " " + words + ", the first is peak " +
                               std::to_string(first));
    }
}

/// Whether one time is behind another by more than the rounding of floats.
bool isBehind(double time, double other) {
    constexpr double tolerance = 1e-6;
    return time - other > tolerance * std::max(std::abs(time), std::abs(other));
}

void lookAtPeakTimes(const Subject& subject, const RuleNotes& notes) {
    const auto retentions = numbersOf(variableOf(subject.image, "peak_retention_time"));
    const auto starts = numbersOf(variableOf(subject.image, "peak_start_time"));
    const auto ends = numbersOf(variableOf(subject.image, "peak_end_time"));
    const std::size_t windows = std::min(starts.size(), ends.size());
    noteOnPeaks(notes, windows, "with a start behind the end",
                [&](std::size_t i) { return isBehind(starts[i], ends[i]); });
    noteOnPeaks(notes, std::min(windows, retentions.size()),
                "with a retention time outside start and end", [&](std::size_t i) {
                    return !isBehind(starts[i], ends[i]) &&
                           (isBehind(starts[i], retentions[i]) || isBehind(retentions[i], ends[i]));
                });
}

void lookForPeaksOutside(const Subject& subject, const RuleNotes& notes) {
    const auto retentions = numbersOf(variableOf(subject.image, "peak_retention_time"));
    const auto delays = numbersOf(variableOf(subject.image, "actual_delay_time"));
    const double start = delays.empty() ? 0.0 : delays.front();
    const double length = subject.interval * static_cast<double>(subject.samples.size());
    if (subject.isUniform && length > 0) {
        noteOnPeaks(notes, retentions.size(), "with a retention time outside the run",
                    [&](std::size_t i) {
                        return isBehind(start - subject.interval, retentions[i]) ||
                               isBehind(retentions[i], start + length + subject.interval);
                    });
    }
}

constexpr std::array<Rule, 8> rulesOfValues{{
    {.id = "time-stamp", .look = lookAtStamps},
    {.id = "retention-unit", .look = lookAtUnit},
    {.id = "sampling-interval", .look = lookAtInterval},
    {.id = "not-uniform", .look = lookAtUniformity},
    {.id = "bad-sample", .look = lookAtSamples},
    {.id = "detector-limit", .look = lookAtLimits},
    {.id = "peak-times", .look = lookAtPeakTimes},
    {.id = "outside-run", .look = lookForPeaksOutside},
}};

} // namespace

std::span<const Rule> valueRules() {
    return rulesOfValues;
}

} // namespace korlit::host
