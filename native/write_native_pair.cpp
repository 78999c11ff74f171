#include "native/write_native_pair.h"

#include "andi/andi_reader.h"
#include "native/andi_to_native.h"
#include "native/native_state.h"
#include "platform/checked_io.h"
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

/// The RepHeader goes out twice: first to take up its room, then with the place of the results,
/// once these are in the file: one that was cut short announces none.
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
    FlushWritten(file);
    _llseek(file, 0, SeekOrigin::Start);
    WriteChecked(file, &TheRepHeader, sizeof TheRepHeader);
}

/// What one conversion holds. Whatever it still holds at its end is released.
struct Writing {
    char* path;
    char* extension;
    std::span<char> message;
    int slice = fileError;
    int report = fileError;
    NativeBlocks blocks;

    ~Writing() {
        _lclose(slice);
        _lclose(report);
    }
    void setExtension(const char* text) const { std::strcpy(extension, text); }
    /// The file of that extension, created or emptied.
    int create(const char* text) const {
        setExtension(text);
        return _lcreat(path);
    }
    void closeFiles() {
        CloseWritten(slice);
        CloseWritten(report);
        slice = report = fileError;
    }
};

/// Tells the reason; answers false.
bool fail(const Writing& writing, const char* format) {
    formatText(writing.message, format, writing.path);
    return false;
}

bool createFiles(Writing& writing) {
    writing.slice = writing.create(sliceExtension);
    if (writing.slice == fileError) {
        return fail(writing, sliceNotCreatedText);
    }
    writing.report = writing.create(reportExtension);
    if (writing.report == fileError) {
        return fail(writing, reportNotCreatedText);
    }
    writing.setExtension(sliceExtension);
    return true;
}

/// The mapping leaves the file to be released on some of its roads.
bool mapFile(Writing& writing) {
    const bool isMapped = MapAndiToNative(writing.blocks, &TheAndiFile, writing.message) == 1;
    FreeAndiFile(&TheAndiFile);
    return isMapped;
}

bool writeFiles(Writing& writing) {
    beginWriting();
    WriteSliceFile(writing.slice, writing.blocks.data);
    FlushWritten(writing.slice);
    writeReportFile(writing.report, writing.blocks.peaks);
    writing.closeFiles();
    return !hasWriteFailed() || fail(writing, writeFailedText);
}

} // namespace

// NOLINTNEXTLINE(readability-non-const-parameter): both are written through the record
bool WriteNativePair(char* path, char* extension, std::span<char> message) {
    Writing writing{.path = path, .extension = extension, .message = message, .blocks = {}};
    const bool isWritten = ReadAndiFile(path, &TheAndiFile, message) == 1 && createFiles(writing) &&
                           mapFile(writing) && writeFiles(writing);
    if (isWritten) {
        formatText(message, writtenText, path);
    }
    return isWritten;
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
