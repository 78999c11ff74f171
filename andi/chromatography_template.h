// What every ANDI file that is written here has alike, by the AIA chromatography template: the
// dimensions, the global attributes, the scalars and the signal, in the order in which they stand
// in the file, and how the columns of its peak table are made. What finds no memory is missing from
// the file; each caller decides which of the dimensions and variables it can't do without.
#pragma once

#include "andi/andi_file.h"

#include <array>
#include <utility>

namespace korlit {

struct NamedLength {
    const char* name;
    std::int32_t length;
};

/// The dimensions ahead of all others.
constexpr std::array<NamedLength, 8> stringDimensions{{
    {.name = "_2_byte_string", .length = 2},
    {.name = "_4_byte_string", .length = 4},
    {.name = "_8_byte_string", .length = 8},
    {.name = "_16_byte_string", .length = 16},
    {.name = "_32_byte_string", .length = 32},
    {.name = "_64_byte_string", .length = 64},
    {.name = "_128_byte_string", .length = 128},
    {.name = "_255_byte_string", .length = 255},
}};

/// Indexes of the dimensions that variables use; -1 for one that found no memory. Behind the first
/// of points, peaks and errors that did, none is added.
struct TemplateDimensions {
    std::int32_t fourBytes;
    std::int32_t thirtyTwoBytes;
    std::int32_t points;
    std::int32_t peaks; ///< 0 where the run has none
    std::int32_t errors;
};

/// Adds the eight string lengths, the points, the peaks if there are any, and the error log's.
TemplateDimensions AddTemplateDimensions(AndiFile* file, std::int32_t pointCount,
                                         std::int32_t peakCount);

/// The texts in which runs differ.
struct RunTexts {
    const char* injectionStamp;
    const char* injectionTime;
    const char* sampleName;
    const char* operatorName;
    const char* separationType;
    const char* sourceFile;
    const char* detectorUnit;
};

/// The names and texts of the seventeen global attributes.
using TemplateTexts = std::array<std::pair<const char*, const char*>, 17>;
TemplateTexts templateTexts(const RunTexts& texts, bool hasPeaks);

/// Adds the global attributes, with their terminators.
void AddTemplateAttributes(AndiFile* file, const RunTexts& texts, bool hasPeaks);

/// What the scalars are worked out from.
struct SignalFigures {
    float maximum; ///< as stored, before the scale factor
    float minimum;
    double scaleFactor;
    std::int32_t pointCount;
    std::int16_t sampleIntervalMs;
};

/// A stored value in the detector's unit, worked out in double precision and rounded once.
constexpr float inDetectorUnit(float stored, double scaleFactor) {
    return static_cast<float>(stored * scaleFactor);
}

/// The names and values of the five scalars, each rounded once. The run time is in seconds and the
/// sampling interval in minutes.
using TemplateScalars = std::array<std::pair<const char*, float>, 5>;
TemplateScalars templateScalars(const SignalFigures& figures);

/// Adds the scalars.
void AddTemplateScalars(AndiFile* file, const SignalFigures& figures);

/// Where the sample stood in the autosampler.
struct SamplePosition {
    std::int16_t rack;
    std::int16_t vial;
};

/// The position as in "1-2".
using PositionText = std::array<char, 16>;
PositionText positionText(const SamplePosition& position);

/// Adds the signal over the dimension of the points, in the detector's unit. With it goes that it
/// is uniform, and the position. Null if the variable can't be added.
///
/// A signal may fill most of the memory, so it is not copied: the block of samples, as many as the
/// dimension has points, becomes the variable's, and the caller gets an empty one in exchange.
AndiVariable* AddSignal(AndiFile* file, std::int32_t pointDimension, GlobalHandle& handle,
                        float*& samples, double scaleFactor, const SamplePosition& position);

/// Adds a float variable over `dimension`, filled from a table in memory: `count` floats, the first
/// at `firstValue` and each `stride` bytes behind the one before. Adds nothing if there is no
/// memory for it.
void AddFloatColumn(AndiFile* file, const char* name, std::int32_t dimension,
                    const void* firstValue, std::int32_t count, std::int64_t stride);

/// Adds a variable of one text a row, zero so far: over `dimension` and `widthDimension`, either of
/// which may be one that wasn't added (-1). Null if the variable can't be added.
AndiVariable* AddTextColumn(AndiFile* file, const char* name, std::int32_t dimension,
                            std::int32_t widthDimension);

/// The area of a peak in the unit of an ANDI file, where it is by the minute, from that of a native
/// record, where it is by the second. Worked out in double precision and rounded once.
constexpr float areaByMinute(float areaBySecond) {
    constexpr double secondsPerMinute = 60.0;
    return static_cast<float>(areaBySecond / secondsPerMinute);
}

} // namespace korlit
