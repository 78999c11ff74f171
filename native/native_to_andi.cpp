#include "native/native_to_andi.h"

#include "andi/andi_writer.h"
#include "andi/chromatography_template.h"
#include "api/shared_state.h"
#include "datetime/injection_time.h"
#include "datetime/native_date.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>

namespace korlit {

namespace {

constexpr const char* convertedText = "Merivolta File converted to %s.";

constexpr std::array<const char*, 3> separationTypes{"HPLC", "gel permeation chromatography",
                                                     "gas chromatography"};

const char* separationText(std::uint16_t type) {
    return type < separationTypes.size() ? separationTypes[type] : "<unknown>";
}

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

void addSignal(AndiFile* file, std::int32_t pointDimension, const float* data) {
    AndiVariable* signal = AddAndiVector(file, "ordinate_values", AndiType::Float, pointDimension);
    if (signal == nullptr) {
        return;
    }
    auto* values = static_cast<float*>(signal->Data);
    const double scaleFactor = TheSliHeader.ScaleFactor;
    for (std::int32_t i = 0; i < signal->ElementCount; ++i) {
        values[i] = static_cast<float>(data[i] * scaleFactor);
    }
    AddSignalAttributes(signal, TheSliHeader.AutosamplerRack, TheSliHeader.AutosamplerVial);
}

void addPeakNames(AndiFile* file, const TemplateDimensions& dimensions, const PeakRecord* peaks) {
    constexpr std::ptrdiff_t rowLength = 32;
    if (dimensions.thirtyTwoBytes == -1) {
        return;
    }
    AndiVariable* names = AddAndiMatrix(file, "peak_name", AndiType::Char, dimensions.peaks,
                                        dimensions.thirtyTwoBytes);
    if (names == nullptr) {
        return;
    }
    auto* row = static_cast<char*>(names->Data);
    for (int i = 0; i < TheResHeader.PeakCount; ++i) {
        std::ranges::copy(textOf(peaks[i].PeakName), row + i * rowLength);
    }
}

/// Areas of the ANDI file are in minutes, those of the records in seconds.
void divideAreas(PeakRecord* peaks) {
    constexpr double secondsPerMinute = 60.0;
    for (int i = 0; i < TheResHeader.PeakCount; ++i) {
        peaks[i].PeakArea = static_cast<float>(peaks[i].PeakArea / secondsPerMinute);
    }
}

struct PeakColumn {
    const char* name;
    std::size_t fieldOffset;
};

constexpr std::size_t retentionTime = offsetof(PeakRecord, RetentionTime);
constexpr std::size_t startTime = offsetof(PeakRecord, BaselineStartTime);
constexpr std::size_t stopTime = offsetof(PeakRecord, BaselineStopTime);

/// The columns behind peak_retention_time and peak_name.
constexpr std::array<PeakColumn, 9> peakColumns{{
    {.name = "peak_amount", .fieldOffset = offsetof(PeakRecord, PeakAmount)},
    {.name = "peak_start_time", .fieldOffset = startTime},
    {.name = "peak_end_time", .fieldOffset = stopTime},
    {.name = "peak_area", .fieldOffset = offsetof(PeakRecord, PeakArea)},
    {.name = "peak_area_percent", .fieldOffset = offsetof(PeakRecord, ExtAreaPercent)},
    {.name = "peak_height", .fieldOffset = offsetof(PeakRecord, PeakHeight)},
    {.name = "baseline_start_time", .fieldOffset = startTime},
    {.name = "baseline_stop_time", .fieldOffset = stopTime},
    {.name = "migration_time", .fieldOffset = retentionTime},
}};

void addPeaks(AndiFile* file, const TemplateDimensions& dimensions, PeakRecord* peaks) {
    AddPeakColumn(file, "peak_retention_time", dimensions.peaks, peaks, retentionTime);
    addPeakNames(file, dimensions, peaks);
    divideAreas(peaks);
    for (const auto& [name, fieldOffset] : peakColumns) {
        AddPeakColumn(file, name, dimensions.peaks, peaks, fieldOffset);
    }
}

/// Answers whether the file has what its variables need.
bool buildFile(AndiFile* file, const char* path, const float* data, PeakRecord* peaks) {
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
    addSignal(file, dimensions.points, data);
    if (TheResHeader.PeakCount != 0) {
        addPeaks(file, dimensions, peaks);
    }
    return true;
}

} // namespace

int MapNativeToAndi(const float* data, PeakRecord* peaks, AndiFile* file, char* path,
                    std::span<char> message) {
    if (!buildFile(file, path, data, peaks)) {
        FreeAndiFile(file);
        return 0;
    }
    std::strcat(path, ".cdf");
    if (WriteAndiFile(path, file, message) == 0) {
        return 0;
    }
    formatText(message, convertedText, path);
    return 1;
}

void AddPeakColumn(AndiFile* file, const char* name, std::int32_t peakDimension,
                   const PeakRecord* peaks, std::size_t fieldOffset) {
    AndiVariable* column = AddAndiVector(file, name, AndiType::Float, peakDimension);
    if (column == nullptr) {
        return;
    }
    auto* value = static_cast<char*>(column->Data);
    const std::int32_t count = std::min<std::int32_t>(TheResHeader.PeakCount, column->ElementCount);
    for (std::int32_t i = 0; i < count; ++i) {
        std::memcpy(value, reinterpret_cast<const char*>(&peaks[i]) + fieldOffset, sizeof(float));
        value += sizeof(float);
    }
}

} // namespace korlit
