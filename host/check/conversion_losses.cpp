#include "host/check/conversion_losses.h"

#include "host/text/numbers.h"
#include "host/text/stamps.h"
#include "native/native_records.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>

namespace korlit::host {

namespace {

constexpr std::int64_t maxPeaks = maxWrittenPeakBytes / std::int64_t{sizeof(PeakRecord)};

struct TextRoom {
    const char* name;
    std::size_t room; ///< characters, without the terminator
};

constexpr std::array<TextRoom, 3> textRooms{{
    {.name = "sample_name", .room = sizeof(SliHeader::SampleName) - 1},
    {.name = "operator_name", .room = sizeof(SliHeader::OperatorName) - 1},
    {.name = "detector_unit", .room = sizeof(SliHeader::DetectorUnit) - 1},
}};

/// What a pair takes, besides the time stamp.
constexpr std::array<const char*, 18> keptNames{
    "operator_name",
    "sample_name",
    "detector_unit",
    "retention_unit",
    "uniform_sampling_flag",
    "autosampler_position",
    "ordinate_values",
    "point_number",
    "actual_sampling_interval",
    "peak_retention_time",
    "peak_start_time",
    "peak_end_time",
    "peak_area",
    "peak_area_percent",
    "peak_height",
    "peak_amount",
    "peak_name",
    "peak_number",
};

/// Of these a pair keeps what the samples say, which detector-limit looks at.
constexpr std::array<const char*, 2> limitNames{"detector_maximum_value", "detector_minimum_value"};

/// The stamp that a pair's date and time come from.
const char* stampName(const AndiImage& image) {
    return textOf(image, "datasetdatetimestamp") ? "dataset_date_time_stamp"
                                                 : "injection_date_time_stamp";
}

std::int64_t peakCount(const AndiImage& image) {
    return readLong(textOf(image, "peaknumber").value_or("")).value_or(0);
}

void lookAtSampleCount(const Subject& subject, const RuleNotes& notes) {
    const AndiVariable* ordinates = variableOf(subject.image, "ordinatevalues");
    const auto points = readLong(textOf(subject.image, "pointnumber").value_or(""));
    const auto samples = static_cast<std::int64_t>(subject.samples.size());
    if (ordinates != nullptr && points.value_or(0) < samples) {
        notes.add(Severity::Loss, std::to_string(samples) + " samples are cut to point_number " +
                                      std::to_string(points.value_or(0)));
    }
}

/// The sampling interval in milliseconds as a pair holds it: from the rounded text of the file's
/// number, cut to whole milliseconds of 16 bits. Without a unit a pair has 1.
double keptInterval(const AndiImage& image, double unitMs) {
    constexpr float roundingAid = 1e-8F;
    const auto value = readFloat(textOf(image, "actualsamplinginterval").value_or(""));
    if (!value || !textOf(image, "retentionunit")) {
        return 1.0;
    }
    const double interval = std::trunc((double{*value} + double{roundingAid}) * unitMs);
    const bool isInRange = std::abs(interval) <= std::numeric_limits<std::int32_t>::max();
    return isInRange ? static_cast<std::int16_t>(static_cast<std::int32_t>(interval)) : 0;
}

void lookAtInterval(const Subject& subject, const RuleNotes& notes) {
    if (!subject.isUniform || !std::isfinite(subject.interval) || subject.interval <= 0) {
        return;
    }
    constexpr double roundingShare = 1e-6;
    std::string unit = textOf(subject.image, "retentionunit").value_or("");
    _strlwr(unit.data());
    const double unitMs = unit.starts_with("min") ? 60000.0 : 1000.0;
    const double interval = subject.interval * unitMs;
    const double kept = keptInterval(subject.image, unitMs);
    if (std::abs(interval - kept) > interval * roundingShare) {
        notes.add(Severity::Loss, "the sampling interval of " + roundedText(interval) +
                                      " ms becomes " + roundedText(kept) + " ms");
    }
}

void lookAtSeconds(const Subject& subject, const RuleNotes& notes) {
    const char* name = stampName(subject.image);
    const std::string stamp = textOf(subject.image, keyOf(name)).value_or("");
    if (stampIn(stamp) && stamp.substr(12, 2) != "00") {
        notes.add(Severity::Loss,
                  "the seconds of " + std::string{name} + " " + stamp + " are left out");
    }
}

void lookAtZone(const Subject& subject, const RuleNotes& notes) {
    const char* name = stampName(subject.image);
    const std::string stamp = textOf(subject.image, keyOf(name)).value_or("");
    if (stampIn(stamp)) {
        notes.add(Severity::Loss,
                  "the zone offset of " + std::string{name} + " " + stamp + " is left out");
    }
}

void lookAtTexts(const Subject& subject, const RuleNotes& notes) {
    for (const auto& [name, room] : textRooms) {
        const std::string text = textOf(subject.image, keyOf(name)).value_or("");
        if (text.size() > room) {
            notes.add(Severity::Loss, std::string{name} + " is cut to " + std::to_string(room) +
                                          " characters: \"" + text.substr(0, room) + '"');
        }
    }
}

void lookAtPeakTable(const Subject& subject, const RuleNotes& notes) {
    if (peakCount(subject.image) > maxPeaks) {
        notes.add(Severity::Loss, "the table of " + std::to_string(peakCount(subject.image)) +
                                      " peaks is left out: a pair holds at most " +
                                      std::to_string(maxPeaks));
    }
}

void lookAtPeakNames(const Subject& subject, const RuleNotes& notes) {
    constexpr std::size_t maxPeakName = 14;
    const auto isLong = [](const std::string& name) { return name.size() > maxPeakName; };
    const auto names = rowsOf(subject.image, variableOf(subject.image, "peakname"));
    const auto count = static_cast<std::size_t>(std::ranges::count_if(names, isLong));
    if (count > 0 && peakCount(subject.image) <= maxPeaks) {
        notes.add(Severity::Loss, counted(count, "peak name") + " cut to " +
                                      std::to_string(maxPeakName) + " characters, the first is \"" +
                                      *std::ranges::find_if(names, isLong) + '"');
    }
}

void lookAtLimits(const Subject& subject, const RuleNotes& notes) {
    for (const auto& [name, limit, extreme, excess] : detectorLimits(subject)) {
        if (excess < 0) {
            notes.add(Severity::Loss, std::string{name} + " of " + numberText(limit) + " becomes " +
                                          numberText(extreme) + ", as far as the signal goes");
        }
    }
}

void lookForTheRest(const Subject& subject, const RuleNotes& notes) {
    const auto isKept = [&](const char* stored) {
        const auto isSame = [&](const char* name) { return isNamed(stored, name); };
        return isSame(stampName(subject.image)) || std::ranges::any_of(keptNames, isSame) ||
               std::ranges::any_of(limitNames, isSame);
    };
    std::vector<std::string> rest;
    const auto addAttributes = [&](const AndiAttributeList& list, const std::string& owner) {
        for (const AndiAttribute& attribute : attributesOf(list)) {
            const bool isEmpty = textOf(attribute).value_or("?").empty();
            if (!isEmpty && !isKept(attribute.Name)) {
                rest.push_back(owner + attribute.Name);
            }
        }
    };
    addAttributes(subject.image.file.GlobalAttributes, "");
    for (const AndiVariable& variable : variablesOf(subject.image)) {
        if (isKept(variable.Name)) {
            addAttributes(variable.Attributes, std::string{variable.Name} + ':');
        } else {
            rest.emplace_back(variable.Name);
        }
    }
    if (!rest.empty()) {
        notes.add(Severity::Loss, "a pair has no place for " + joined(rest));
    }
}

/// The rules that look at texts and peaks alone come first.
constexpr std::size_t cutRuleCount = 3;
constexpr std::array<Rule, 9> rules{{
    {.id = "text-cut", .look = lookAtTexts},
    {.id = "peak-table-left-out", .look = lookAtPeakTable},
    {.id = "peak-name-cut", .look = lookAtPeakNames},
    {.id = "samples-cut", .look = lookAtSampleCount},
    {.id = "interval-cut", .look = lookAtInterval},
    {.id = "seconds-left-out", .look = lookAtSeconds},
    {.id = "zone-left-out", .look = lookAtZone},
    {.id = "limit-left-out", .look = lookAtLimits},
    {.id = "no-place", .look = lookForTheRest},
}};

} // namespace

Findings lossesInPair(const AndiImage& image) {
    return findAll(rules, image);
}

std::vector<std::string> cutsInPair(const AndiImage& image) {
    // Without the samples, of which there may be many.
    const Subject subject{
        .image = image, .samples = {}, .extremes = {}, .interval = 0.0, .isUniform = true};
    Findings findings;
    for (const auto& [id, look] : std::span{rules}.first<cutRuleCount>()) {
        look(subject, {.findings = findings, .rule = id});
    }
    std::vector<std::string> cuts;
    std::ranges::transform(findings, std::back_inserter(cuts), &Finding::message);
    return cuts;
}

} // namespace korlit::host
