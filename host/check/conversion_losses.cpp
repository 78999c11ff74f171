#include "host/check/conversion_losses.h"

#include "host/check/phrases.h"
#include "host/check/rules.h"
#include "host/text/numbers.h"
#include "host/text/stamps.h"
#include "host/text/words.h"
#include "native/pair_rules.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <span>

namespace korlit::host {

namespace {

/// Of these a pair keeps what the samples say, which detector-limit looks at.
constexpr std::array<const char*, 2> limitNames{"detector_maximum_value", "detector_minimum_value"};

/// The stamp that a pair's date and time come from.
const char* stampName(const AndiImage& image) {
    const auto isThere = [&](const char* name) { return textOf(image, name).has_value(); };
    const auto* const found = std::ranges::find_if(stampSources, isThere);
    return found == stampSources.end() ? stampSources.back() : *found;
}

std::int64_t peakCount(const AndiImage& image) {
    return countIn(textOf(image, taken::peakNumber).value_or(""));
}

void lookAtSampleCount(const Subject& subject, const RuleNotes& notes) {
    const std::int64_t points = countIn(textOf(subject.image, taken::pointNumber).value_or(""));
    const auto samples = static_cast<std::int64_t>(subject.samples.size());
    if (samples > 0 && points < samples) {
        notes.add(Severity::Loss, std::to_string(samples) + " samples are cut to point_number " +
                                      std::to_string(points));
    }
}

void lookAtInterval(const Subject& subject, const RuleNotes& notes) {
    if (!subject.isUniform || !std::isfinite(subject.interval) || subject.interval <= 0) {
        return;
    }
    constexpr double roundingShare = 1e-6;
    const auto unit = textOf(subject.image, taken::retentionUnit);
    const double interval = subject.interval * (isMinutes(unit.value_or("")) ? 60000.0 : 1000.0);
    const double kept = pairTimes(textOf(subject.image, taken::samplingInterval), unit).intervalMs;
    if (std::abs(interval - kept) > interval * roundingShare) {
        notes.add(Severity::Loss, "the sampling interval of " + roundedText(interval) +
                                      " ms becomes " + roundedText(kept) + " ms");
    }
}

void lookAtSeconds(const Subject& subject, const RuleNotes& notes) {
    const char* name = stampName(subject.image);
    const std::string stamp = textOf(subject.image, name).value_or("");
    if (stampIn(stamp) && stamp.substr(12, 2) != "00") {
        notes.add(Severity::Loss,
                  "the seconds of " + std::string{name} + " " + stamp + " are left out");
    }
}

void lookAtZone(const Subject& subject, const RuleNotes& notes) {
    const char* name = stampName(subject.image);
    const std::string stamp = textOf(subject.image, name).value_or("");
    if (stampIn(stamp)) {
        notes.add(Severity::Loss,
                  "the zone offset of " + std::string{name} + " " + stamp + " is left out");
    }
}

void lookAtTexts(const Subject& subject, const RuleNotes& notes) {
    for (const HeaderText& each : headerTexts) {
        const std::string text = textOf(subject.image, each.name).value_or("");
        if (text.size() > each.room()) {
            notes.add(Severity::Loss, std::string{each.name} + " is cut to " +
                                          std::to_string(each.room()) + " characters: \"" +
                                          text.substr(0, each.room()) + '"');
        }
    }
}

void lookAtPeakTable(const Subject& subject, const RuleNotes& notes) {
    if (peakCount(subject.image) > maxWrittenPeaks) {
        notes.add(Severity::Loss, "the table of " + std::to_string(peakCount(subject.image)) +
                                      " peaks is left out: a pair holds at most " +
                                      std::to_string(maxWrittenPeaks));
    }
}

void lookAtPeakNames(const Subject& subject, const RuleNotes& notes) {
    const auto isLong = [](const std::string& name) {
        return std::ssize(name) > maxPeakNameLength;
    };
    const auto names = rowsOf(subject.image, variableOf(subject.image, taken::peakName));
    const auto count = static_cast<std::size_t>(std::ranges::count_if(names, isLong));
    if (count > 0 && peakCount(subject.image) <= maxWrittenPeaks) {
        notes.add(Severity::Loss,
                  counted(count, "peak name") + " cut to " + std::to_string(maxPeakNameLength) +
                      " characters, the first is \"" + *std::ranges::find_if(names, isLong) + '"');
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
        return isSame(stampName(subject.image)) || std::ranges::any_of(taken::all, isSame) ||
               std::ranges::any_of(headerTexts, isSame, &HeaderText::name) ||
               std::ranges::any_of(peakSources, isSame, &PeakSource::name) ||
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
        notes.add(Severity::Loss, "a pair has no place for " + joined(rest, ", "));
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

Findings lossesInPair(const Subject& subject) {
    Findings findings;
    applyRules(rules, subject, findings);
    return findings;
}

std::vector<std::string> cutsInPair(const AndiImage& image) {
    Findings findings;
    applyRules(std::span{rules}.first<cutRuleCount>(), {.image = image}, findings);
    std::vector<std::string> cuts;
    std::ranges::transform(findings, std::back_inserter(cuts), &Finding::message);
    return cuts;
}

} // namespace korlit::host
