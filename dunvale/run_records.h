// The records of a Dunvale run file, byte for byte as they lie in it, and the record sizes that go
// with its version. docs/formats/dunvale.md has the order of the blocks.
//
// All numbers are little-endian. A range named reserved is one to which this library gives no
// meaning. Times are minutes.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace korlit {

#pragma pack(push, 1)

struct RunFileHead {
    float RunVersion; ///< the only mark of the format: it selects the record sizes below
    std::uint8_t reserved4[66];
};

struct RunInfo {
    std::uint8_t reserved0[104];
    char OperatorName[64];
    double StartSerial; ///< start of the run as a serial date
    std::uint8_t reserved176[20];
    std::int16_t AutosamplerRack;
    std::int16_t AutosamplerVial;
    std::uint8_t reserved200[4];
    char SampleName[30];
    std::uint8_t reserved234[2];
};

/// Head of a channel's signal; its samples follow as floats.
struct SliHeadP {
    std::uint8_t reserved0[52];
    std::int32_t PointCount;
    std::int16_t SampleIntervalMs;
    double ScaleFactor; ///< a stored sample times this is the value in DetectorUnit
    char DetectorUnit[20];
    std::uint8_t reserved86[16];
    float MinValue; ///< extremes as stored, before ScaleFactor
    float MaxValue;
};

/// Head of a channel's results.
struct ResHead {
    std::int16_t PeakWinSelect; ///< 0 for the first table of peak windows, else the second
    std::int16_t ResultCount;
    std::int16_t EventCount;
};

/// One peak.
struct Results {
    float RetentionTime;
    float StartTime;
    float EndTime;
    float Area;
    float Height;
    float Amount; ///< not in the shorter record of older files
};

/// One event of the peak detection.
struct Peaks {
    std::int32_t EventPoint; ///< index of a sample
    std::uint8_t reserved4[12];
    std::int32_t EventType; ///< dunvale/detection_codes has the meanings
};

struct Anno {
    std::uint8_t reserved0[94];
};

/// The longest form; older files hold the first part of it.
struct TimeTable {
    char Texts[1548];
    std::int16_t TTLineCount;
    std::int16_t PeakWinCounts; ///< counts of both tables of peak windows, see windowCounts
    std::uint8_t reserved1552[68];
};

struct TTLine {
    std::uint8_t reserved0[1202];
};

/// A peak whose retention time lies in the window, bounds included, has its name.
struct PeakWin {
    char WindowName[50];
    float WindowStart;
    float WindowEnd;
    std::uint8_t reserved58[620];
};

#pragma pack(pop)

static_assert(sizeof(RunFileHead) == 70);

static_assert(sizeof(RunInfo) == 236);
static_assert(offsetof(RunInfo, OperatorName) == 104);
static_assert(offsetof(RunInfo, StartSerial) == 168);
static_assert(offsetof(RunInfo, AutosamplerRack) == 196);
static_assert(offsetof(RunInfo, SampleName) == 204);

static_assert(sizeof(SliHeadP) == 110);
static_assert(offsetof(SliHeadP, PointCount) == 52);
static_assert(offsetof(SliHeadP, SampleIntervalMs) == 56);
static_assert(offsetof(SliHeadP, ScaleFactor) == 58);
static_assert(offsetof(SliHeadP, DetectorUnit) == 66);
static_assert(offsetof(SliHeadP, MinValue) == 102);
static_assert(offsetof(SliHeadP, MaxValue) == 106);

static_assert(sizeof(ResHead) == 6);
static_assert(sizeof(Results) == 24);
static_assert(offsetof(Results, Amount) == 20);
static_assert(sizeof(Peaks) == 20);
static_assert(offsetof(Peaks, EventType) == 16);
static_assert(sizeof(Anno) == 94);
static_assert(sizeof(TimeTable) == 1620);
static_assert(offsetof(TimeTable, TTLineCount) == 1548);
static_assert(offsetof(TimeTable, PeakWinCounts) == 1550);
static_assert(sizeof(TTLine) == 1202);
static_assert(sizeof(PeakWin) == 678);
static_assert(offsetof(PeakWin, WindowStart) == 50);
static_assert(offsetof(PeakWin, WindowEnd) == 54);

constexpr std::int16_t maxChannels = 9;

/// Bytes of the block between the Anno records and the TimeTable, which has no meaning here.
constexpr std::int64_t reservedBlockSize = 256;

/// Where the text fields of a TimeTable end.
constexpr std::array<std::size_t, 13> timeTableTextEnds{19,  77,  127, 177,  227,  277, 327,
                                                        427, 695, 951, 1207, 1463, 1539};

/// What a file's version decides: bytes of its records, and whether each channel has a table of
/// extra entries behind its Peaks.
struct RunLayout {
    std::int64_t resultSize;
    bool hasChannelExtraTable;
    std::int64_t timeTableSize;
    std::int64_t ttLineSize;
};

/// The bits of the versions where a layout changes; a file's own version is compared as a float.
constexpr auto version5 = std::bit_cast<float>(0x40A00000);       // 5.0
constexpr auto version5_01018 = std::bit_cast<float>(0x40A05365); // 5.01018
constexpr auto version5_02 = std::bit_cast<float>(0x40A0A3D7);    // 5.02
constexpr auto version5_02004 = std::bit_cast<float>(0x40A0A42B); // 5.02004
constexpr auto version5_02007 = std::bit_cast<float>(0x40A0A46A); // 5.02007

/// The layout of a version; of the oldest for what is no number.
constexpr RunLayout layoutOf(float version) {
    const std::int64_t newTimeTable = version >= version5_02004 ? 1620 : 1618;
    return {.resultSize = version > version5 ? 24 : 20,
            .hasChannelExtraTable = version >= version5_02007,
            .timeTableSize = version >= version5_02 ? newTimeTable : 1552,
            .ttLineSize = version > version5_01018 ? 1202 : 522};
}

struct WindowCounts {
    std::int32_t first;
    std::int32_t second;
};

/// The two counts in a TimeTable's word: its remainder and its quotient by 256, both with its sign.
constexpr WindowCounts windowCounts(std::int16_t word) {
    return {.first = word % 256, .second = word / 256};
}

} // namespace korlit
