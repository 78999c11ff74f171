#include "native/native_to_andi.h"

#include "andi/andi_writer.h"
#include "andi/chromatography_template.h"
#include "datetime/injection_time.h"
#include "native/native_date.h"
#include "native/native_state.h"
#include "native/pair_rules.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

namespace korlit {

namespace {

constexpr const char* convertedText = "Merivolta File converted to %s.";

void addAttributes(AndiFile* file, const char* path) {
    StampFields date{};
    ParseNativeDate(&date);
    // Stays empty where the date service has no such date.
    std::array<char, stampTextSize> stamp{};
    FormatAndiStamp(&date, stamp.data());
    const InjectionTimeText time = InjectionTime(date);
    const std::string sampleName{textOf(TheSliHeader.SampleName)};
    const std::string operatorName{textOf(TheSliHeader.OperatorName)};
    const std::string detectorUnit{textOf(TheSliHeader.DetectorUnit)};
    const std::string sourceFile = std::string{path} + sliceExtension;
    AddTemplateAttributes(file,
                          {.injectionStamp = stamp.data(),
                           .injectionTime = time.data(),
                           .sampleName = sampleName.c_str(),
                           .operatorName = operatorName.c_str(),
                           .separationType = separationText(TheSliHeader.SeparationType),
                           .sourceFile = sourceFile.c_str(),
                           .detectorUnit = detectorUnit.c_str()},
                          TheResHeader.PeakCount != 0);
}

void addPeakNames(AndiFile* file, const TemplateDimensions& dimensions, const PeakRecord* peaks) {
    constexpr std::ptrdiff_t rowLength = 32;
    AndiVariable* names =
        AddTextColumn(file, "peak_name", dimensions.peaks, dimensions.thirtyTwoBytes);
    if (names == nullptr) {
        return;
    }
    auto* row = static_cast<char*>(names->Data);
    for (int i = 0; i < TheResHeader.PeakCount; ++i) {
        std::ranges::copy(textOf(peaks[i].PeakName), row + i * rowLength);
    }
}

void divideAreas(PeakRecord* peaks) {
    for (int i = 0; i < TheResHeader.PeakCount; ++i) {
        peaks[i].PeakArea = areaByMinute(peaks[i].PeakArea);
    }
}

void addPeaks(AndiFile* file, const TemplateDimensions& dimensions, PeakRecord* peaks) {
    const auto& [first, retentionTime] = peakColumns.front();
    AddPeakColumn(file, first, dimensions.peaks, peaks, retentionTime);
    addPeakNames(file, dimensions, peaks);
    divideAreas(peaks);
    for (const auto& [name, fieldOffset] : std::span{peakColumns}.subspan(1)) {
        AddPeakColumn(file, name, dimensions.peaks, peaks, fieldOffset);
    }
}

/// Answers whether the file has what its variables need.
bool buildFile(AndiFile* file, const char* path, NativeBlocks& blocks) {
    const auto pointCount = static_cast<std::int32_t>(TheSliHeader.PointCount);
    file->RecordCount = 0;
    const TemplateDimensions dimensions =
        AddTemplateDimensions(file, pointCount, TheResHeader.PeakCount);
    if (dimensions.points == -1 || dimensions.peaks == -1 || dimensions.errors == -1) {
        return false;
    }
    addAttributes(file, path);
    AddTemplateScalars(file, {.maximum = TheSliHeader.MaxValue,
                              .minimum = TheSliHeader.MinValue,
                              .scaleFactor = TheSliHeader.ScaleFactor,
                              .pointCount = pointCount,
                              .sampleIntervalMs = TheSliHeader.SampleIntervalMs});
    AddSignal(file, dimensions.points, blocks.dataHandle, blocks.data, TheSliHeader.ScaleFactor,
              {.rack = TheSliHeader.AutosamplerRack, .vial = TheSliHeader.AutosamplerVial});
    if (TheResHeader.PeakCount != 0) {
        addPeaks(file, dimensions, blocks.peaks);
    }
    return true;
}

} // namespace

int MapNativeToAndi(NativeBlocks& blocks, AndiFile* file, char* path, std::span<char> message) {
    const bool isWritten = buildFile(file, path, blocks) &&
                           WriteAndiFile(std::strcat(path, ".cdf"), file, message) == 1;
    if (!isWritten) {
        FreeAndiFile(file);
        return 0;
    }
    formatText(message, convertedText, path);
    return 1;
}

void AddPeakColumn(AndiFile* file, const char* name, std::int32_t peakDimension,
                   const PeakRecord* peaks, std::size_t fieldOffset) {
    AddFloatColumn(file, name, peakDimension, reinterpret_cast<const char*>(peaks) + fieldOffset,
                   TheResHeader.PeakCount, sizeof(PeakRecord));
}

} // namespace korlit
