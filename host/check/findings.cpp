#include "host/check/findings.h"

#include "andi/value_lookup.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace korlit::host {

namespace {

constexpr std::array<const char*, 3> severityNames{"error", "warning", "loss"};

std::optional<SampleRange> extremesOf(std::span<const double> samples) {
    std::optional<SampleRange> extremes;
    for (const double sample : samples) {
        if (!std::isfinite(sample)) {
            continue;
        }
        const SampleRange soFar =
            extremes.value_or(SampleRange{.smallest = sample, .largest = sample});
        extremes = SampleRange{.smallest = std::min(soFar.smallest, sample),
                               .largest = std::max(soFar.largest, sample)};
    }
    return extremes;
}

/// The first number of a variable, else of the text of that name; NaN if there is none.
double numberOf(const AndiImage& image, const char* templateName) {
    const std::string key = keyOf(templateName);
    if (const auto numbers = numbersOf(variableOf(image, key)); !numbers.empty()) {
        return numbers.front();
    }
    const auto number = readFloat(textOf(image, key).value_or(""));
    return number ? double{*number} : std::numeric_limits<double>::quiet_NaN();
}

/// What a limit and an extreme may differ by, being floats on their way through some calculation.
double tolerance(const SampleRange& extremes, double extreme) {
    constexpr double shareOfSpan = 1e-6;
    return std::max((extremes.largest - extremes.smallest) * shareOfSpan,
                    std::abs(extreme) * double{std::numeric_limits<float>::epsilon()});
}

} // namespace

const char* severityName(Severity severity) {
    return severityNames[static_cast<std::size_t>(severity)];
}

Subject subjectOf(const AndiImage& image) {
    Subject subject{.image = image,
                    .samples = numbersOf(variableOf(image, "ordinatevalues")),
                    .extremes = {},
                    .interval = numberOf(image, "actual_sampling_interval"),
                    .isUniform = false};
    subject.extremes = extremesOf(subject.samples);
    const std::string flag = textOf(image, "uniformsamplingflag").value_or("Y");
    subject.isUniform = flag.starts_with('Y') || flag.starts_with('y');
    return subject;
}

Findings findAll(std::span<const Rule> rules, const AndiImage& image) {
    const Subject subject = subjectOf(image);
    Findings findings;
    for (const auto& [id, look] : rules) {
        look(subject, {.findings = findings, .rule = id});
    }
    return findings;
}

std::vector<DetectorLimit> detectorLimits(const Subject& subject) {
    std::vector<DetectorLimit> limits;
    if (!subject.extremes) {
        return limits;
    }
    const auto& [smallest, largest] = *subject.extremes;
    const auto add = [&](const char* name, double extreme, double outwards) {
        const double limit = numberOf(subject.image, name);
        const double excess = (extreme - limit) * outwards;
        const bool isAgreed = std::abs(excess) <= tolerance(*subject.extremes, extreme);
        limits.push_back({.name = name,
                          .limit = limit,
                          .extreme = extreme,
                          .excess = isAgreed || std::isnan(excess) ? 0.0 : excess});
    };
    add("detector_maximum_value", largest, 1.0);
    add("detector_minimum_value", smallest, -1.0);
    return limits;
}

std::span<const AndiVariable> variablesOf(const AndiImage& image) {
    return {image.file.Variables, static_cast<std::size_t>(image.file.VariableCount)};
}

std::span<const AndiAttribute> attributesOf(const AndiAttributeList& list) {
    return {list.Items, static_cast<std::size_t>(list.Count)};
}

std::span<const AndiDimension> dimensionsOf(const AndiImage& image) {
    return {image.file.Dimensions, static_cast<std::size_t>(image.file.DimensionCount)};
}

bool isNamed(const char* storedName, std::string_view templateName) {
    void* unused = nullptr;
    return MatchAndiName(keyOf(templateName).c_str(), storedName, AndiType::None, 0, nullptr,
                         static_cast<void*>(&unused), pointerMode) == 1;
}

std::string keyOf(std::string_view templateName) {
    std::string key{templateName};
    std::erase(key, '_');
    return key;
}

double declaredElements(const AndiImage& image, const AndiVariable& variable) {
    double elements = 1.0;
    for (std::int32_t i = 0; i < variable.DimensionCount; ++i) {
        elements *=
            image.file.Dimensions[variable.DimensionIds[static_cast<std::size_t>(i)]].Length;
    }
    return elements;
}

std::string counted(std::size_t count, const char* thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

std::string joined(std::span<const std::string> names) {
    std::string list;
    for (const std::string& name : names) {
        list += (list.empty() ? "" : ", ") + name;
    }
    return list;
}

} // namespace korlit::host
