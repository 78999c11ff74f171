#include "host/compare/differences.h"

#include "host/data/facts.h"
#include "host/text/numbers.h"
#include "host/text/utf8.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

namespace korlit::host {

namespace {

constexpr double timeTolerance = 1e-6;

using Differences = std::vector<Difference>;

/// What stands on one side, in words and as a value; null where nothing does.
struct Told {
    std::string words;
    Json json;
};

Told toldOf(std::size_t count) {
    return {.words = std::to_string(count), .json = count};
}

Told toldOf(const std::string& text) {
    return {.words = '"' + printable(text) + '"', .json = utf8Of(text)};
}

Told toldOf(double number) {
    return {.words = numberText(number), .json = numberJson(number)};
}

Told toldMinutes(double minutes) {
    return {.words = timeText(minutes) + " min", .json = timeJson(minutes)};
}

Difference onBothSides(const char* part, const std::string& subject, const Told& a, const Told& b) {
    return {.words = std::string{part} + ": " + subject + ": A " + a.words + ", B " + b.words,
            .json = {{"part", part}, {"subject", subject}, {"a", a.json}, {"b", b.json}}};
}

Difference onOneSide(const char* part, const std::string& subject, bool isInA) {
    return {.words = std::string{part} + ": " + subject + ": only in " + (isInA ? "A" : "B"),
            .json = {{"part", part}, {"subject", subject}, {"only_in", isInA ? "a" : "b"}}};
}

/// A difference that is one of a certain peak.
Difference ofPeak(Difference difference, std::size_t index) {
    const std::string number = std::to_string(index + 1);
    difference.words.replace(0, difference.words.find(':'), "peak " + number);
    difference.json["peak"] = index + 1;
    return difference;
}

bool areTimesEqual(double a, double b, const Comparison& comparison) {
    Tolerance tolerance = comparison.tolerance;
    tolerance.relative = std::max(tolerance.relative, timeTolerance);
    return areClose(a, b, tolerance);
}

// ---- The signal

struct SampleGap {
    std::size_t count = 0;    ///< of samples that differ
    std::size_t furthest = 0; ///< index of those furthest apart
    double distance = -1;     ///< between them; infinite if only one of them is a number
};

SampleGap gapOf(const DataSet& a, const DataSet& b, const Tolerance& tolerance) {
    SampleGap gap;
    const std::size_t count = std::min(a.signal.size(), b.signal.size());
    for (std::size_t i = 0; i < count; ++i) {
        if (areClose(a.signal[i], b.signal[i], tolerance)) {
            continue;
        }
        const double difference = std::abs(a.signal[i] - b.signal[i]);
        const double distance =
            std::isnan(difference) ? std::numeric_limits<double>::infinity() : difference;
        ++gap.count;
        if (distance > gap.distance) {
            gap.distance = distance;
            gap.furthest = i;
        }
    }
    return gap;
}

Difference sampleDifference(const DataSet& a, const DataSet& b, const SampleGap& gap) {
    const std::size_t sample = gap.furthest;
    const std::size_t compared = std::min(a.signal.size(), b.signal.size());
    const std::string time = hasTimes(a) ? " (" + roundedText(a.timeOf(sample)) + " min)" : "";
    const std::string words = "samples that differ: " + std::to_string(gap.count) + " of " +
                              std::to_string(compared) + ", the most at sample " +
                              std::to_string(sample) + time + " by " + roundedText(gap.distance);
    Difference difference =
        onBothSides("signal", words, toldOf(a.signal[sample]), toldOf(b.signal[sample]));
    difference.json["subject"] = "samples";
    difference.json["count"] = gap.count;
    difference.json["sample"] = sample;
    difference.json["time_min"] = hasTimes(a) ? timeJson(a.timeOf(sample)) : Json{};
    difference.json["distance"] = numberJson(gap.distance);
    return difference;
}

void compareSignals(Differences& found, const DataSet& a, const DataSet& b,
                    const Comparison& comparison) {
    constexpr const char* part = "signal";
    if (a.signal.size() != b.signal.size()) {
        found.push_back(
            onBothSides(part, "points", toldOf(a.signal.size()), toldOf(b.signal.size())));
    }
    if (a.isUniform != b.isUniform) {
        const auto flag = [](bool isUniform) { return toldOf(std::string{isUniform ? "Y" : "N"}); };
        found.push_back(
            onBothSides(part, "uniform_sampling_flag", flag(a.isUniform), flag(b.isUniform)));
    }
    constexpr std::array<std::pair<const char*, double DataSet::*>, 2> times{
        {{"actual_sampling_interval", &DataSet::samplingInterval},
         {"actual_delay_time", &DataSet::delayTime}}};
    for (const auto& [name, time] : times) {
        if (!areTimesEqual(a.*time, b.*time, comparison)) {
            found.push_back(onBothSides(part, name, toldMinutes(a.*time), toldMinutes(b.*time)));
        }
    }
    if (const SampleGap gap = gapOf(a, b, comparison.tolerance); gap.count > 0) {
        found.push_back(sampleDifference(a, b, gap));
    }
}

// ---- The peaks

bool isThere(const std::optional<double>& value) {
    return value.has_value();
}

bool isThere(const std::string& value) {
    return !value.empty();
}

template <typename Value>
bool hasColumn(const DataSet& set, Value Peak::*column) {
    return std::ranges::any_of(set.peaks, [&](const Peak& peak) { return isThere(peak.*column); });
}

/// True if both data sets have a column; one that a side lacks is told, once for all peaks.
template <typename Value>
bool isInBoth(Differences& found, const DataSet& a, const DataSet& b, const std::string& name,
              Value Peak::*column) {
    const bool isInA = hasColumn(a, column);
    const bool isInB = hasColumn(b, column);
    if (isInA != isInB) {
        found.push_back(onOneSide("peaks", name, isInA));
    }
    return isInA && isInB;
}

struct PeakText {
    const char* name;
    std::string Peak::*value;
};
constexpr std::array<PeakText, 3> peakTexts{{
    {.name = "peak_name", .value = &Peak::name},
    {.name = "peak_start_detection_code", .value = &Peak::startCode},
    {.name = "peak_stop_detection_code", .value = &Peak::stopCode},
}};

void compareNumbers(Differences& found, const PeakNumber& number, const std::optional<double>& a,
                    const std::optional<double>& b, const Comparison& comparison) {
    if (a.has_value() != b.has_value()) {
        found.push_back(onOneSide("peaks", number.name, a.has_value()));
    } else if (a && number.isTime && !areTimesEqual(*a, *b, comparison)) {
        found.push_back(onBothSides("peaks", number.name, toldMinutes(*a), toldMinutes(*b)));
    } else if (a && !number.isTime && !areClose(*a, *b, comparison.tolerance)) {
        found.push_back(onBothSides("peaks", number.name, toldOf(*a), toldOf(*b)));
    }
}

struct SharedColumns {
    std::vector<PeakText> texts;
    std::vector<PeakNumber> numbers;
};

SharedColumns sharedColumns(Differences& found, const DataSet& a, const DataSet& b) {
    SharedColumns shared;
    for (const PeakText& text : peakTexts) {
        if (isInBoth(found, a, b, text.name, text.value)) {
            shared.texts.push_back(text);
        }
    }
    for (const PeakNumber& number : peakNumbers()) {
        if (isInBoth(found, a, b, number.name, number.value)) {
            shared.numbers.push_back(number);
        }
    }
    return shared;
}

void comparePeaks(Differences& found, const DataSet& a, const DataSet& b,
                  const Comparison& comparison) {
    if (a.peaks.size() != b.peaks.size()) {
        found.push_back(
            onBothSides("peaks", "count", toldOf(a.peaks.size()), toldOf(b.peaks.size())));
    }
    if (a.peaks.empty() || b.peaks.empty()) {
        return;
    }
    const SharedColumns shared = sharedColumns(found, a, b);
    for (std::size_t i = 0; i < std::min(a.peaks.size(), b.peaks.size()); ++i) {
        Differences ofThisPeak;
        for (const auto& [name, value] : shared.texts) {
            if (a.peaks[i].*value != b.peaks[i].*value) {
                ofThisPeak.push_back(onBothSides("peaks", name, toldOf(a.peaks[i].*value),
                                                 toldOf(b.peaks[i].*value)));
            }
        }
        for (const PeakNumber& number : shared.numbers) {
            compareNumbers(ofThisPeak, number, a.peaks[i].*number.value, b.peaks[i].*number.value,
                           comparison);
        }
        for (Difference& difference : ofThisPeak) {
            found.push_back(ofPeak(std::move(difference), i));
        }
    }
}

// ---- The texts

/// Where a file came from and its unit of times are of the file, not of the data; the other two are
/// looked at wherever the file has them.
constexpr std::array<std::string_view, 4> textsOfTheirOwn{"source_file_reference", "retention_unit",
                                                          "detector_unit", "autosampler_position"};

std::vector<std::pair<std::string, std::string>> comparedTexts(const DataSet& set) {
    std::vector<std::pair<std::string, std::string>> texts = set.texts;
    std::erase_if(texts, [](const auto& text) {
        return std::ranges::find(textsOfTheirOwn, text.first) != textsOfTheirOwn.end();
    });
    return texts;
}

bool hasText(const DataSet& set, const std::string& name) {
    return std::ranges::any_of(set.texts, [&](const auto& text) { return text.first == name; });
}

void compareText(Differences& found, const std::string& name, const std::string& a,
                 const std::string& b) {
    if (a != b) {
        found.push_back(onBothSides("texts", printable(name), toldOf(a), toldOf(b)));
    }
}

void addLoneText(Differences& found, const std::string& name, const std::string& text, bool isInA) {
    Difference difference = onOneSide("texts", printable(name), isInA);
    const Told side = toldOf(text);
    difference.words += ": " + side.words;
    difference.json[isInA ? "a" : "b"] = side.json;
    found.push_back(std::move(difference));
}

void compareTexts(Differences& found, const DataSet& a, const DataSet& b,
                  const Comparison& /*comparison*/) {
    compareText(found, "detector_unit", a.detectorUnit, b.detectorUnit);
    compareText(found, "autosampler_position", a.samplePosition, b.samplePosition);
    for (const auto& [name, text] : comparedTexts(a)) {
        if (hasText(b, name)) {
            compareText(found, name, text, b.text(name));
        } else {
            addLoneText(found, name, text, true);
        }
    }
    for (const auto& [name, text] : comparedTexts(b)) {
        if (!hasText(a, name)) {
            addLoneText(found, name, text, false);
        }
    }
}

} // namespace

Differences differencesOf(const DataSet& a, const DataSet& b, const Comparison& comparison) {
    constexpr std::array<std::pair<const char*, void (*)(Differences&, const DataSet&,
                                                         const DataSet&, const Comparison&)>,
                         3>
        parts{{{"signal", compareSignals}, {"peaks", comparePeaks}, {"texts", compareTexts}}};
    Differences found;
    for (const auto& [name, compare] : parts) {
        if (std::ranges::find(comparison.parts, name) != comparison.parts.end()) {
            compare(found, a, b, comparison);
        }
    }
    return found;
}

Difference channelDifference(std::size_t countInA, std::size_t countInB) {
    return onBothSides("run", "channels", toldOf(countInA), toldOf(countInB));
}

} // namespace korlit::host
