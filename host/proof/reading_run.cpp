#include "dunvale/run_file.h"
#include "host/files/diagnosis.h"
#include "host/proof/reading.h"
#include "host/proof/run_fields.h"

#include <algorithm>
#include <array>
#include <span>
#include <stdexcept>
#include <utility>

namespace korlit::host {

namespace {

[[noreturn]] void fail(std::string reason, const std::string& file) {
    std::erase(reason, '\r');
    std::ranges::replace(reason, '\n', ' ');
    throw std::runtime_error{withDiagnosis(reason, file, FileKind::Dunvale)};
}

std::shared_ptr<const DunvaleRun> loadRun(const std::string& path) {
    constexpr std::size_t longestText = 100;
    const auto run = std::make_shared<DunvaleRun>();
    CFile file;
    if (!file.Open(path.c_str())) {
        fail("Unable to open \"" + path + '"', path);
    }
    std::string message(path.size() + longestText, '\0');
    if (ReadRun(path.c_str(), file, *run, message) != runIsRead) {
        fail(message.c_str(), path);
    }
    return run;
}

void add(Reading& reading, const char* name, Value value) {
    reading.entries.push_back(
        {.key = {.part = parts::texts, .name = name}, .value = std::move(value)});
}

void readFields(Reading& reading, const void* record, std::span<const RecordField> fields,
                std::size_t peak = 0) {
    for (const RecordField& field : fields) {
        const char* place = static_cast<const char*>(record) + field.offset;
        reading.entries.push_back(
            {.key = keyOf(field, peak), .value = field.valueAt(place, field.size)});
    }
}

/// One number of each event.
void readEvents(Reading& reading, std::span<const Peaks> events, const char* name,
                std::int32_t Peaks::*number) {
    std::string text;
    for (const Peaks& event : events) {
        text += (text.empty() ? "" : " ") + std::to_string(event.*number);
    }
    add(reading, name, text);
}

void readPeaks(Reading& reading, const DunvaleRun& run, std::size_t channel) {
    const ResHead& head = run.lpResHead[channel];
    readFields(reading, &head, channelResultsFields);
    const bool isShort = layoutOf(run.head.RunVersion).resultSize < std::int64_t{sizeof(Results)};
    const auto fields = std::span{runPeakFields}.first(runPeakFields.size() - (isShort ? 1 : 0));
    for (std::int16_t i = 0; i < head.ResultCount; ++i) {
        readFields(reading, &run.plpResults[channel][i], fields, static_cast<std::size_t>(i) + 1);
    }
    const std::span events{run.plpPeaks[channel], static_cast<std::size_t>(head.EventCount)};
    readEvents(reading, events, "EventPoint", &Peaks::EventPoint);
    readEvents(reading, events, "EventType", &Peaks::EventType);
}

void readWindows(Reading& reading, std::span<const PeakWin> windows, const char* part) {
    std::size_t row = 0;
    for (const PeakWin& window : windows) {
        ++row;
        readFields(reading, &window, windowFields, row);
        for (Entry& entry : std::span{reading.entries}.last(windowFields.size())) {
            entry.key.part = part;
        }
    }
}

constexpr std::array<const char*, timeTableTextEnds.size()> timeTableTexts{
    "TimeTable text 1", "TimeTable text 2",  "TimeTable text 3",  "TimeTable text 4",
    "TimeTable text 5", "TimeTable text 6",  "TimeTable text 7",  "TimeTable text 8",
    "TimeTable text 9", "TimeTable text 10", "TimeTable text 11", "TimeTable text 12",
    "TimeTable text 13"};

void readTables(Reading& reading, const DunvaleRun& run) {
    const TimeTable& table = *run.lpTimeTable;
    std::size_t start = 0;
    for (std::size_t i = 0; i < timeTableTexts.size(); ++i) {
        const std::string text{table.Texts + start};
        start = timeTableTextEnds[i] + 1;
        if (!text.empty()) {
            add(reading, timeTableTexts[i], text);
        }
    }
    const std::int64_t notes =
        run.lpAnno == nullptr ? 0 : byteCountOf(run.lpAnno) / std::int64_t{sizeof(Anno)};
    for (const auto& [name, count] : {std::pair<const char*, std::int64_t>{"Anno records", notes},
                                      {"TTLine records", table.TTLineCount}}) {
        if (count > 0) {
            add(reading, name, static_cast<double>(count));
        }
    }
    const auto [first, second] = windowCounts(table.PeakWinCounts);
    readWindows(reading, {run.lpPeakWin, static_cast<std::size_t>(first)}, parts::windows);
    readWindows(reading, {run.lpPeakWin2, static_cast<std::size_t>(second)}, parts::windows2);
}

Reading readChannel(const std::shared_ptr<const DunvaleRun>& run, std::size_t channel) {
    const SliHeadP& head = run->lpSliHeadP[channel];
    Reading reading;
    reading.kind = FileKind::Dunvale;
    reading.channel = static_cast<int>(channel) + 1;
    reading.memory = {run};
    reading.signal = {AndiType::Float, run->plpfData[channel],
                      static_cast<std::size_t>(head.PointCount)};
    reading.signalFactor = head.ScaleFactor;
    readFields(reading, &run->head, runHeadFields);
    readFields(reading, &run->info, runInfoFields);
    readFields(reading, &head, signalHeadFields);
    readPeaks(reading, *run, channel);
    readTables(reading, *run);
    return reading;
}

} // namespace

std::vector<Reading> readRun(const std::string& file) {
    const auto run = loadRun(file);
    std::vector<Reading> channels;
    for (std::size_t channel = 0; std::cmp_less(channel, run->channelCount); ++channel) {
        channels.push_back(readChannel(run, channel));
    }
    return channels;
}

} // namespace korlit::host
