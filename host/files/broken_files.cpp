#include "host/files/broken_files.h"

#include "dunvale/run_extent.h"
#include "dunvale/run_records.h"
#include "host/files/andi_image.h"
#include "host/files/extensions.h"
#include "host/text/numbers.h"
#include "native/native_records.h"
#include "platform/checked_io.h"

#include <algorithm>
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

std::string cutInHead(std::int64_t size) {
    return "cut within its head: " + groupedDigits(size) + " bytes are there";
}

/// Where the data of a file end by what its header says.
std::int64_t endOfData(const AndiImage& image) {
    std::int64_t end = 0;
    for (const AndiVariable& variable : variablesOf(image)) {
        end = std::max(end, std::int64_t{variable.Begin} + variable.VSize);
    }
    return end;
}

} // namespace

std::string flawOfAndi(const std::string& file, std::int64_t size) {
    std::string start(3, '\0');
    std::ifstream{file, std::ios::binary}.read(start.data(), std::ssize(start));
    if (start != "CDF") {
        return "it doesn't start as netCDF files do";
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
    return due > size ? cutWords(size, due, "bytes") : "";
}

std::string flawOfPairFile(const std::string& file, std::int64_t size) {
    if (hasExtension(file, reportExtension)) {
        constexpr std::int64_t headSize = sizeof(RepHeader) + sizeof(ResHeader);
        return size < headSize ? cutInHead(size) : "";
    }
    if (size < sliceDataOffset) {
        return cutInHead(size);
    }
    SliHeader header{};
    std::ifstream{file, std::ios::binary}.read(reinterpret_cast<char*>(&header), sizeof header);
    const std::int64_t there = (size - sliceDataOffset) / std::int64_t{sizeof(float)};
    return there < header.PointCount ? cutWords(there, header.PointCount, "samples") : "";
}

std::string flawOfRun(const std::string& file, std::int64_t /*size*/) {
    return runCut(file).words;
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
    if (extent->samplesThere < extent->samples) {
        return {.words = cutWords(extent->samplesThere, extent->samples, "samples"),
                .isOfSignal = true};
    }
    if (extent->channelsThere < extent->channels) {
        return {.words = cutWords(extent->channelsThere, extent->channels, "channels"),
                .isOfSignal = true};
    }
    return {.words = extent->isWhole
                         ? ""
                         : "cut behind its samples: peaks or their names may be missing"};
}

} // namespace korlit::host
