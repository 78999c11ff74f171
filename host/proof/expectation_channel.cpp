#include "andi/chromatography_template.h"
#include "datetime/serial_date.h"
#include "dunvale/baselines.h"
#include "dunvale/detection_codes.h"
#include "dunvale/peak_names.h"
#include "dunvale/peak_table.h"
#include "host/proof/andi_making.h"
#include "host/proof/run_fields.h"

#include <array>
#include <sstream>
#include <utility>

namespace korlit::host {

namespace {

/// A channel's records, put together again from what was read of them.
struct ChannelRecords {
    std::vector<Results> results;
    std::vector<PeakWin> windows; ///< of the table that the channel has chosen
    const char* windowPart;
    std::int16_t sampleIntervalMs;
};

float floatAt(const AndiMaking& making, const char* name, std::size_t row,
              std::string_view part = {}) {
    const Entry* entry = making.find(name, row, part);
    return entry == nullptr ? 0.0F : static_cast<float>(std::get<double>(entry->value));
}

std::vector<Results> resultsOf(const AndiMaking& making) {
    std::vector<Results> results(static_cast<std::size_t>(making.number("ResultCount")));
    for (std::size_t i = 0; i < results.size(); ++i) {
        results[i] = {.RetentionTime = floatAt(making, "RetentionTime", i + 1),
                      .StartTime = floatAt(making, "StartTime", i + 1),
                      .EndTime = floatAt(making, "EndTime", i + 1),
                      .Area = floatAt(making, "Area", i + 1),
                      .Height = floatAt(making, "Height", i + 1),
                      .Amount = floatAt(making, "Amount", i + 1)};
    }
    return results;
}

std::vector<Peaks> eventsOf(const AndiMaking& making) {
    std::istringstream points{making.text("EventPoint")};
    std::istringstream types{making.text("EventType")};
    std::vector<Peaks> events;
    for (Peaks event{}; points >> event.EventPoint && types >> event.EventType;) {
        events.push_back(event);
    }
    return events;
}

std::vector<PeakWin> windowsOf(const AndiMaking& making, const char* part) {
    std::vector<PeakWin> windows;
    for (std::size_t row = 1; making.find("WindowName", row, part) != nullptr; ++row) {
        PeakWin window{};
        window.WindowStart = floatAt(making, "WindowStart", row, part);
        window.WindowEnd = floatAt(making, "WindowEnd", row, part);
        windows.push_back(window);
    }
    return windows;
}

ChannelRecords recordsOf(const AndiMaking& making) {
    const char* part = making.number("PeakWinSelect") == 0 ? parts::windows : parts::windows2;
    return {.results = resultsOf(making),
            .windows = windowsOf(making, part),
            .windowPart = part,
            .sampleIntervalMs = static_cast<std::int16_t>(making.number("SampleIntervalMs"))};
}

ValueKey peakKey(const char* name, std::size_t peak) {
    return {.part = parts::peaks, .name = name, .peak = peak};
}

void expectColumn(AndiMaking& making, const ResultColumn& column, std::size_t peakCount) {
    const RecordField& field = fieldAt(runPeakFields, column.fieldOffset);
    const bool isArea = column.fieldOffset == offsetof(Results, Area);
    const bool isPercent = std::string_view{column.name} == "peak_area_percent";
    for (std::size_t peak = 1; peak <= peakCount; ++peak) {
        const Entry* source = making.find(field.name, peak);
        if (source == nullptr) {
            making.values.set(peakKey(column.name, peak), 0.0, changes::shortRecord);
            continue;
        }
        const double number = std::get<double>(source->value);
        making.values.put(source, peakKey(column.name, peak),
                          isArea ? double{areaByMinute(static_cast<float>(number))} : number,
                          isPercent ? changes::areaAsPercent : changes::areaBySixty);
    }
}

void expectNames(AndiMaking& making, const ChannelRecords& records) {
    for (std::size_t i = 0; i < records.results.size(); ++i) {
        const ValueKey key = peakKey("peak_name", i + 1);
        const PeakWin* window = windowOf(records.results[i].RetentionTime, records.windows);
        if (window == nullptr) {
            making.values.set(key, "", changes::noWindow);
            continue;
        }
        const auto row = static_cast<std::size_t>(window - records.windows.data()) + 1;
        const Entry& name = *making.find("WindowName", row, records.windowPart);
        making.values.put(&name, key, std::get<std::string>(name.value).substr(0, peakNameSize - 1),
                          changes::windowNameCut);
    }
}

void expectBaselineValues(AndiMaking& making, const ChannelRecords& records,
                          const BaselineColumns& column) {
    const NumberView& signal = making.source.signal;
    for (std::size_t i = 0; i < records.results.size(); ++i) {
        const auto point =
            baselinePoint(signal.size(), records.sampleIntervalMs, records.results[i].*column.time);
        const float value =
            point ? inDetectorUnit(static_cast<float>(signal[*point]), making.source.signalFactor)
                  : 0.0F;
        making.values.set(peakKey(column.valueName, i + 1), double{value},
                          changes::baselineOfSamples);
    }
}

void expectCodes(AndiMaking& making, const ChannelRecords& records) {
    const std::size_t size = records.results.size() * detectionCodeSize;
    std::string starts(size, '\0');
    std::string stops(size, '\0');
    WalkPeakEvents(eventsOf(making), records.results, records.sampleIntervalMs, starts.data(),
                   stops.data());
    for (const auto& [name, codes] : {std::pair{"peak_start_detection_code", &starts},
                                      std::pair{"peak_stop_detection_code", &stops}}) {
        for (std::size_t i = 0; i < records.results.size(); ++i) {
            making.values.set(peakKey(name, i + 1), codes->data() + i * detectionCodeSize,
                              changes::codeOfEvents);
        }
    }
}

void expectPeaksOfRun(AndiMaking& making) {
    const ChannelRecords records = recordsOf(making);
    const std::size_t count = records.results.size();
    expectColumn(making, retentionColumn, count);
    expectNames(making, records);
    for (const ResultColumn& column : middleColumns) {
        expectColumn(making, column, count);
    }
    for (const BaselineColumns& column : baselineColumns) {
        expectColumn(making, column.timeColumn, count);
        if (making.values.isWanted(&changes::baselineOfSamples)) {
            expectBaselineValues(making, records, column);
        }
    }
    if (making.values.isWanted(&changes::codeOfEvents)) {
        expectCodes(making, records);
    }
}

void leaveLayout(AndiMaking& making) {
    for (const char* name : {"RunVersion", "PeakWinSelect", "EventCount"}) {
        making.leave(name, 0, changes::layoutLeftOut,
                     std::string{name} + " is left out: it says how the run lies in its file");
    }
}

/// A text that fills its field to the last byte loses that.
std::string keptText(const AndiMaking& making, std::span<const RecordField> fields,
                     std::size_t offset) {
    const RecordField& field = fieldAt(fields, offset);
    return making.text(field.name).substr(0, field.size - 1);
}

} // namespace

Expectations expectedOfChannel(const Reading& channel, const std::string& runFile, Wanted wanted) {
    AndiMaking making{channel, wanted};
    SerialStamp start{.Serial = making.number("StartSerial"), .Fields = {}};
    DecodeSerialDate(&start);
    expectTemplate(
        making,
        {.date = start.Fields,
         .sampleName = keptText(making, runInfoFields, offsetof(RunInfo, SampleName)),
         .operatorName = keptText(making, runInfoFields, offsetof(RunInfo, OperatorName)),
         .detectorUnit = keptText(making, signalHeadFields, offsetof(SliHeadP, DetectorUnit)),
         .separationType = "HPLC",
         .sourceFile = runFile,
         .origins = {},
         .dateFields = {"StartSerial"},
         .peakCountField = "ResultCount"});
    expectPeaksOfRun(making);
    leaveLayout(making);
    making.leaveRest();
    return std::move(making.values.expected);
}

} // namespace korlit::host
