#include "host/files/broken_files.h"

#include "dunvale/run_extent.h"
#include "dunvale/run_records.h"
#include "host/files/andi_image.h"
#include "host/files/extensions.h"
#include "host/files/file_start.h"
#include "host/text/numbers.h"
#include "native/native_records.h"
#include "platform/checked_io.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

constexpr std::int64_t runHeadSize = sizeof(RunFileHead) + sizeof(RunInfo) + sizeof(std::int16_t);

std::string cutWords(std::int64_t there, std::int64_t due, const char* things) {
    return "cut: " + groupedDigits(there) + " of " + groupedDigits(due) + ' ' + things +
           " are there";
}

/// The peaks of all channels stand behind the samples of the last.
constexpr const char* noPeaks = ", and no peaks";

/// How many samples the channels have that aren't there is not known: their heads say it.
std::string cutWords(const RunExtent& extent) {
    if (extent.samplesThere == extent.samples && extent.channelsThere < extent.channels) {
        return cutWords(extent.channelsThere, extent.channels, "channels") + noPeaks;
    }
    if (extent.samplesThere == extent.samples) {
        return extent.isWhole ? "" : "cut behind its samples: peaks or their names may be missing";
    }
    const int missing = extent.channels - extent.channelsThere;
    const std::string words = cutWords(extent.samplesThere, extent.samples, "samples");
    return missing == 0 ? words + noPeaks
                        : words + ", nothing of " + std::to_string(missing) +
                              (missing == 1 ? " more channel" : " more channels") + " and no peaks";
}

std::string cutInHead(std::int64_t size) {
    return "cut within its head: " + groupedDigits(size) + " bytes are there";
}

bool hasSamples(const AndiImage& image) {
    const AndiVariable* signal = variableNamed(image, "ordinate_values");
    return signal != nullptr && signal->ElementCount > 0;
}

/// Bytes from one record to the next.
std::int64_t recordSize(const AndiImage& image) {
    std::int64_t size = 0;
    for (const AndiVariable& variable : variablesOf(image)) {
        size += variable.IsRecord == 1 ? variable.VSize : 0;
    }
    return size;
}

/// Where the data of a file end by what its header says.
std::int64_t endOfData(const AndiImage& image) {
    const std::int64_t recordCount = image.file.RecordCount;
    const std::int64_t toLastRecord = (recordCount - 1) * recordSize(image);
    std::int64_t end = 0;
    for (const AndiVariable& variable : variablesOf(image)) {
        if (variable.IsRecord != 1) {
            end = std::max(end, std::int64_t{variable.Begin} + variable.VSize);
        } else if (recordCount > 0) {
            end = std::max(end, variable.Begin + toLastRecord + variable.VSize);
        }
    }
    return end;
}

template <typename Record>
Record recordAt(std::ifstream& in, std::int64_t place) {
    Record record{};
    in.seekg(place);
    in.read(reinterpret_cast<char*>(&record), sizeof record);
    return record;
}

std::string flawOfReport(const std::string& file, std::int64_t size) {
    if (size < std::int64_t{sizeof(RepHeader)}) {
        return cutInHead(size);
    }
    if (!isReport(file)) {
        return noReportText;
    }
    std::ifstream in{file, std::ios::binary};
    const auto head = recordAt<RepHeader>(in, 0);
    const auto results = recordAt<ResHeader>(in, head.ResultsOffset);
    const bool areLong = (head.ReportFlags & longPeakRecords) != 0;
    const std::int64_t peakSize = areLong ? std::int64_t{sizeof(PeakRecord)} : shortPeakRecordSize;
    const std::int64_t due = head.ResultsOffset + std::int64_t{sizeof results} +
                             peakTableEntrySize * results.PeakTableCount +
                             peakSize * results.PeakCount;
    return due > size ? cutWords(size, due, "bytes") : "";
}

/// Of a run with so many channels that no conversion takes it; empty of any other file.
std::string oddChannels(const FileStart& start) {
    constexpr int mostBelievable = 100;
    const auto channels = start.recordAt<std::int16_t>(runHeadSize - sizeof(std::int16_t));
    const bool isOdd = channels == 0 || (channels > maxChannels && channels <= mostBelievable);
    return hasRunVersion(start) && start.length >= runHeadSize && isOdd
               ? "a Dunvale run of " + std::to_string(channels) + " channels: 1 to " +
                     std::to_string(maxChannels) + " can be read"
               : "";
}

/// What a file may be that is read as ANDI since it is of no known kind: a slice file by another
/// name, or a run of so many channels that no conversion takes it. Empty where nothing speaks for
/// it.
std::string likenessOf(const FileStart& start) {
    if (std::string run = oddChannels(start); !run.empty()) {
        return run;
    }
    const std::int64_t points = start.recordAt<std::uint32_t>(offsetof(SliHeader, PointCount));
    const std::int64_t size = sliceDataOffset + std::int64_t{sizeof(float)} * points;
    return points > 0 && size == start.fileSize
               ? "it looks like the slice file of a Merivolta pair, which is read by its name, "
                 "with the report beside it"
               : "";
}

} // namespace

std::string flawOfAndi(const std::string& file, std::int64_t size) {
    std::string start(3, '\0');
    std::ifstream{file, std::ios::binary}.read(start.data(), std::ssize(start));
    if (start != "CDF") {
        const std::string seen = likenessOf(startOf(file));
        return seen.empty() ? "it doesn't start as netCDF files do" : seen;
    }
    AndiImage image;
    const std::string reason = loadHeader(image, file);
    if (!reason.empty()) {
        return hasReadFailed() ? cutInHead(size) : "";
    }
    if (variableNamed(image, "ordinate_values") == nullptr) {
        return noChromatogramText;
    }
    const std::int64_t due = endOfData(image);
    if (due > size) {
        return cutWords(size, due, "bytes");
    }
    return hasSamples(image) ? "" : noSamplesText;
}

bool isReport(const std::string& file) {
    constexpr std::uint16_t kind = 3;
    std::ifstream in{file, std::ios::binary};
    const auto head = recordAt<RepHeader>(in, 0);
    return (head.ReportFlags & kind) == reportKindResults &&
           head.ResultsOffset >= std::int32_t{sizeof head};
}

std::string flawOfPairFile(const std::string& file, std::int64_t size) {
    if (hasExtension(file, reportExtension)) {
        return flawOfReport(file, size);
    }
    if (size < sliceDataOffset) {
        return cutInHead(size);
    }
    SliHeader header{};
    std::ifstream{file, std::ios::binary}.read(reinterpret_cast<char*>(&header), sizeof header);
    if (header.PointCount == 0) {
        return "it has no samples";
    }
    const std::int64_t there = (size - sliceDataOffset) / std::int64_t{sizeof(float)};
    return there < header.PointCount ? cutWords(there, header.PointCount, "samples") : "";
}

std::string flawOfRun(const std::string& file, std::int64_t /*size*/) {
    const std::string cut = runCut(file).words;
    return cut.empty() ? oddChannels(startOf(file)) : cut;
}

RunCut runCut(const std::string& file) {
    CFile run;
    const auto extent = run.Open(file.c_str()) ? extentOf(run) : std::nullopt;
    if (!extent) {
        std::error_code error;
        const auto size = fs::file_size(file, error);
        const bool isCut = !error && static_cast<std::int64_t>(size) < runHeadSize;
        return {.words = isCut ? cutInHead(static_cast<std::int64_t>(size)) : "",
                .isOfSignal = isCut};
    }
    return {.words = cutWords(*extent),
            .isOfSignal =
                extent->samplesThere < extent->samples || extent->channelsThere < extent->channels,
            .channels = static_cast<std::size_t>(extent->channels)};
}

} // namespace korlit::host
