#include "andi/chromatography_template.h"
#include "host/proof/andi_making.h"
#include "host/proof/pair_fields.h"
#include "native/native_date.h"
#include "native/pair_rules.h"

#include <algorithm>
#include <array>
#include <utility>

namespace korlit::host {

namespace {

/// A field, and the one that says the same as a rule.
struct Twin {
    const char* field;
    const char* first;
};

constexpr std::array<Twin, 3> peakTwins{{
    {.field = "PeakStartTime", .first = "BaselineStartTime"},
    {.field = "PeakEndTime", .first = "BaselineStopTime"},
    {.field = "PeakAreaPercent", .first = "ExtAreaPercent"},
}};

constexpr std::array<Twin, 2> dateTwins{{
    {.field = "ResultDate", .first = "DateText"},
    {.field = "ResultTime", .first = "TimeText"},
}};

constexpr std::array<const char*, 5> layoutFields{"FormatVersion", "ReportFlags", "ResultsOffset",
                                                  "ResultsSize", "PeakTableCount"};

constexpr const char* peakCountField = "PeakCount";

/// The field itself, or in a short record the one that stands for it.
const Entry* sourceOf(const AndiMaking& making, const RecordField& field, std::size_t peak) {
    const Entry* source = making.find(field.name, peak);
    const auto* twin = std::ranges::find_if(
        peakTwins, [&](const Twin& each) { return std::string_view{field.name} == each.first; });
    const bool isTime = twin != peakTwins.end() && twin->first != peakTwins.back().first;
    return source == nullptr && isTime ? making.find(twin->field, peak) : source;
}

void expectNumber(AndiMaking& making, const PeakColumn& column, std::size_t peak) {
    const ValueKey key{.part = parts::peaks, .name = column.name, .peak = peak};
    const Entry* source = sourceOf(making, fieldAt(peakFields, column.fieldOffset), peak);
    if (source == nullptr) {
        making.values.set(key, 0.0, changes::shortRecord);
        return;
    }
    const bool isArea = column.fieldOffset == offsetof(PeakRecord, PeakArea);
    const double number = std::get<double>(source->value);
    making.values.put(source, key,
                      isArea ? double{areaByMinute(static_cast<float>(number))} : number,
                      changes::areaBySixty);
}

void leaveTwin(AndiMaking& making, const Twin& twin, std::size_t peak) {
    const Entry* second = making.find(twin.field, peak);
    if (second == nullptr || making.values.isTaken(*second)) {
        return;
    }
    const Entry* first = making.find(twin.first, peak);
    const bool isSame = areSame(second->value, first == nullptr ? Value{0.0} : first->value);
    making.values.leave(*second, isSame ? changes::saidTwice : changes::secondValueLeftOut,
                        nameOf(second->key) + ' ' + wordsOf(second->value) +
                            (isSame ? " is that of " : " gives way to that of ") + twin.first);
}

void expectPeaksOfPair(AndiMaking& making) {
    const auto count = static_cast<std::size_t>(std::max(making.number(peakCountField), 0.0));
    for (const PeakColumn& column : peakColumns) {
        for (std::size_t peak = 1; peak <= count; ++peak) {
            expectNumber(making, column, peak);
        }
    }
    for (std::size_t peak = 1; peak <= count; ++peak) {
        making.values.put(making.find("PeakName", peak),
                          {.part = parts::peaks, .name = taken::peakName, .peak = peak},
                          making.text("PeakName", peak), changes::setByTemplate);
        if (making.number("PeakNumber", peak) == static_cast<double>(peak)) {
            making.leave("PeakNumber", peak, changes::saidTwice,
                         "peaks are numbered by their order");
        }
        for (const Twin& twin : peakTwins) {
            leaveTwin(making, twin, peak);
        }
    }
}

/// What doesn't go anywhere without being lost.
void leaveTheImplied(AndiMaking& making) {
    for (const Twin& twin : dateTwins) {
        leaveTwin(making, twin, 0);
    }
    for (const char* name : layoutFields) {
        making.leave(name, 0, changes::layoutLeftOut,
                     std::string{name} + " is left out: it says how the pair lies in its files");
    }
}

} // namespace

Expectations expectedOfAndi(const Reading& pair, const std::string& sliceFile, Wanted wanted) {
    AndiMaking making{pair, wanted};
    StampFields date{};
    readDateTexts(date, making.text("DateText"), making.text("TimeText"));
    const std::string separation =
        separationText(static_cast<std::uint16_t>(making.number("SeparationType")));
    const Origin separationOrigin{.name = "separation_experiment_type",
                                  .field = "SeparationType",
                                  .rule = separation.front() == '<' ? &changes::separationUnknown
                                                                    : &changes::separationInWords};
    expectTemplate(making, {.date = date,
                            .sampleName = making.text("SampleName"),
                            .operatorName = making.text("OperatorName"),
                            .detectorUnit = making.text("DetectorUnit"),
                            .separationType = separation,
                            .sourceFile = sliceFile,
                            .origins = {separationOrigin},
                            .dateFields = {"DateText", "TimeText"},
                            .peakCountField = peakCountField});
    expectPeaksOfPair(making);
    leaveTheImplied(making);
    making.leaveRest();
    return std::move(making.values.expected);
}

} // namespace korlit::host
