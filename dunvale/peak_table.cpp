#include "dunvale/peak_table.h"

#include "dunvale/baselines.h"
#include "dunvale/detection_codes.h"
#include "dunvale/peak_names.h"
#include "platform/text.h"

#include <algorithm>

namespace korlit {

namespace {

constexpr const char* noMatrixText =
    "Error(s) occurred !!!\r\nAddAndiMatrix(\"%s\") returned NULL.";

/// A peak table on its way into a file.
struct PeakTable {
    AndiFile* file;
    const TemplateDimensions& dimensions;
    const ChannelPeaks& peaks;
    std::span<char> message;
};

void addColumn(const PeakTable& table, const ResultColumn& column) {
    const std::span<const Results> results = table.peaks.results;
    AddResultColumn(table.file, column.name, table.dimensions.peaks,
                    std::as_bytes(results).data() + column.fieldOffset,
                    static_cast<std::int16_t>(results.size()));
}

/// The rows of a text variable; null, with the reason told, if it can't be added.
char* addTexts(const PeakTable& table, const char* name, std::int32_t widthDimension) {
    AndiVariable* texts = AddTextColumn(table.file, name, table.dimensions.peaks, widthDimension);
    if (texts == nullptr) {
        formatText(table.message, noMatrixText, name);
        return nullptr;
    }
    return static_cast<char*>(texts->Data);
}

bool addNames(const PeakTable& table) {
    char* names = addTexts(table, "peak_name", table.dimensions.thirtyTwoBytes);
    if (names != nullptr) {
        FillPeakNames(names, table.peaks.results, table.peaks.windows);
    }
    return names != nullptr;
}

void divideAreas(std::span<Results> results) {
    for (Results& result : results) {
        result.Area = areaByMinute(result.Area);
    }
}

void addBaselineValues(const PeakTable& table, const char* name, float Results::*time) {
    AndiVariable* column = AddAndiVector(table.file, name, AndiType::Float, table.dimensions.peaks);
    if (column != nullptr) {
        std::ranges::transform(table.peaks.results, static_cast<float*>(column->Data),
                               [&](const Results& result) {
                                   return BaselineValue(table.peaks.signal,
                                                        table.peaks.sampleIntervalMs, result.*time);
                               });
    }
}

bool addDetectionCodes(const PeakTable& table) {
    const std::int32_t width = table.dimensions.fourBytes;
    char* startCodes = addTexts(table, "peak_start_detection_code", width);
    char* stopCodes =
        startCodes == nullptr ? nullptr : addTexts(table, "peak_stop_detection_code", width);
    if (stopCodes == nullptr) {
        return false;
    }
    WalkPeakEvents(table.peaks.events, table.peaks.results, table.peaks.sampleIntervalMs,
                   startCodes, stopCodes);
    return true;
}

} // namespace

bool AddPeakTable(AndiFile* file, const TemplateDimensions& dimensions, const ChannelPeaks& peaks,
                  std::span<char> message) {
    const PeakTable table{
        .file = file, .dimensions = dimensions, .peaks = peaks, .message = message};
    addColumn(table, retentionColumn);
    if (!addNames(table)) {
        return false;
    }
    divideAreas(peaks.results);
    for (const ResultColumn& column : middleColumns) {
        addColumn(table, column);
    }
    for (const auto& [timeColumn, valueName, time] : baselineColumns) {
        addColumn(table, timeColumn);
        addBaselineValues(table, valueName, time);
    }
    return addDetectionCodes(table);
}

void AddResultColumn(AndiFile* file, const char* name, std::int32_t dimension,
                     const void* firstValue, std::int16_t count) {
    AddFloatColumn(file, name, dimension, firstValue, count, sizeof(Results));
}

} // namespace korlit
