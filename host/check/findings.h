// What a look into an ANDI file finds, and the values of the file that more than one rule needs.
#pragma once

#include "host/files/andi_image.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace korlit::host {

enum class Severity : std::uint8_t {
    Error,   ///< a reader fails on it or reads something wrong
    Warning, ///< departs from the template, and is read nevertheless
    Loss,    ///< conforms, but a conversion leaves it out
};

/// "error", "warning", "loss".
const char* severityName(Severity severity);

struct Finding {
    Severity severity;
    const char* rule; ///< the stable name of what was looked for
    std::string message;
};

using Findings = std::vector<Finding>;

struct SampleRange {
    double smallest;
    double largest;
};

/// A loaded file with what is worked out from it.
struct Subject {
    const AndiImage& image;
    std::vector<double> samples;
    std::optional<SampleRange> extremes; ///< of the finite samples, if there are any
    double interval;                     ///< in the file's unit; NaN if there is no number
    bool isUniform;
};

Subject subjectOf(const AndiImage& image);

/// Takes the findings of one rule.
struct RuleNotes {
    Findings& findings;
    const char* rule;

    void add(Severity severity, std::string message) const {
        findings.push_back({.severity = severity, .rule = rule, .message = std::move(message)});
    }
};

struct Rule {
    const char* id;
    void (*look)(const Subject& subject, const RuleNotes& notes);
};

/// What the rules find, in their order.
Findings findAll(std::span<const Rule> rules, const AndiImage& image);

/// A limit that the file gives for its signal, and how far the signal goes beyond it: below zero
/// where it keeps away from it, 0 where the two agree within their rounding.
struct DetectorLimit {
    const char* name;
    double limit;
    double extreme;
    double excess;
};

/// The limits that the file gives; none of a file without samples.
std::vector<DetectorLimit> detectorLimits(const Subject& subject);

std::span<const AndiVariable> variablesOf(const AndiImage& image);
std::span<const AndiAttribute> attributesOf(const AndiAttributeList& list);
std::span<const AndiDimension> dimensionsOf(const AndiImage& image);

/// Whether a name in the file is that of the template, apart from separators.
bool isNamed(const char* storedName, std::string_view templateName);

/// A name of the template as the lookups want it, without separators.
std::string keyOf(std::string_view templateName);

/// Elements that the dimensions of a variable make, as a number that can't overflow.
double declaredElements(const AndiImage& image, const AndiVariable& variable);

/// "1 peak", "2 peaks".
std::string counted(std::size_t count, const char* thing);

/// With a comma between each two.
std::string joined(std::span<const std::string> names);

} // namespace korlit::host
