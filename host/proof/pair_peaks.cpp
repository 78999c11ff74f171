#include "host/proof/pair_making.h"
#include "native/pair_rules.h"

#include <array>
#include <iterator>
#include <vector>

namespace korlit::host {

namespace {

/// The value of one field of one peak, from the column that it comes from.
void addPeakField(PairMaking& making, const RecordField& field, std::span<const Entry> column,
                  float factor, std::size_t peak) {
    const ValueKey key = keyOf(field, peak);
    const Entry* source = peak <= column.size() ? &column[peak - 1] : nullptr;
    const auto* number = source == nullptr ? nullptr : std::get_if<double>(&source->value);
    const float value = number == nullptr ? 0.0F : static_cast<float>(*number);
    const double target = factor == 1.0F ? value : value * factor;
    if (field.offset == offsetof(PeakRecord, PeakArea) && source != nullptr) {
        making.values.note(source, key, target, changes::areaBySixtyOnReturn,
                           "peak_area keeps its numbers, and each way back to ANDI divides them "
                           "by 60");
    } else {
        making.values.put(source, key, target, changes::timeInMinutes);
    }
}

void addPeakNames(PairMaking& making, std::int64_t count) {
    const RecordField& field = fieldAt(peakFields, offsetof(PeakRecord, PeakName));
    const auto names = making.lookup.column(taken::peakName);
    for (std::size_t peak = 1; peak <= static_cast<std::size_t>(count); ++peak) {
        const Entry* source = peak <= names.size() ? &names[peak - 1] : nullptr;
        const auto* text = source == nullptr ? nullptr : std::get_if<std::string>(&source->value);
        const std::string name = text == nullptr ? "" : *text;
        const CutText cut = cutTo(name.substr(0, maxPeakNameLength), name,
                                  {.part = parts::peaks, .name = taken::peakName, .peak = peak},
                                  changes::peakNameCut);
        making.values.put(source, keyOf(field, peak), cut.text, *cut.rule, cut.words);
    }
}

void addPeakTable(PairMaking& making, std::int64_t count, float minutesPerUnit) {
    for (std::size_t peak = 1; peak <= static_cast<std::size_t>(count); ++peak) {
        making.values.set(keyOf(fieldAt(peakFields, offsetof(PeakRecord, PeakNumber)), peak),
                          static_cast<double>(peak), changes::setByPair);
    }
    for (const auto& [name, fieldOffset, isTime] : peakSources) {
        const auto column = making.lookup.column(name);
        const RecordField& field = fieldAt(peakFields, fieldOffset);
        for (std::size_t peak = 1; peak <= static_cast<std::size_t>(count); ++peak) {
            addPeakField(making, field, column, isTime ? minutesPerUnit : 1.0F, peak);
        }
    }
    addPeakNames(making, count);
}

/// The rows of known columns that the table has no peak for.
void leavePeaks(PairMaking& making, const ChangeRule& rule, const std::string& words) {
    std::vector<std::span<const Entry>> columns{making.lookup.column(taken::peakName)};
    std::ranges::transform(peakSources, std::back_inserter(columns),
                           [&](const PeakSource& each) { return making.lookup.column(each.name); });
    for (const auto& column : columns) {
        for (const Entry& entry : column) {
            if (!making.values.isTaken(entry)) {
                making.values.leave(entry, rule, words);
            }
        }
    }
}

} // namespace

std::int64_t expectPeaks(PairMaking& making, float minutesPerUnit) {
    const Entry* source = making.lookup.find(taken::peakNumber);
    const std::int64_t declared = countIn(making.lookup.text(taken::peakNumber).value_or(""));
    const bool isTooLong = declared > maxWrittenPeaks;
    const std::int64_t count = isTooLong || declared < 0 ? 0 : declared;
    const std::string words = isTooLong
                                  ? "the table of " + std::to_string(declared) +
                                        " peaks is left out: a pair holds at most " +
                                        std::to_string(maxWrittenPeaks)
                                  : "peaks are cut to peak_number " + std::to_string(declared);
    const ChangeRule& rule = isTooLong ? changes::peakTableLeftOut : changes::peaksLeftOut;
    for (const std::size_t offset :
         {offsetof(ResHeader, PeakTableCount), offsetof(ResHeader, PeakCount)}) {
        making.values.put(source, keyOf(fieldAt(resultFields, offset)), static_cast<double>(count),
                          rule, words);
    }
    addPeakTable(making, count, minutesPerUnit);
    leavePeaks(making, rule, words);
    return count;
}

} // namespace korlit::host
