// The records of a Merivolta data set, byte for byte as they lie in its two files.
//
// A SliceFile (.sli) is a SliHeader, zeros up to offset 2048, and the samples as floats. A
// ReportFile (.rpt) is a RepHeader, a ResHeader at offset 288, a PeakTable of two zero bytes a peak
// and the PeakRecord entries. All numbers are little-endian. Texts end at their first NUL, which
// their width includes. Every byte that no field covers is zero in what this library writes.
//
// Records are packed and stand at odd addresses in arrays: a field is read and written by value or
// by copy, never through a reference or pointer of its own type.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace korlit {

#pragma pack(push, 1)

struct SliHeader {
    std::uint32_t PointCount;
    float MinValue; ///< extremes as stored, before ScaleFactor
    float MaxValue;
    std::int16_t SampleIntervalMs;
    char SampleName[21];
    char DateText[11]; ///< dd.mm.yyyy
    char TimeText[6];  ///< hh:mm
    std::uint8_t reserved52[1];
    std::int16_t AutosamplerRack;
    std::int16_t AutosamplerVial;
    std::uint8_t reserved57[12];
    char OperatorName[18];
    std::uint8_t reserved87[25];
    std::uint16_t FormatVersion;
    std::uint8_t reserved114[1692];
    char DetectorUnit[10];
    double ScaleFactor; ///< a stored value times this is the value in DetectorUnit
    std::uint16_t SeparationType;
    std::uint8_t reserved1826[31];
};

struct RepHeader {
    std::uint16_t ReportFlags;
    std::uint8_t reserved2[133];
    std::int32_t ResultsOffset; ///< offset of the ResHeader in the file
    std::int32_t ResultsSize;   ///< from there to the end of the last PeakRecord
    std::uint8_t reserved143[145];
};

struct ResHeader {
    char ResultDate[11];
    char ResultTime[6];
    std::uint8_t reserved17[43];
    std::int16_t PeakTableCount;
    std::int16_t PeakCount;
};

/// Times are minutes.
struct PeakRecord {
    std::uint16_t PeakNumber;
    std::uint8_t reserved2[2];
    float RetentionTime;
    float PeakArea;
    float PeakHeight;
    float PeakStartTime;
    float PeakEndTime;
    float PeakAreaPercent;
    std::uint8_t reserved28[4];
    char PeakName[18];
    float BaselineStartTime;
    float BaselineStopTime;
    std::uint8_t reserved58[4];
    float ExtAreaPercent;
    std::uint8_t reserved66[12];
    float PeakAmount;
    std::uint8_t reserved82[32];
};

#pragma pack(pop)

static_assert(sizeof(SliHeader) == 1857);
static_assert(offsetof(SliHeader, SampleIntervalMs) == 12);
static_assert(offsetof(SliHeader, SampleName) == 14);
static_assert(offsetof(SliHeader, DateText) == 35);
static_assert(offsetof(SliHeader, TimeText) == 46);
static_assert(offsetof(SliHeader, AutosamplerRack) == 53);
static_assert(offsetof(SliHeader, AutosamplerVial) == 55);
static_assert(offsetof(SliHeader, OperatorName) == 69);
static_assert(offsetof(SliHeader, FormatVersion) == 112);
static_assert(offsetof(SliHeader, DetectorUnit) == 1806);
static_assert(offsetof(SliHeader, ScaleFactor) == 1816);
static_assert(offsetof(SliHeader, SeparationType) == 1824);

static_assert(sizeof(RepHeader) == 288);
static_assert(offsetof(RepHeader, ResultsOffset) == 135);
static_assert(offsetof(RepHeader, ResultsSize) == 139);

static_assert(sizeof(ResHeader) == 64);
static_assert(offsetof(ResHeader, ResultTime) == 11);
static_assert(offsetof(ResHeader, PeakTableCount) == 60);
static_assert(offsetof(ResHeader, PeakCount) == 62);

static_assert(sizeof(PeakRecord) == 114);
static_assert(offsetof(PeakRecord, RetentionTime) == 4);
static_assert(offsetof(PeakRecord, PeakAreaPercent) == 24);
static_assert(offsetof(PeakRecord, PeakName) == 32);
static_assert(offsetof(PeakRecord, BaselineStartTime) == 50);
static_assert(offsetof(PeakRecord, BaselineStopTime) == 54);
static_assert(offsetof(PeakRecord, ExtAreaPercent) == 62);
static_assert(offsetof(PeakRecord, PeakAmount) == 78);

/// The text in a field: up to its first NUL, or all of a field that holds none.
template <std::size_t width>
std::string_view textOf(const char (&field)[width]) {
    return {field, static_cast<std::size_t>(std::find(field, field + width, '\0') - field)};
}

/// What the base name of a data set ends in.
constexpr const char* sliceExtension = ".sli";
constexpr const char* reportExtension = ".rpt";

/// FormatVersion of the slice files written here, and where such a file has its samples.
constexpr std::uint16_t sliceFormatVersion = 0x0600;
constexpr std::int64_t sliceDataOffset = 2048;

/// Bit fields of ReportFlags: the kind in bits 0 to 1, the revision of the header in bits 2 to 4,
/// and bit 13 for PeakRecords of 114 bytes.
constexpr std::uint16_t reportKindResults = 1;
constexpr int headerRevisionShift = 2;
constexpr std::uint16_t currentHeaderRevision = 5;
constexpr std::uint16_t longPeakRecords = 1U << 13;
constexpr std::uint16_t writtenReportFlags =
    reportKindResults | (currentHeaderRevision << headerRevisionShift) | longPeakRecords;
static_assert(writtenReportFlags == 0x2015);

constexpr std::uint16_t headerRevisionMask = 7U << headerRevisionShift;

/// A PeakRecord of a report whose longPeakRecords is clear: the first 50 bytes of the long form.
constexpr std::int64_t shortPeakRecordSize = 50;
static_assert(offsetof(PeakRecord, BaselineStartTime) == shortPeakRecordSize);

/// Bytes of one PeakTable entry.
constexpr std::int64_t peakTableEntrySize = 2;

/// Most bytes of PeakRecords that a written report holds: 570 peaks.
constexpr std::int64_t maxWrittenPeakBytes = 65000;

/// Most bytes of PeakRecords, in their long form, that are read: 574 peaks.
constexpr std::int64_t maxReadPeakBytes = 65500;

} // namespace korlit
