#include "host/check/structure_rules.h"

#include "host/check/phrases.h"
#include "host/check/template_tables.h"
#include "host/files/float_columns.h"
#include "host/text/numbers.h"
#include "host/text/words.h"
#include "platform/text.h"

#include <algorithm>
#include <array>

namespace korlit::host {

namespace {

using enum Severity;

const AndiDimension* dimensionNamed(const AndiImage& image, const char* name) {
    const auto dimensions = dimensionsOf(image);
    const auto found = std::ranges::find_if(
        dimensions, [&](const AndiDimension& each) { return isNamed(each.Name, name); });
    return found == dimensions.end() ? nullptr : &*found;
}

const AndiDimension& dimensionAt(const AndiImage& image, const AndiVariable& variable, int place) {
    return image.file.Dimensions[variable.DimensionIds[static_cast<std::size_t>(place)]];
}

bool names(const Subject& subject, const char* category) {
    return textOf(subject.image, "dataset_completeness").value_or("").find(category) !=
           std::string::npos;
}

void lookAtVersion(const Subject& subject, const RuleNotes& notes) {
    if (subject.image.file.Version != 1) {
        notes.add(Warning, "the version of the file's layout is " +
                               std::to_string(subject.image.file.Version) + " instead of 1");
    }
}

void lookForDimensions(const Subject& subject, const RuleNotes& notes) {
    if (dimensionNamed(subject.image, taken::pointNumber) == nullptr) {
        notes.add(Error, "there is no dimension point_number");
    }
    if (names(subject, "C2") && dimensionNamed(subject.image, taken::peakNumber) == nullptr) {
        notes.add(Warning, "dataset_completeness names C2, but there is no dimension peak_number");
    }
}

void lookForVariables(const Subject& subject, const RuleNotes& notes) {
    const bool hasPeaks = dimensionNamed(subject.image, taken::peakNumber) != nullptr;
    for (const auto& [name, dimension, type, missing, wrong] : templateVariables) {
        const bool isDue = missing && (dimension != taken::peakNumber || hasPeaks);
        // A scalar is found as an attribute, too; a column is not.
        const bool isThere = variableNamed(subject.image, name) != nullptr ||
                             (dimension == nullptr && textOf(subject.image, name));
        if (isDue && !isThere) {
            notes.add(*missing, std::string{"there is no variable "} + name);
        }
    }
}

void lookForTexts(const Subject& subject, const RuleNotes& notes) {
    for (const auto& [name, isRequired] : templateTexts) {
        if (isRequired && !textOf(subject.image, name)) {
            notes.add(Warning, std::string{"there is no attribute "} + name);
        }
    }
}

void lookAtCompleteness(const Subject& subject, const RuleNotes& notes) {
    const auto text = textOf(subject.image, "dataset_completeness");
    if (!text) {
        return;
    }
    if (!names(subject, "C1")) {
        notes.add(Warning, "dataset_completeness " + inQuotes(*text) + " doesn't name C1");
    }
    if (dimensionNamed(subject.image, taken::peakNumber) != nullptr && !names(subject, "C2")) {
        notes.add(Warning, "dataset_completeness " + inQuotes(*text) +
                               " doesn't name C2, but there is a peak table");
    }
}

void lookAtTypes(const Subject& subject, const RuleNotes& notes) {
    for (const auto& [name, dimension, type, missing, wrong] : templateVariables) {
        const AndiVariable* variable = variableNamed(subject.image, name);
        if (variable != nullptr && type != AndiType::None && variable->Type != type) {
            notes.add(wrong, wrongTypeWords(name, variable->Type, type));
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
                notes.add(Warning, wrongTypeWords(attribute.Name, attribute.Type, AndiType::Char));
            }
        }
    };
    look(subject.image.file.GlobalAttributes);
    if (const AndiVariable* ordinates = variableNamed(subject.image, taken::ordinateValues)) {
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
            notes.add(Error, std::string{variable.Name} + " has " + std::to_string(variable.VSize) +
                                 " bytes, but its dimensions make " + numberText(due));
        }
    }
}

void lookAtSampleCount(const Subject& subject, const RuleNotes& notes) {
    const AndiVariable* ordinates = variableOf(subject.image, taken::ordinateValues);
    const auto points = readLong(textOf(subject.image, taken::pointNumber).value_or(""));
    if (ordinates == nullptr || !points) {
        return;
    }
    const double samples = declaredElements(subject.image, *ordinates);
    if (*points > samples) {
        notes.add(Error, "point_number is " + std::to_string(*points) +
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
        const bool isCount = isNamed(dimension.Name, taken::pointNumber) ||
                             isNamed(dimension.Name, taken::peakNumber);
        if (dimension.Length != 0 || (along.empty() && !isCount)) {
            continue;
        }
        const std::string what = std::string{dimension.Name} + " is 0 or the record dimension";
        notes.add(isCount ? Error : Warning,
                  along.empty() ? what
                                : what + ", along which no data are found: " + joined(along, ", "));
    }
}

constexpr std::array<Rule, 11> rulesOfStructure{{
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
}};

} // namespace

std::span<const Rule> structureRules() {
    return rulesOfStructure;
}

} // namespace korlit::host
