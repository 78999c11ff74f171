// What every ANDI file that is written here has alike, by the AIA chromatography template: the
// dimensions, the global attributes, the scalars and the signal's attributes, in the order in which
// they stand in the file. Nothing here is tested but the dimensions that variables need: what finds
// no memory is missing from the file.
#pragma once

#include "andi/andi_file.h"

namespace korlit {

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

/// Adds the seventeen global attributes, all of them texts with their terminator.
void AddTemplateAttributes(AndiFile* file, const RunTexts& texts, bool hasPeaks);

/// What the scalars are worked out from.
struct SignalFigures {
    float maximum; ///< as stored, before the scale factor
    float minimum;
    double scaleFactor;
    std::int32_t pointCount;
    std::int16_t sampleIntervalMs;
};

/// Adds the five scalars as floats, each rounded once. The run time is in seconds and the sampling
/// interval in minutes.
void AddTemplateScalars(AndiFile* file, const SignalFigures& figures);

/// Adds to the signal that it is uniform, and the sample's position as in "1-2".
void AddSignalAttributes(AndiVariable* signal, std::int16_t rack, std::int16_t vial);

} // namespace korlit
