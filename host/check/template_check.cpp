#include "host/check/template_check.h"

#include "host/text/numbers.h"
#include "host/text/stamps.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

namespace korlit::host {

namespace {

constexpr const char* pointNumber = "point_number";
constexpr const char* peakNumber = "peak_number";

struct TemplateVariable {
    const char* name;
    const char* dimension = nullptr; ///< null for a scalar
    AndiType type = AndiType::Float; ///< None for any
    std::optional<Severity> missing{};
    Severity wrong = Severity::Warning; ///< how bad another type or dimension is
};

// A column that a conversion copies as floats, row by row, must be just that.
constexpr auto error = Severity::Error;
constexpr auto warning = Severity::Warning;
constexpr std::array<TemplateVariable, 29> templateVariables{{
    {.name = "ordinate_values", .dimension = pointNumber, .missing = error, .wrong = error},
    {.name = "raw_data_retention", .dimension = pointNumber},
    {.name = "actual_sampling_interval", .missing = error},
    {.name = "actual_run_time_length", .missing = warning},
    {.name = "actual_delay_time", .missing = warning},
    {.name = "detector_maximum_value", .missing = warning},
    {.name = "detector_minimum_value", .missing = warning},
    {.name = "peak_retention_time", .dimension = peakNumber, .missing = warning, .wrong = error},
    {.name = "peak_area", .dimension = peakNumber, .missing = warning, .wrong = error},
    {.name = "peak_name", .dimension = peakNumber, .type = AndiType::Char, .wrong = error},
    {.name = "peak_amount", .dimension = peakNumber, .wrong = error},
    {.name = "peak_start_time", .dimension = peakNumber, .wrong = error},
    {.name = "peak_end_time", .dimension = peakNumber, .wrong = error},
    {.name = "peak_area_percent", .dimension = peakNumber, .wrong = error},
    {.name = "peak_height", .dimension = peakNumber, .wrong = error},
    {.name = "peak_width", .dimension = peakNumber},
    {.name = "peak_area_square_root", .dimension = peakNumber},
    {.name = "peak_height_percent", .dimension = peakNumber},
    {.name = "peak_asymmetry", .dimension = peakNumber},
    {.name = "peak_efficiency", .dimension = peakNumber},
    {.name = "baseline_start_time", .dimension = peakNumber},
    {.name = "baseline_start_value", .dimension = peakNumber},
    {.name = "baseline_stop_time", .dimension = peakNumber},
    {.name = "baseline_stop_value", .dimension = peakNumber},
    {.name = "migration_time", .dimension = peakNumber},
    {.name = "retention_index", .dimension = peakNumber},
    {.name = "peak_start_detection_code", .dimension = peakNumber, .type = AndiType::Char},
    {.name = "peak_stop_detection_code", .dimension = peakNumber, .type = AndiType::Char},
    {.name = "manually_reintegrated_peaks", .dimension = peakNumber, .type = AndiType::None},
}};

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

constexpr std::array<const char*, 2> stampNames{"dataset_date_time_stamp",
                                                "injection_date_time_stamp"};

const AndiDimension* dimensionNamed(const AndiImage& image, const char* name) {
    const auto dimensions = dimensionsOf(image);
    const auto found = std::ranges::find_if(
        dimensions, [&](const AndiDimension& each) { return isNamed(each.Name, name); });
    return found == dimensions.end() ? nullptr : &*found;
}

/// A variable whether it is along the record dimension or not.
const AndiVariable* variableNamed(const AndiImage& image, const char* name) {
    const auto variables = variablesOf(image);
    const auto found = std::ranges::find_if(
        variables, [&](const AndiVariable& each) { return isNamed(each.Name, name); });
    return found == variables.end() ? nullptr : &*found;
}

const AndiDimension& dimensionAt(const AndiImage& image, const AndiVariable& variable, int place) {
    return image.file.Dimensions[variable.DimensionIds[static_cast<std::size_t>(place)]];
}

std::string quoted(const std::string& text) {
    return '"' + text + '"';
}

bool names(const Subject& subject, const char* category) {
    return textOf(subject.image, "datasetcompleteness").value_or("").find(category) !=
           std::string::npos;
}

void lookAtVersion(const Subject& subject, const RuleNotes& notes) {
    if (subject.image.file.Version != 1) {
        notes.add(warning, "the version of the file's layout is " +
                               std::to_string(subject.image.file.Version) + " instead of 1");
    }
}

void lookForDimensions(const Subject& subject, const RuleNotes& notes) {
    if (dimensionNamed(subject.image, pointNumber) == nullptr) {
        notes.add(error, "there is no dimension point_number");
    }
    if (names(subject, "C2") && dimensionNamed(subject.image, peakNumber) == nullptr) {
        notes.add(warning, "dataset_completeness names C2, but there is no dimension peak_number");
    }
}

void lookForVariables(const Subject& subject, const RuleNotes& notes) {
    const bool hasPeaks = dimensionNamed(subject.image, peakNumber) != nullptr;
    for (const auto& [name, dimension, type, missing, wrong] : templateVariables) {
        const bool isDue = missing && (dimension != peakNumber || hasPeaks);
        // A scalar is found as an attribute, too; a column is not.
        const bool isThere = variableNamed(subject.image, name) != nullptr ||
                             (dimension == nullptr && textOf(subject.image, keyOf(name)));
        if (isDue && !isThere) {
            notes.add(*missing, std::string{"there is no variable "} + name);
        }
    }
}

void lookForTexts(const Subject& subject, const RuleNotes& notes) {
    for (const auto& [name, isRequired] : templateTexts) {
        if (isRequired && !textOf(subject.image, keyOf(name))) {
            notes.add(warning, std::string{"there is no attribute "} + name);
        }
    }
}

void lookAtCompleteness(const Subject& subject, const RuleNotes& notes) {
    const auto text = textOf(subject.image, "datasetcompleteness");
    if (!text) {
        return;
    }
    if (!names(subject, "C1")) {
        notes.add(warning, "dataset_completeness " + quoted(*text) + " doesn't name C1");
    }
    if (dimensionNamed(subject.image, peakNumber) != nullptr && !names(subject, "C2")) {
        notes.add(warning, "dataset_completeness " + quoted(*text) +
                               " doesn't name C2, but there is a peak table");
    }
}

std::string wrongType(const char* name, AndiType type, AndiType expected) {
    return std::string{name} + " is " + andiTypes[static_cast<std::size_t>(type)].name +
           " instead of " + andiTypes[static_cast<std::size_t>(expected)].name;
}

void lookAtTypes(const Subject& subject, const RuleNotes& notes) {
    for (const auto& [name, dimension, type, missing, wrong] : templateVariables) {
        const AndiVariable* variable = variableNamed(subject.image, name);
        if (variable != nullptr && type != AndiType::None && variable->Type != type) {
            notes.add(wrong, wrongType(name, variable->Type, type));
        }
    }
}

void lookAtTextTypes(const Subject& subject, const RuleNotes& notes) {
    const auto look = [&](const AndiAttributeList& list) {
        for (const AndiAttribute& attribute : attributesOf(list)) {
            const bool isText = std::ranges::any_of(templateTexts, [&](const TemplateText& text) {
                return isNamed(attribute.Name, text.name);
            });
            if (isText && attribute.Type != AndiType::Char) {
                notes.add(warning, wrongType(attribute.Name, attribute.Type, AndiType::Char));
            }
        }
    };
    look(subject.image.file.GlobalAttributes);
    if (const AndiVariable* ordinates = variableNamed(subject.image, "ordinate_values")) {
        look(ordinates->Attributes);
    }
}

bool isOver(const AndiImage& image, const AndiVariable& variable, const char* dimension,
            int dimensionCount) {
    return variable.DimensionCount == dimensionCount &&
           isNamed(dimensionAt(image, variable, 0).Name, dimension);
}

void lookAtDimensions(const Subject& subject, const RuleNotes& notes) {
    for (const auto& [name, dimension, type, missing, wrong] : templateVariables) {
        const AndiVariable* variable = variableNamed(subject.image, name);
        if (variable == nullptr) {
            continue;
        }
        if (dimension == nullptr) {
            if (variable->DimensionCount != 0) {
                notes.add(wrong, std::string{name} + " is one number, but has a dimension");
            }
            continue;
        }
        const bool isText = type == AndiType::Char;
        if (dimensionNamed(subject.image, dimension) != nullptr &&
            !isOver(subject.image, *variable, dimension, isText ? 2 : 1)) {
            notes.add(wrong, std::string{name} + " isn't over " + dimension +
                                 (isText ? " and the length of its texts" : " alone"));
        }
    }
}

void lookAtSizes(const Subject& subject, const RuleNotes& notes) {
    for (const AndiVariable& variable : variablesOf(subject.image)) {
        const double due = declaredElements(subject.image, variable) * elementSize(variable.Type);
        // The size may count the padding.
        const double padding = variable.VSize - due;
        const bool isPadded = padding > 0 && padding < 4 && variable.VSize % 4 == 0;
        if (variable.IsRecord == 0 && padding != 0 && !isPadded) {
            notes.add(error, std::string{variable.Name} + " has " + std::to_string(variable.VSize) +
                                 " bytes, but its dimensions make " + numberText(due));
        }
    }
}

void lookAtSampleCount(const Subject& subject, const RuleNotes& notes) {
    const AndiVariable* ordinates = variableOf(subject.image, "ordinatevalues");
    const auto points = readLong(textOf(subject.image, "pointnumber").value_or(""));
    if (ordinates == nullptr || !points) {
        return;
    }
    const double samples = declaredElements(subject.image, *ordinates);
    if (*points > samples) {
        notes.add(error, "point_number is " + std::to_string(*points) +
                             ", but ordinate_values has " +
                             counted(static_cast<std::size_t>(std::max(samples, 0.0)), "sample"));
    }
}

/// The names of the variables along a dimension of length 0.
std::vector<std::string> variablesAlong(const AndiImage& image, const AndiDimension& dimension) {
    std::vector<std::string> along;
    for (const AndiVariable& variable : variablesOf(image)) {
        if (variable.IsRecord == 1 && &dimensionAt(image, variable, 0) == &dimension) {
            along.emplace_back(variable.Name);
        }
    }
    return along;
}

void lookAtRecordDimension(const Subject& subject, const RuleNotes& notes) {
    for (const AndiDimension& dimension : dimensionsOf(subject.image)) {
        const auto along = variablesAlong(subject.image, dimension);
        const bool isCount =
            isNamed(dimension.Name, pointNumber) || isNamed(dimension.Name, peakNumber);
        if (dimension.Length != 0 || (along.empty() && !isCount)) {
            continue;
        }
        const std::string what = std::string{dimension.Name} + " is 0 or the record dimension";
        notes.add(isCount ? error : warning,
                  along.empty() ? what
                                : what + ", along which no data are found: " + joined(along));
    }
}

void lookAtStamps(const Subject& subject, const RuleNotes& notes) {
    for (const char* name : stampNames) {
        const auto text = textOf(subject.image, keyOf(name));
        if (text && text->empty()) {
            notes.add(warning, std::string{name} + " is empty");
        } else if (text && !stampIn(*text)) {
            notes.add(error, std::string{name} + " " + quoted(*text) +
                                 " is no date and time as YYYYMMDDhhmmss+hhmm");
        }
    }
}

void lookAtUnit(const Subject& subject, const RuleNotes& notes) {
    const auto text = textOf(subject.image, "retentionunit");
    std::string unit = text.value_or("");
    _strlwr(unit.data());
    if (text && !unit.starts_with("min") && !unit.starts_with("sec")) {
        notes.add(warning, "retention_unit " + quoted(*text) +
                               " is neither minutes nor seconds; it counts as seconds");
    }
}

void lookAtInterval(const Subject& subject, const RuleNotes& notes) {
    const bool isThere = textOf(subject.image, "actualsamplinginterval").has_value();
    const bool isGood = std::isfinite(subject.interval) && subject.interval > 0;
    if (isThere && subject.isUniform && !isGood) {
        notes.add(error,
                  "actual_sampling_interval is " +
                      (std::isnan(subject.interval) ? "no number" : numberText(subject.interval)));
    }
}

void lookAtUniformity(const Subject& subject, const RuleNotes& notes) {
    if (subject.isUniform) {
        return;
    }
    notes.add(error, "uniform_sampling_flag isn't Y: the file can't be converted to a pair");
    if (variableNamed(subject.image, "raw_data_retention") == nullptr) {
        notes.add(warning, "uniform_sampling_flag isn't Y, but there is no raw_data_retention");
    }
}

void lookAtSamples(const Subject& subject, const RuleNotes& notes) {
    const auto isBad = [](double sample) { return !std::isfinite(sample); };
    const auto count = std::ranges::count_if(subject.samples, isBad);
    if (count > 0) {
        const auto first = std::ranges::find_if(subject.samples, isBad) - subject.samples.begin();
        notes.add(error, counted(static_cast<std::size_t>(count), "sample") + " of " +
                             std::to_string(subject.samples.size()) +
                             " infinite or no number, the first at point " +
                             std::to_string(first + 1));
    }
}

// The limits are those of the detector: a signal may stay away from them, but not go beyond.
void lookAtLimits(const Subject& subject, const RuleNotes& notes) {
    for (const auto& [name, limit, extreme, excess] : detectorLimits(subject)) {
        if (excess > 0) {
            notes.add(warning, std::string{name} + " is " + numberText(limit) +
                                   ", but the signal goes to " + numberText(extreme));
        }
    }
}

using PeakTest = std::function<bool(std::size_t)>;

/// One note for all peaks on which the test is true.
void noteOnPeaks(const RuleNotes& notes, std::size_t peakCount, const char* words,
                 const PeakTest& test) {
    std::size_t count = 0;
    std::size_t first = 0;
    for (std::size_t i = peakCount; i-- > 0;) {
        if (test(i)) {
            ++count;
            first = i + 1;
        }
    }
    if (count > 0) {
        notes.add(warning, counted(count, "peak") + " " + words + ", the first is peak " +
                               std::to_string(first));
    }
}

/// Whether one time is behind another by more than the rounding of floats.
bool isBehind(double time, double other) {
    constexpr double tolerance = 1e-6;
    return time - other > tolerance * std::max(std::abs(time), std::abs(other));
}

void lookAtPeakTimes(const Subject& subject, const RuleNotes& notes) {
    const auto retentions = numbersOf(variableOf(subject.image, "peakretentiontime"));
    const auto starts = numbersOf(variableOf(subject.image, "peakstarttime"));
    const auto ends = numbersOf(variableOf(subject.image, "peakendtime"));
    const std::size_t windows = std::min(starts.size(), ends.size());
    noteOnPeaks(notes, windows, "with a start behind the end",
                [&](std::size_t i) { return isBehind(starts[i], ends[i]); });
    noteOnPeaks(notes, std::min(windows, retentions.size()),
                "with a retention time outside start and end", [&](std::size_t i) {
                    return !isBehind(starts[i], ends[i]) &&
                           (isBehind(starts[i], retentions[i]) || isBehind(retentions[i], ends[i]));
                });
}

void lookForPeaksOutside(const Subject& subject, const RuleNotes& notes) {
    const auto retentions = numbersOf(variableOf(subject.image, "peakretentiontime"));
    const auto delays = numbersOf(variableOf(subject.image, "actualdelaytime"));
    const double start = delays.empty() ? 0.0 : delays.front();
    const double length = subject.interval * static_cast<double>(subject.samples.size());
    if (subject.isUniform && length > 0) {
        noteOnPeaks(notes, retentions.size(), "with a retention time outside the run",
                    [&](std::size_t i) {
                        return isBehind(start - subject.interval, retentions[i]) ||
                               isBehind(retentions[i], start + length + subject.interval);
                    });
    }
}

constexpr std::array<Rule, 19> rules{{
    {.id = "version", .look = lookAtVersion},
    {.id = "missing-dimension", .look = lookForDimensions},
    {.id = "missing-variable", .look = lookForVariables},
    {.id = "missing-attribute", .look = lookForTexts},
    {.id = "completeness", .look = lookAtCompleteness},
    {.id = "wrong-type", .look = lookAtTypes},
    {.id = "wrong-text-type", .look = lookAtTextTypes},
    {.id = "wrong-dimension", .look = lookAtDimensions},
    {.id = "wrong-size", .look = lookAtSizes},
    {.id = "sample-count", .look = lookAtSampleCount},
    {.id = "record-dimension", .look = lookAtRecordDimension},
    {.id = "time-stamp", .look = lookAtStamps},
    {.id = "retention-unit", .look = lookAtUnit},
    {.id = "sampling-interval", .look = lookAtInterval},
    {.id = "not-uniform", .look = lookAtUniformity},
    {.id = "bad-sample", .look = lookAtSamples},
    {.id = "detector-limit", .look = lookAtLimits},
    {.id = "peak-times", .look = lookAtPeakTimes},
    {.id = "outside-run", .look = lookForPeaksOutside},
}};

} // namespace

Findings departuresFromTemplate(const AndiImage& image) {
    return findAll(rules, image);
}

} // namespace korlit::host
