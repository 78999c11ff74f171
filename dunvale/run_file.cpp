#include "dunvale/run_file.h"

#include "platform/heap.h"
#include "platform/text.h"

#include <algorithm>

namespace korlit {

namespace {

constexpr const char* channelCountText = "Read Error!!!\r\nChannel No. = %d.";
constexpr const char* noMemoryText = "Out of Memory !!!\r\nNo Mem for %s.";
constexpr const char* noMemoryForChannelText = "Out of Memory !!!\r\nNo Mem for %s[%d].";
constexpr const char* readFailedText = "Unable to read\r\n\"%s\"";

/// A count that no memory can hold.
constexpr std::int64_t noSuchCount = -1;

struct RunReader {
    const char* path;
    CFile& file;
    DunvaleRun& run;
    std::span<char> message;
    RunLayout layout{};
    std::int64_t missingBytes = 0; ///< of the samples, behind the end of the file
    std::int16_t wErrorCode = runIsRead;
};

// Each step answers whether the reading may go on. Where it may not, the reason is told.

bool read(RunReader& reader, void* target, std::int64_t byteCount) {
    if (reader.file.Read(target, byteCount) >= 0) {
        return true;
    }
    reader.wErrorCode = runReadFailed;
    formatText(reader.message, readFailedText, reader.path);
    return false;
}

/// Reads records of `recordSize` bytes, each to the start of an item.
template <typename Item>
bool readRecords(RunReader& reader, Item* items, std::int64_t count, std::int64_t recordSize) {
    if (recordSize == std::int64_t{sizeof(Item)}) {
        return read(reader, items, count * recordSize);
    }
    for (std::int64_t i = 0; i < count; ++i) {
        if (!read(reader, &items[i], recordSize)) {
            return false;
        }
    }
    return true;
}

template <typename Item>
bool readRecords(RunReader& reader, Item* items, std::int64_t count) {
    return readRecords(reader, items, count, sizeof(Item));
}

/// Reads along what has no meaning here.
bool skip(RunReader& reader, std::int64_t byteCount) {
    std::array<std::byte, 2048> dropped{};
    for (std::int64_t left = byteCount; left > 0; left -= std::ssize(dropped)) {
        if (!read(reader, dropped.data(), std::min(left, std::ssize(dropped)))) {
            return false;
        }
    }
    return true;
}

/// A zero-filled array that goes by `name`.
template <typename Item>
bool acquire(RunReader& reader, Item*& items, std::int64_t count, const char* name) {
    items = newItems<Item>(count);
    if (items == nullptr) {
        reader.wErrorCode = noMemoryForRun;
        formatText(reader.message, noMemoryText, name);
    }
    return items != nullptr;
}

/// The array of one channel in the table that goes by `name`.
template <typename Item>
bool acquire(RunReader& reader, Item** table, int channel, std::int64_t count, const char* name) {
    table[channel] = newItems<Item>(count);
    if (table[channel] == nullptr) {
        reader.wErrorCode = noMemoryForRun;
        formatText(reader.message, noMemoryForChannelText, name, channel);
    }
    return table[channel] != nullptr;
}

bool readHead(RunReader& reader) {
    DunvaleRun& run = reader.run;
    if (!read(reader, &run.head, sizeof run.head) || !read(reader, &run.info, sizeof run.info) ||
        !read(reader, &run.channelCount, sizeof run.channelCount)) {
        return false;
    }
    reader.layout = layoutOf(run.head.RunVersion);
    // A negative count passes here and finds no memory.
    if (run.channelCount == 0 || run.channelCount > maxChannels) {
        reader.wErrorCode = badChannelCount;
        formatText(reader.message, channelCountText, run.channelCount);
        return false;
    }
    return true;
}

/// Samples behind the end of the file count as zero. A run that was cut lacks some millions at the
/// most; one that announces more of them than this would only fill memory and disk with zeros.
bool hasSamples(RunReader& reader, std::int32_t pointCount) {
    constexpr std::int64_t mostMissingBytes = 64L * 1024 * 1024;
    const std::int64_t byteCount = std::int64_t{sizeof(float)} * pointCount;
    reader.missingBytes += std::max<std::int64_t>(0, byteCount - reader.file.GetRemaining());
    return reader.missingBytes <= mostMissingBytes;
}

bool readSignal(RunReader& reader, int channel) {
    DunvaleRun& run = reader.run;
    SliHeadP& head = run.lpSliHeadP[channel];
    if (!read(reader, &head, sizeof head)) {
        return false;
    }
    const std::int64_t count = hasSamples(reader, head.PointCount) ? head.PointCount : noSuchCount;
    return acquire(reader, run.plpfData, channel, count, "plpfData") &&
           readRecords(reader, run.plpfData[channel], count);
}

bool readSignals(RunReader& reader) {
    DunvaleRun& run = reader.run;
    if (!acquire(reader, run.lpSliHeadP, run.channelCount, "lpSliHeadP") ||
        !acquire(reader, run.plpfData, run.channelCount, "plpfData")) {
        return false;
    }
    for (int channel = 0; channel < run.channelCount; ++channel) {
        if (!readSignal(reader, channel)) {
            return false;
        }
    }
    return true;
}

bool skipChannelExtraTable(RunReader& reader) {
    constexpr std::int64_t entrySize = 4;
    std::int16_t entryCount = 0;
    return read(reader, &entryCount, sizeof entryCount) && skip(reader, entryCount * entrySize);
}

bool readChannelPeaks(RunReader& reader, int channel) {
    DunvaleRun& run = reader.run;
    ResHead& head = run.lpResHead[channel];
    return read(reader, &head, sizeof head) &&
           acquire(reader, run.plpResults, channel, head.ResultCount, "plpResults") &&
           readRecords(reader, run.plpResults[channel], head.ResultCount,
                       reader.layout.resultSize) &&
           acquire(reader, run.plpPeaks, channel, head.EventCount, "plpPeaks") &&
           readRecords(reader, run.plpPeaks[channel], head.EventCount) &&
           (!reader.layout.hasChannelExtraTable || skipChannelExtraTable(reader));
}

bool readPeaks(RunReader& reader) {
    DunvaleRun& run = reader.run;
    if (!acquire(reader, run.lpResHead, run.channelCount, "lpResHead") ||
        !acquire(reader, run.plpResults, run.channelCount, "plpResults") ||
        !acquire(reader, run.plpPeaks, run.channelCount, "plpPeaks")) {
        return false;
    }
    for (int channel = 0; channel < run.channelCount; ++channel) {
        if (!readChannelPeaks(reader, channel)) {
            return false;
        }
    }
    return true;
}

bool readAnnotations(RunReader& reader) {
    std::int16_t count = 0;
    if (!read(reader, &count, sizeof count)) {
        return false;
    }
    return count == 0 || (acquire(reader, reader.run.lpAnno, count, "lpAnno") &&
                          readRecords(reader, reader.run.lpAnno, count));
}

bool readTimeTable(RunReader& reader) {
    TimeTable*& table = reader.run.lpTimeTable;
    if (!acquire(reader, table, 1, "lpTimeTable") ||
        !read(reader, table, reader.layout.timeTableSize)) {
        return false;
    }
    for (const std::size_t end : timeTableTextEnds) {
        table->Texts[end] = '\0';
    }
    return acquire(reader, reader.run.lpTTLine, table->TTLineCount, "lpTTLine") &&
           readRecords(reader, reader.run.lpTTLine, table->TTLineCount, reader.layout.ttLineSize);
}

bool readWindows(RunReader& reader) {
    DunvaleRun& run = reader.run;
    const auto [first, second] = windowCounts(run.lpTimeTable->PeakWinCounts);
    return acquire(reader, run.lpPeakWin, first, "lpPeakWin") &&
           readRecords(reader, run.lpPeakWin, first) &&
           acquire(reader, run.lpPeakWin2, second, "lpPeakWin2") &&
           readRecords(reader, run.lpPeakWin2, second);
}

} // namespace

std::int16_t ReadRun(const char* path, CFile& file, DunvaleRun& run, std::span<char> message) {
    RunReader reader{.path = path, .file = file, .run = run, .message = message};
    const bool isRead = readHead(reader) && readSignals(reader) && readPeaks(reader) &&
                        readAnnotations(reader) && skip(reader, reservedBlockSize) &&
                        readTimeTable(reader) && readWindows(reader);
    return isRead ? runIsRead : reader.wErrorCode;
}

DunvaleRun::~DunvaleRun() {
    deleteBytes(lpSliHeadP);
    deleteBytes(lpResHead);
    for (int channel = 0; plpfData != nullptr && channel < channelCount; ++channel) {
        deleteBytes(plpfData[channel]);
    }
    deleteBytes(plpfData);
    for (int channel = 0; plpResults != nullptr && channel < channelCount; ++channel) {
        deleteBytes(plpResults[channel]);
        if (plpPeaks != nullptr) {
            deleteBytes(plpPeaks[channel]);
        }
    }
    deleteBytes(plpResults);
    deleteBytes(plpPeaks);
    deleteBytes(lpAnno);
    deleteBytes(lpTimeTable);
    deleteBytes(lpTTLine);
    deleteBytes(lpPeakWin);
    deleteBytes(lpPeakWin2);
}

} // namespace korlit
