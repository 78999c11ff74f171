// What the chromatography template has: its variables and texts, and how much they matter.
#pragma once

#include "andi/andi_file.h"
#include "host/check/findings.h"
#include "host/files/float_columns.h"
#include "native/pair_rules.h"

#include <array>
#include <optional>

namespace korlit::host {

struct TemplateVariable {
    const char* name;
    const char* dimension = nullptr; ///< null for a scalar
    AndiType type = AndiType::Float; ///< None for any
    std::optional<Severity> missing{};
    Severity wrong = Severity::Warning; ///< how bad another type or dimension is
};

constexpr std::array<TemplateVariable, 29> templateVariables{{
    {.name = "ordinate_values",
     .dimension = taken::pointNumber,
     .missing = Severity::Error,
     .wrong = Severity::Error},
    {.name = "raw_data_retention", .dimension = taken::pointNumber},
    {.name = "actual_sampling_interval", .missing = Severity::Error},
    {.name = "actual_run_time_length", .missing = Severity::Warning},
    {.name = "actual_delay_time", .missing = Severity::Warning},
    {.name = "detector_maximum_value", .missing = Severity::Warning},
    {.name = "detector_minimum_value", .missing = Severity::Warning},
    {.name = "peak_retention_time",
     .dimension = taken::peakNumber,
     .missing = Severity::Warning,
     .wrong = Severity::Error},
    {.name = "peak_area",
     .dimension = taken::peakNumber,
     .missing = Severity::Warning,
     .wrong = Severity::Error},
    {.name = "peak_name",
     .dimension = taken::peakNumber,
     .type = AndiType::Char,
     .wrong = Severity::Error},
    {.name = "peak_amount", .dimension = taken::peakNumber, .wrong = Severity::Error},
    {.name = "peak_start_time", .dimension = taken::peakNumber, .wrong = Severity::Error},
    {.name = "peak_end_time", .dimension = taken::peakNumber, .wrong = Severity::Error},
    {.name = "peak_area_percent", .dimension = taken::peakNumber, .wrong = Severity::Error},
    {.name = "peak_height", .dimension = taken::peakNumber, .wrong = Severity::Error},
    {.name = "peak_width", .dimension = taken::peakNumber},
    {.name = "peak_area_square_root", .dimension = taken::peakNumber},
    {.name = "peak_height_percent", .dimension = taken::peakNumber},
    {.name = "peak_asymmetry", .dimension = taken::peakNumber},
    {.name = "peak_efficiency", .dimension = taken::peakNumber},
    {.name = "baseline_start_time", .dimension = taken::peakNumber},
    {.name = "baseline_start_value", .dimension = taken::peakNumber},
    {.name = "baseline_stop_time", .dimension = taken::peakNumber},
    {.name = "baseline_stop_value", .dimension = taken::peakNumber},
    {.name = "migration_time", .dimension = taken::peakNumber},
    {.name = "retention_index", .dimension = taken::peakNumber},
    {.name = "peak_start_detection_code", .dimension = taken::peakNumber, .type = AndiType::Char},
    {.name = "peak_stop_detection_code", .dimension = taken::peakNumber, .type = AndiType::Char},
    {.name = "manually_reintegrated_peaks", .dimension = taken::peakNumber, .type = AndiType::None},
}};

/// What a conversion takes for floats, row by row, must be just that.
constexpr bool areFloatsRequired() {
    for (const TemplateVariable& each : templateVariables) {
        const bool isRequired = each.type == AndiType::Float && each.wrong == Severity::Error;
        if (isRequired != isTakenAsFloats(each.name)) {
            return false;
        }
    }
    return true;
}
static_assert(areFloatsRequired());

struct TemplateText {
    const char* name;
    bool isRequired = false;
};

constexpr std::array<TemplateText, 20> templateTexts{{
    {.name = "dataset_completeness", .isRequired = true},
    {.name = "aia_template_revision", .isRequired = true},
    {.name = "netcdf_revision", .isRequired = true},
    {.name = "languages", .isRequired = true},
    {.name = "injection_date_time_stamp", .isRequired = true},
    {.name = "detector_unit", .isRequired = true},
    {.name = "retention_unit", .isRequired = true},
    {.name = "uniform_sampling_flag", .isRequired = true},
    {.name = "dataset_date_time_stamp"},
    {.name = "autosampler_position"},
    {.name = "experiment_title"},
    {.name = "operator_name"},
    {.name = "separation_experiment_type"},
    {.name = "source_file_reference"},
    {.name = "sample_name"},
    {.name = "sample_id"},
    {.name = "detection_method_name"},
    {.name = "detector_name"},
    {.name = "peak_amount_unit"},
    {.name = "error_log"},
}};

} // namespace korlit::host
