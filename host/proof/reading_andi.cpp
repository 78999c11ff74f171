#include "host/data/data_set.h"
#include "host/files/andi_image.h"
#include "host/files/broken_files.h"
#include "host/files/diagnosis.h"
#include "host/proof/netcdf_layout.h"
#include "host/proof/reading.h"
#include "host/text/numbers.h"
#include "host/text/words.h"
#include "native/pair_rules.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <stdexcept>
#include <string_view>

namespace korlit::host {

namespace {

/// One number as such, of several the text of all.
Value valueOf(const NumberView& numbers) {
    if (numbers.size() == 1) {
        return numbers.front();
    }
    std::string text;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        text += i == 0 ? "" : " ";
        appendNumber(text, numbers[i]);
    }
    return text;
}

std::string untilNul(const void* characters, std::int64_t count) {
    const auto* start = static_cast<const char*>(characters);
    return start == nullptr ? "" : std::string{start, std::find(start, start + count, '\0')};
}

Value valueOf(const AndiAttribute& attribute) {
    if (attribute.Type == AndiType::Char) {
        return untilNul(attribute.Value, attribute.Count);
    }
    return valueOf(NumberView{attribute.Type, attribute.Value,
                              static_cast<std::size_t>(std::max(attribute.Count, 0))});
}

Value valueOf(const AndiImage& image, const AndiVariable& variable) {
    if (variable.Type != AndiType::Char) {
        return valueOf(numbersOf(&variable));
    }
    return variable.DimensionCount == 2 ? joined(rowsOf(image, &variable), "\n")
                                        : untilNul(variable.Data, variable.VSize);
}

/// Names that aren't rows of a matrix.
bool isNameVector(const AndiVariable& variable) {
    return variable.Type == AndiType::Char && variable.DimensionCount < 2 &&
           isNamed(variable.Name, taken::peakName);
}

bool isAlongPeaks(const AndiImage& image, const AndiVariable& variable) {
    return variable.DimensionCount > 0 &&
           isNamed(image.file.Dimensions[variable.DimensionIds[0]].Name, taken::peakNumber);
}

/// Whether its values have one order only, as those of a column of a matrix have.
bool isInLine(const AndiImage& image, const AndiVariable& variable) {
    const auto ids =
        std::span{variable.DimensionIds}.first(static_cast<std::size_t>(variable.DimensionCount));
    return std::ranges::count_if(
               ids, [&](std::int32_t id) { return image.file.Dimensions[id].Length > 1; }) <= 1;
}

/// Of a vector: along the peaks there is a character for each. Else a name begins at each fourth
/// byte, as conversions have it, that no other goes over.
std::vector<std::string> namesOf(const AndiImage& image, const AndiVariable& vector) {
    const std::string_view text{static_cast<const char*>(vector.Data),
                                static_cast<std::size_t>(vector.ElementCount)};
    std::vector<std::string> names;
    if (isAlongPeaks(image, vector)) {
        std::ranges::transform(text, std::back_inserter(names),
                               [](const char& name) { return untilNul(&name, 1); });
        return names;
    }
    constexpr std::size_t pitch = 4;
    for (std::size_t place = 0; place < text.size(); place += pitch) {
        const bool isGoneOver = place > 0 && text[place - 1] != '\0';
        names.push_back(isGoneOver ? ""
                                   : untilNul(text.data() + place,
                                              static_cast<std::int64_t>(text.size() - place)));
    }
    while (!names.empty() && names.back().empty()) {
        names.pop_back();
    }
    return names;
}

bool isPeakNumbers(const AndiImage& image, const AndiVariable& variable) {
    const bool isKnown = std::ranges::any_of(
        peakSources, [&](const PeakSource& source) { return isNamed(variable.Name, source.name); });
    return isKnown ? isInLine(image, variable)
                   : variable.DimensionCount == 1 && isAlongPeaks(image, variable);
}

/// Whether it has a value a peak: by its dimension, or by a name that conversions know.
bool isPeakColumn(const AndiImage& image, const AndiVariable& variable) {
    if (variable.Type != AndiType::Char) {
        return isPeakNumbers(image, variable);
    }
    return isNameVector(variable) ||
           (variable.DimensionCount == 2 &&
            (isAlongPeaks(image, variable) || isNamed(variable.Name, taken::peakName)));
}

void readPeakColumn(Reading& reading, const AndiImage& image, const AndiVariable& variable) {
    std::size_t peak = 0;
    const auto add = [&](Value value) {
        reading.entries.push_back(
            {.key = {.part = parts::peaks, .name = variable.Name, .peak = ++peak},
             .value = std::move(value)});
    };
    std::ranges::for_each(
        isNameVector(variable) ? namesOf(image, variable) : rowsOf(image, &variable), add);
    const NumberView numbers = numbersOf(&variable);
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        add(numbers[i]);
    }
}

void readAttribute(Reading& reading, std::string_view name, const AndiAttribute& attribute) {
    reading.entries.push_back(
        {.key = {.part = parts::texts, .name = name}, .value = valueOf(attribute)});
}

void readAttributes(Reading& reading, const AndiVariable& variable) {
    for (const AndiAttribute& attribute : attributesOf(variable.Attributes)) {
        const auto name =
            std::make_shared<const std::string>(std::string{variable.Name} + ':' + attribute.Name);
        reading.memory.push_back(name);
        readAttribute(reading, *name, attribute);
    }
}

void readVariable(Reading& reading, const AndiImage& image, const AndiVariable& variable) {
    if (&variable == variableOf(image, taken::ordinateValues)) {
        reading.signal = numbersOf(&variable);
    } else if (variable.IsRecord != 0) {
        reading.entries.push_back({.key = {.part = parts::records, .name = variable.Name},
                                   .value = valueOf(image, variable)});
    } else if (isPeakColumn(image, variable)) {
        readPeakColumn(reading, image, variable);
    } else {
        reading.entries.push_back({.key = {.part = parts::signal, .name = variable.Name},
                                   .value = valueOf(image, variable)});
    }
    readAttributes(reading, variable);
}

} // namespace

Reading readAndi(const std::string& file, Layout layout) {
    const auto image = std::make_shared<AndiImage>();
    if (const std::string reason = load(*image, file); !reason.empty()) {
        throw std::runtime_error{withDiagnosis(reason, file, FileKind::Andi)};
    }
    if (variableNamed(*image, taken::ordinateValues) == nullptr &&
        variableNamed(*image, totalIntensity) == nullptr) {
        throw std::runtime_error{"File " + file + " is " + noChromatogramText};
    }
    Reading reading = readingOf(*image);
    reading.memory.push_back(image);
    if (layout == Layout::LookedAt) {
        std::ifstream bytes{file, std::ios::binary};
        reading.layoutProblem =
            layoutProblem(bytes, static_cast<std::int64_t>(std::filesystem::file_size(file)));
    }
    return reading;
}

Reading readingOf(const AndiImage& image) {
    Reading reading;
    reading.kind = FileKind::Andi;
    reading.image = &image;
    for (const AndiAttribute& attribute : attributesOf(image.file.GlobalAttributes)) {
        readAttribute(reading, attribute.Name, attribute);
    }
    for (const AndiVariable& variable : variablesOf(image)) {
        readVariable(reading, image, variable);
    }
    for (const AndiDimension& dimension : dimensionsOf(image)) {
        reading.entries.push_back({.key = {.part = parts::dimensions, .name = dimension.Name},
                                   .value = static_cast<double>(dimension.Length)});
    }
    return reading;
}

} // namespace korlit::host
