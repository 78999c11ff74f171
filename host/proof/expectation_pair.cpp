#include "datetime/stamp.h"
#include "host/data/facts.h"
#include "host/files/andi_image.h"
#include "host/proof/pair_making.h"
#include "host/text/numbers.h"
#include "host/text/stamps.h"
#include "native/extremes.h"
#include "native/pair_rules.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <span>
#include <utility>
#include <vector>

namespace korlit::host {

namespace {

void put(PairMaking& making, const Entry* source, std::size_t offset, Value target,
         const ChangeRule& rule, std::string words = {}) {
    making.values.put(source, keyOf(fieldAt(sliceFields, offset)), std::move(target), rule,
                      std::move(words));
}

void set(PairMaking& making, std::size_t offset, Value target) {
    making.values.set(keyOf(fieldAt(sliceFields, offset)), std::move(target), changes::setByPair);
}

void addTexts(PairMaking& making) {
    for (const HeaderText& each : headerTexts) {
        const Entry* source = making.lookup.find(each.name);
        const auto room = static_cast<std::int32_t>(each.room());
        const CutText cut = cutTo(making.lookup.text(each.name, room).value_or(""),
                                  making.lookup.text(each.name).value_or(""),
                                  {.part = parts::texts, .name = each.name}, changes::textCut);
        put(making, source, each.fieldOffset, cut.text, *cut.rule, cut.words);
    }
}

/// What of a stamp goes nowhere.
void noteStamp(PairMaking& making, const Entry& source, const std::string& stamp) {
    StampFields fields{};
    ParseAndiStamp(&fields, stamp.c_str());
    const std::string words = " of " + nameOf(source.key) + ' ' + stamp + " ";
    if (fields.Second != 0) {
        making.values.leave(source, changes::secondsLeftOut,
                            "the seconds" + words + "are left out");
    }
    if (stampIn(stamp)) {
        making.values.leave(source, changes::zoneLeftOut,
                            "the zone offset" + words + "is left out");
    }
}

void addStamp(PairMaking& making) {
    const Entry* chosen = nullptr;
    std::string stamp;
    for (const char* name : stampSources) {
        const Entry* source = making.lookup.find(name);
        const std::string text = making.lookup.text(name).value_or("");
        if (chosen != nullptr && source != nullptr) {
            making.values.leave(*source, changes::stampChosen,
                                nameOf(source->key) + ' ' + text + " gives way to " +
                                    nameOf(chosen->key));
        }
        stamp = chosen == nullptr ? text : stamp;
        chosen = chosen == nullptr ? source : chosen;
    }
    const PairDate texts = chosen == nullptr ? PairDate{} : pairDate(stamp.c_str());
    const std::string date = texts.date.data();
    const std::string time = texts.time.data();
    put(making, chosen, offsetof(SliHeader, DateText), date, changes::dateToMinute);
    put(making, chosen, offsetof(SliHeader, TimeText), time, changes::dateToMinute);
    making.values.put(chosen, keyOf(fieldAt(resultFields, offsetof(ResHeader, ResultDate))), date,
                      changes::dateOfResults);
    making.values.put(chosen, keyOf(fieldAt(resultFields, offsetof(ResHeader, ResultTime))), time,
                      changes::dateOfResults);
    if (chosen != nullptr) {
        noteStamp(making, *chosen, stamp);
    }
}

void addPosition(PairMaking& making) {
    const Entry* source = making.lookup.find(taken::samplePosition);
    const std::string text = making.lookup.text(taken::samplePosition).value_or("");
    const Position position = positionIn(text);
    const std::string kept = std::to_string(position.rack) + '-' + std::to_string(position.vial);
    const bool isKept = text == kept;
    const ChangeRule& rule = isKept ? changes::positionSplit : changes::positionCut;
    const std::string words = isKept || source == nullptr
                                  ? ""
                                  : std::string{taken::samplePosition} + ' ' +
                                        wordsOf(source->value) + " becomes " + kept;
    put(making, source, offsetof(SliHeader, AutosamplerRack), static_cast<double>(position.rack),
        rule, words);
    put(making, source, offsetof(SliHeader, AutosamplerVial), static_cast<double>(position.vial),
        rule, words);
}

struct Range {
    double smallest = 0;
    double largest = 0;
};

/// A sample that is no number counts only if it comes first.
Range rangeOf(const NumberView& samples) {
    if (!samples.floats().empty()) {
        const korlit::Extremes extremes = korlit::extremesOf(samples.floats());
        return {.smallest = extremes.smallest, .largest = extremes.largest};
    }
    if (samples.empty()) {
        return {};
    }
    Range range{.smallest = samples.front(), .largest = samples.front()};
    std::array<double, 4096> room{};
    for (std::size_t first = 0; first < samples.size(); first += room.size()) {
        const auto part = std::span{room}.first(std::min(room.size(), samples.size() - first));
        samples.copy(first, part);
        for (const double sample : part) {
            range.smallest = sample < range.smallest ? sample : range.smallest;
            range.largest = sample > range.largest ? sample : range.largest;
        }
    }
    return range;
}

/// A limit that lies beyond its extreme is lost; one that the signal itself goes beyond was wrong.
void addLimit(PairMaking& making, const char* name, std::size_t offset, double extreme,
              double outwards, double rounding) {
    const Entry* source = making.lookup.find(name);
    const auto* limit = source == nullptr ? nullptr : std::get_if<double>(&source->value);
    const bool isLost = limit != nullptr && !making.values.expected.signal.empty() &&
                        outwards * (*limit - extreme) > rounding;
    put(making, source, offset, extreme,
        isLost ? changes::limitLeftOut : changes::extremesOfSamples,
        isLost ? std::string{name} + " of " + numberText(*limit) + " becomes " +
                     numberText(extreme) + ", as far as the signal goes"
               : "");
}

void addSamples(PairMaking& making) {
    const NumberView& samples = making.andi.signal;
    const Entry* source = making.lookup.find(taken::pointNumber);
    const std::int32_t declared = countIn(making.lookup.text(taken::pointNumber).value_or(""));
    const std::size_t count =
        std::min<std::size_t>(static_cast<std::uint32_t>(declared), samples.size());
    Expectations& expected = making.values.expected;
    expected.signal = samples.part(0, count);
    expected.memory = making.andi.memory;
    put(making, source, offsetof(SliHeader, PointCount), static_cast<double>(count),
        changes::countOfSamples);
    if (count < samples.size()) {
        expected.signalChange.rule = &changes::samplesCut;
        expected.signalChange.words = std::to_string(samples.size()) +
                                      " samples are cut to point_number " +
                                      std::to_string(declared);
    }
    const auto [smallest, largest] = rangeOf(expected.signal);
    addLimit(making, "detector_maximum_value", offsetof(SliHeader, MaxValue), largest, 1,
             limitRounding(smallest, largest, largest));
    addLimit(making, "detector_minimum_value", offsetof(SliHeader, MinValue), smallest, -1,
             limitRounding(smallest, largest, smallest));
}

/// Answers the factor that turns the file's times into minutes.
float addInterval(PairMaking& making) {
    const Entry* source = making.lookup.find(taken::samplingInterval);
    const Entry* unit = making.lookup.find(taken::retentionUnit);
    const auto intervalText = making.lookup.text(taken::samplingInterval);
    const auto unitText = making.lookup.text(taken::retentionUnit);
    const PairTimes times = pairTimes(intervalText, unitText);
    const auto* stored = source == nullptr ? nullptr : std::get_if<double>(&source->value);
    const double number =
        stored != nullptr ? *stored : readFloat(intervalText.value_or("")).value_or(std::nanf(""));
    const double interval = number * (isMinutes(unitText.value_or("")) ? 60000 : 1000);
    constexpr double roundingShare = 1e-6;
    const bool isKept = std::abs(interval - times.intervalMs) <= interval * roundingShare;
    put(making, source, offsetof(SliHeader, SampleIntervalMs),
        static_cast<double>(times.intervalMs),
        isKept ? changes::intervalInMs : changes::intervalCut,
        isKept || source == nullptr
            ? ""
            : "the sampling interval of " +
                  (std::isnan(interval) ? wordsOf(source->value) : roundedText(interval) + " ms") +
                  " becomes " + std::to_string(times.intervalMs) + " ms");
    if (unit != nullptr) {
        making.values.leave(*unit, changes::timeInMinutes,
                            "the times of a pair are minutes, whatever retention_unit is");
    }
    if (const Entry* flag = making.lookup.find(taken::uniformFlag)) {
        making.values.leave(*flag, changes::impliedByPair,
                            "the samples of a pair are always equidistant");
    }
    return times.minutesPerUnit;
}

void addBookkeeping(PairMaking& making, std::int64_t peakCount) {
    set(making, offsetof(SliHeader, FormatVersion), double{sliceFormatVersion});
    set(making, offsetof(SliHeader, ScaleFactor), 1.0);
    set(making, offsetof(SliHeader, SeparationType), 0.0);
    const std::int64_t size = std::int64_t{sizeof(ResHeader)} +
                              (peakTableEntrySize + std::int64_t{sizeof(PeakRecord)}) * peakCount;
    const std::array<std::pair<std::size_t, double>, 3> reportValues{{
        {offsetof(RepHeader, ReportFlags), writtenReportFlags},
        {offsetof(RepHeader, ResultsOffset), sizeof(RepHeader)},
        {offsetof(RepHeader, ResultsSize), static_cast<double>(size)},
    }};
    for (const auto& [offset, value] : reportValues) {
        making.values.set(keyOf(fieldAt(reportFields, offset)), value, changes::setByPair);
    }
}

/// A value that a pair implies, or that is empty. The length of a dimension is that of what lies
/// along it.
bool isImplied(const Entry& entry) {
    const bool isEmpty = entry.value == Value{std::string{}};
    const bool isNoDelay =
        entry.value == Value{0.0} && isNamed(entry.key.name.data(), "actual_delay_time");
    return isEmpty || isNoDelay || entry.key.part == parts::dimensions;
}

/// What has no place, or needs none: each value that nothing else was said of.
void addRest(PairMaking& making) {
    for (const Entry& entry : making.andi.entries) {
        if (making.values.isTaken(entry)) {
            continue;
        }
        if (isImplied(entry)) {
            making.values.leave(entry, changes::impliedByPair, "");
        } else {
            making.values.leave(entry, changes::noPlace,
                                "a pair has no place for " + std::string{entry.key.name});
        }
    }
}

} // namespace

Expectations expectedOfPair(const Reading& andi, Wanted wanted) {
    PairMaking making{.andi = andi, .wanted = wanted};
    making.values.expected.kind = FileKind::Merivolta;
    addTexts(making);
    addStamp(making);
    addSamples(making);
    const float minutesPerUnit = addInterval(making);
    addPosition(making);
    addBookkeeping(making, expectPeaks(making, minutesPerUnit));
    addRest(making);
    return std::move(making.values.expected);
}

} // namespace korlit::host
