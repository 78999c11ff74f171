#include "andi/chromatography_template.h"

#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

namespace korlit {

namespace {

/// The new dimension's index, or -1 if it wasn't added. The builder's own answer can't tell a
/// failed growth from the first index, and a variable over the wrong dimension is worse than none.
std::int32_t addDimension(AndiFile* file, const char* name, std::int32_t length) {
    const std::int32_t index = file->DimensionCount;
    AddAndiDimension(file, name, length);
    return file->DimensionCount > index ? index : -1;
}

void addText(AndiAttributeList* list, const char* name, const char* text) {
    AddAndiAttribute(list, name, AndiType::Char, textLength, text);
}

/// The compiler makes this twice and the program takes the one that suits the processor.
[[gnu::target_clones("avx2", "default")]] void scale(std::span<float> samples, double factor) {
    for (float& sample : samples) {
        sample = inDetectorUnit(sample, factor);
    }
}

} // namespace

TemplateDimensions AddTemplateDimensions(AndiFile* file, std::int32_t pointCount,
                                         std::int32_t peakCount) {
    TemplateDimensions dimensions{};
    for (const auto& [name, length] : stringDimensions) {
        const std::int32_t index = addDimension(file, name, length);
        if (length == 4) {
            dimensions.fourBytes = index;
        } else if (length == 32) {
            dimensions.thirtyTwoBytes = index;
        }
    }
    dimensions.points = addDimension(file, "point_number", pointCount);
    if (peakCount != 0 && dimensions.points != -1) {
        dimensions.peaks = addDimension(file, "peak_number", peakCount);
    }
    if (dimensions.points != -1 && dimensions.peaks != -1) {
        dimensions.errors = addDimension(file, "error_number", 1);
    }
    return dimensions;
}

TemplateTexts templateTexts(const RunTexts& texts, bool hasPeaks) {
    return {{
        {"dataset_completeness", hasPeaks ? "C1+C2" : "C1"},
        {"aia_template_revision", "1.0"},
        {"netcdf_revision", "2.3"},
        {"languages", "English only"},
        {"injection_date_time_stamp", texts.injectionStamp},
        {"HP_injection_time", texts.injectionTime},
        {"experiment_title", texts.sampleName},
        {"operator_name", texts.operatorName},
        {"separation_experiment_type", texts.separationType},
        {"source_file_reference", texts.sourceFile},
        {"sample_name", texts.sampleName},
        {"sample_id", ""},
        {"detector_unit", texts.detectorUnit},
        {"detection_method_name", ""},
        {"detector_name", " "},
        {"retention_unit", "min"},
        {"error_log", "not implemented"},
    }};
}

void AddTemplateAttributes(AndiFile* file, const RunTexts& texts, bool hasPeaks) {
    for (const auto& [name, text] : templateTexts(texts, hasPeaks)) {
        addText(&file->GlobalAttributes, name, text);
    }
}

TemplateScalars templateScalars(const SignalFigures& figures) {
    constexpr double msPerSecond = 1000.0;
    constexpr double msPerMinute = 60000.0;
    const double interval = figures.sampleIntervalMs;
    return {{
        {"detector_maximum_value", inDetectorUnit(figures.maximum, figures.scaleFactor)},
        {"detector_minimum_value", inDetectorUnit(figures.minimum, figures.scaleFactor)},
        {"actual_run_time_length", static_cast<float>(interval * figures.pointCount / msPerSecond)},
        {"actual_delay_time", 0.0F},
        {"actual_sampling_interval", static_cast<float>(interval / msPerMinute)},
    }};
}

void AddTemplateScalars(AndiFile* file, const SignalFigures& figures) {
    for (const auto& [name, value] : templateScalars(figures)) {
        AddAndiScalar(file, name, AndiType::Float, &value);
    }
}

PositionText positionText(const SamplePosition& position) {
    PositionText text{};
    formatText(text, "%hd-%hd", position.rack, position.vial);
    return text;
}

AndiVariable* AddSignal(AndiFile* file, std::int32_t pointDimension, GlobalHandle& handle,
                        float*& samples, double scaleFactor, const SamplePosition& position) {
    AndiVariable* signal = AddAndiVector(file, "ordinate_values", AndiType::Float, pointDimension);
    if (signal == nullptr) {
        return nullptr;
    }
    scale({samples, static_cast<std::size_t>(signal->ElementCount)}, scaleFactor);
    exchangeData(*signal, handle, samples);
    addText(&signal->Attributes, "uniform_sampling_flag", "Y");
    addText(&signal->Attributes, "autosampler_position", positionText(position).data());
    return signal;
}

void AddFloatColumn(AndiFile* file, const char* name, std::int32_t dimension,
                    const void* firstValue, std::int32_t count, std::int64_t stride) {
    AndiVariable* column = AddAndiVector(file, name, AndiType::Float, dimension);
    if (column == nullptr) {
        return;
    }
    auto* target = static_cast<char*>(column->Data);
    const auto* source = static_cast<const char*>(firstValue);
    const std::int32_t valueCount = std::min(count, column->ElementCount);
    for (std::int32_t i = 0; i < valueCount; ++i) {
        std::memcpy(target, source + i * stride, sizeof(float));
        target += sizeof(float);
    }
}

AndiVariable* AddTextColumn(AndiFile* file, const char* name, std::int32_t dimension,
                            std::int32_t widthDimension) {
    // Without a width the builder would make a vector.
    return widthDimension == -1
               ? nullptr
               : AddAndiMatrix(file, name, AndiType::Char, dimension, widthDimension);
}

} // namespace korlit
