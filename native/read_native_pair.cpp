#include "native/read_native_pair.h"

#include "native/native_state.h"
#include "native/native_to_andi.h"
#include "native/ostrelix.h"
#include "platform/checked_io.h"
#include "platform/files.h"
#include "platform/text.h"

#include <cstring>

namespace korlit {

namespace {

constexpr const char* noLibraryText = "Fatal Error\n\n: Cannot load \"Ostrelix.dll\"";
constexpr const char* noEntryPointText =
    "Fatal Error:\n--------------\n\nCannot locate \"%s\" Function in %s !!!";
constexpr const char* noSliceText = "Error opening Merivolta Raw Data file %s";
constexpr const char* noReportText = "Error opening Merivolta Report file %s";
constexpr const char* noDataOffsetText =
    "Fatal Error:\n\nCannot Get SliDataOffSet from Version !!!";
constexpr const char* noMemoryForDataText = "Out of memory reading file %s";
constexpr const char* notUpdatedText = "Unable to update Report Header in File %s";
constexpr const char* tooManyPeaksText = "Too many Results in File %s";
constexpr const char* noMemoryForPeaksText = "Out of Memory reading File %s";
constexpr const char* readFailedText = "Error reading Merivolta file %s";

/// What one conversion holds. Whatever it still holds at its end is released.
struct Reading {
    char* path;
    char* extension;
    std::span<char> message;
    LibraryHandle library = nullptr;
    int slice = fileError;
    int report = fileError;
    NativeBlocks blocks;

    ~Reading() {
        releaseLibrary();
        closeFiles();
    }

    void releaseLibrary() {
        FreeLibrary(library);
        library = nullptr;
    }
    void closeFiles() {
        _lclose(slice);
        _lclose(report);
        slice = report = fileError;
    }
    void setExtension(const char* text) const { std::strcpy(extension, text); }
};

/// Tells the reason; answers false.
bool fail(const Reading& reading, const char* format) {
    formatText(reading.message, format, reading.path);
    return false;
}

bool failWithoutEntryPoint(const Reading& reading, const EntryPointNames& names) {
    formatText(reading.message, noEntryPointText, names.plain, ostrelixName);
    return false;
}

/// Runs a call into the sibling library; answers false if it threw. Its exception ends here, while
/// the library that it belongs to is still loaded.
template <typename Call>
bool callSibling(Call call) {
    try {
        call();
        return true;
    } catch (...) {
        return false;
    }
}

bool loadLibrary(Reading& reading) {
    reading.library = LoadLibraryA(ostrelixName);
    return reading.library != nullptr || fail(reading, noLibraryText);
}

bool readSliceHeader(const Reading& reading) {
    const auto readChromHeader =
        entryPoint<ReadChromHeaderEntry>(reading.library, readChromHeaderNames);
    if (readChromHeader == nullptr) {
        return failWithoutEntryPoint(reading, readChromHeaderNames);
    }
    return callSibling([&] { readChromHeader(reading.path, &TheSliHeader, 0); });
}

bool openFiles(Reading& reading) {
    reading.slice = _lopen(reading.path);
    if (reading.slice == fileError) {
        return fail(reading, noSliceText);
    }
    reading.setExtension(reportExtension);
    reading.report = _lopen(reading.path);
    if (reading.report == fileError) {
        return fail(reading, noReportText);
    }
    beginReading();
    return true;
}

/// The version is one that the library doesn't know. It tells the user itself if it can.
bool refuseVersion(Reading& reading) {
    const auto fileReadError = entryPoint<FileReadErrorEntry>(reading.library, fileReadErrorNames);
    reading.setExtension(sliceExtension);
    if (fileReadError == nullptr) {
        return fail(reading, noDataOffsetText);
    }
    callSibling([&] { fileReadError(reading.path); });
    return false;
}

bool seekSamples(Reading& reading) {
    const auto getSliDataOffSet =
        entryPoint<GetSliDataOffSetEntry>(reading.library, getSliDataOffSetNames);
    if (getSliDataOffSet == nullptr) {
        return failWithoutEntryPoint(reading, getSliDataOffSetNames);
    }
    std::uint32_t offset = 0;
    std::int32_t isKnown = 0;
    if (!callSibling([&] { isKnown = getSliDataOffSet(TheSliHeader.FormatVersion, &offset); })) {
        return false;
    }
    if (isKnown == 0) {
        return refuseVersion(reading);
    }
    _llseek(reading.slice, offset, SeekOrigin::Start);
    return true;
}

bool readSamples(Reading& reading) {
    const std::int64_t byteCount = std::int64_t{sizeof(float)} * TheSliHeader.PointCount;
    if (!acquireBlock(reading.blocks.dataHandle, reading.blocks.data, byteCount)) {
        reading.setExtension(sliceExtension);
        return fail(reading, noMemoryForDataText);
    }
    ReadChecked(reading.slice, reading.blocks.data, byteCount);
    return true;
}

int headerRevision() {
    return (TheRepHeader.ReportFlags & headerRevisionMask) >> headerRevisionShift;
}

bool readReportHeader(Reading& reading) {
    ReadChecked(reading.report, &TheRepHeader, sizeof TheRepHeader);
    if (headerRevision() < currentHeaderRevision &&
        BringRepHeaderUpToDate(reading.library, reading.path) == 0) {
        return fail(reading, notUpdatedText);
    }
    reading.releaseLibrary();
    return true;
}

void readPeak(const Reading& reading, PeakRecord& peak) {
    if ((TheRepHeader.ReportFlags & longPeakRecords) != 0) {
        ReadChecked(reading.report, &peak, sizeof peak);
        return;
    }
    ReadChecked(reading.report, &peak, shortPeakRecordSize);
    peak.BaselineStartTime = peak.PeakStartTime;
    peak.BaselineStopTime = peak.PeakEndTime;
}

bool readPeaks(Reading& reading) {
    _llseek(reading.report, TheRepHeader.ResultsOffset, SeekOrigin::Start);
    ReadChecked(reading.report, &TheResHeader, sizeof TheResHeader);
    if (TheResHeader.PeakCount == 0) {
        return true;
    }
    const std::int64_t byteCount = std::int64_t{sizeof(PeakRecord)} * TheResHeader.PeakCount;
    if (byteCount > maxReadPeakBytes) {
        return fail(reading, tooManyPeaksText);
    }
    if (!acquireBlock(reading.blocks.peakHandle, reading.blocks.peaks, byteCount)) {
        return fail(reading, noMemoryForPeaksText);
    }
    _llseek(reading.report, peakTableEntrySize * TheResHeader.PeakTableCount, SeekOrigin::Current);
    for (int i = 0; i < TheResHeader.PeakCount; ++i) {
        readPeak(reading, reading.blocks.peaks[i]);
    }
    return true;
}

bool convert(Reading& reading) {
    const bool areAllRead = loadLibrary(reading) && readSliceHeader(reading) &&
                            openFiles(reading) && seekSamples(reading) && readSamples(reading) &&
                            readReportHeader(reading) && readPeaks(reading);
    if (!areAllRead) {
        return false;
    }
    reading.closeFiles();
    if (hasReadFailed()) {
        return fail(reading, readFailedText);
    }
    *reading.extension = '\0';
    return MapNativeToAndi(reading.blocks, &TheAndiFile, reading.path, reading.message) == 1;
}

} // namespace

// NOLINTNEXTLINE(readability-non-const-parameter): both are written through the record
bool ReadNativePair(char* path, char* extension, std::span<char> message) {
    Reading reading{.path = path, .extension = extension, .message = message, .blocks = {}};
    return convert(reading);
}

int BringRepHeaderUpToDate(LibraryHandle library, const char* path) {
    const auto updateRepHeader = entryPoint<UpdateRepHeaderEntry>(library, updateRepHeaderNames);
    CFile report;
    if (updateRepHeader == nullptr || !report.Open(path)) {
        return 0;
    }
    return callSibling([&] { updateRepHeader(&report, &TheRepHeader, 0); }) ? 1 : 0;
}

} // namespace korlit
