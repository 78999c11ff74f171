#include "native/write_native_pair.h"

#include "andi/andi_reader.h"
#include "api/checked_io.h"
#include "api/shared_state.h"
#include "native/andi_to_native.h"
#include "platform/files.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace korlit {

namespace {

constexpr const char* sliceNotCreatedText = "Error writing Merivolta Slice File %s";
constexpr const char* reportNotCreatedText = "Error writing Merivolta Report File %s";
constexpr const char* writeFailedText = "Error writing Merivolta file %s";
constexpr const char* writtenText = "Wrote Merivolta file %s";

/// Stretches to which nothing gives a meaning are written out as zeros, so that a file is as long
/// as its layout says even if nothing follows.
void writeZeros(int file, std::int64_t byteCount) {
    static constexpr std::array<char, 256> zeros{};
    while (byteCount > 0) {
        const std::int64_t part = std::min<std::int64_t>(byteCount, zeros.size());
        WriteChecked(file, zeros.data(), part);
        byteCount -= part;
    }
}

/// The RepHeader goes out twice: first to take up its room, then with the place of the results.
void writeReportFile(int file, const PeakRecord* peaks) {
    const std::int64_t peakTableSize = peakTableEntrySize * TheResHeader.PeakTableCount;
    const std::int64_t peakSize = sizeof(PeakRecord);
    WriteChecked(file, &TheRepHeader, sizeof TheRepHeader);
    WriteChecked(file, &TheResHeader, sizeof TheResHeader);
    writeZeros(file, peakTableSize);
    TheRepHeader.ResultsOffset = sizeof TheRepHeader;
    TheRepHeader.ResultsSize = static_cast<std::int32_t>(
        std::int64_t{sizeof TheResHeader} + peakTableSize + peakSize * TheResHeader.PeakCount);
    for (int i = 0; i < TheResHeader.PeakCount; ++i) {
        WriteChecked(file, &peaks[i], peakSize);
    }
    _llseek(file, 0, SeekOrigin::Start);
    WriteChecked(file, &TheRepHeader, sizeof TheRepHeader);
}

int fail(std::span<char> message, const char* format, const char* path) {
    formatText(message, format, path);
    return 0;
}

/// Fills the two open files from TheAndiFile and closes them.
int writePair(int slice, int report, const char* path, std::span<char> message) {
    NativeBlocks blocks{};
    const int isMapped = MapAndiToNative(blocks, &TheAndiFile, message);
    WriteErrorFlag = 0;
    if (isMapped == 1) {
        WriteSliceFile(slice, blocks.data);
        writeReportFile(report, blocks.peaks);
    }
    CloseWritten(slice);
    CloseWritten(report);
    FreeAndiFile(&TheAndiFile);
    releaseBlock(blocks.dataHandle, blocks.data);
    releaseBlock(blocks.peakHandle, blocks.peaks);
    if (isMapped == 0) {
        return 0;
    }
    if (WriteErrorFlag != 0) {
        return fail(message, writeFailedText, path);
    }
    formatText(message, writtenText, path);
    return 1;
}

} // namespace

int WriteNativePair(char* path, char* extension, std::span<char> message) {
    FreeAndiFile(&TheAndiFile);
    if (ReadAndiFile(path, &TheAndiFile, message) == 0) {
        return 0;
    }
    std::strcpy(extension, sliceExtension);
    const int slice = _lcreat(path);
    if (slice == fileError) {
        return fail(message, sliceNotCreatedText, path);
    }
    std::strcpy(extension, reportExtension);
    const int report = _lcreat(path);
    if (report == fileError) {
        _lclose(slice);
        return fail(message, reportNotCreatedText, path);
    }
    std::strcpy(extension, sliceExtension);
    return writePair(slice, report, path, message);
}

void WriteSliceFile(int file, const float* data) {
    if (TheSliHeader.MinValue > TheSliHeader.MaxValue) {
        const float smaller = TheSliHeader.MaxValue;
        TheSliHeader.MaxValue = TheSliHeader.MinValue;
        TheSliHeader.MinValue = smaller;
    }
    WriteChecked(file, &TheSliHeader, sizeof TheSliHeader);
    writeZeros(file, sliceDataOffset - std::int64_t{sizeof TheSliHeader});
    WriteChecked(file, data, std::int64_t{sizeof(float)} * TheSliHeader.PointCount);
}

} // namespace korlit
