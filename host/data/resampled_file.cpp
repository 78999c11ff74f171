#include "host/data/resampled_file.h"

#include "andi/andi_writer.h"
#include "host/text/numbers.h"
#include "native/pair_rules.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>
#include <string_view>

namespace korlit::host {

namespace {

constexpr const char* sampleTimes = "raw_data_retention";

/// What tells of the samples' distance, which is told anew.
constexpr std::array<const char*, 3> namesToldAnew{taken::samplingInterval, taken::retentionUnit,
                                                   taken::uniformFlag};

bool isToldAnew(const char* name) {
    return std::ranges::any_of(namesToldAnew,
                               [&](const char* each) { return isNamed(name, each); });
}

void requireMemory(bool isAdded) {
    if (!isAdded) {
        throw std::bad_alloc{};
    }
}

void addText(AndiAttributeList& list, const char* name, const std::string& text) {
    const std::int32_t count = list.Count;
    AddAndiAttribute(&list, name, AndiType::Char, textLength, text.c_str());
    requireMemory(list.Count > count);
}

void copyAttributes(AndiAttributeList& target, const AndiAttributeList& source) {
    for (const AndiAttribute& each : attributesOf(source)) {
        // A list without elements can't be built, and says nothing.
        if (!isToldAnew(each.Name) && each.Count > 0 && each.Value != nullptr) {
            const std::int32_t count = target.Count;
            AddAndiAttribute(&target, each.Name, each.Type, each.Count, each.Value);
            requireMemory(target.Count > count);
        }
    }
}

/// The text of an interval that a conversion takes for just so many milliseconds, although it cuts
/// off what a float lacks.
std::string intervalText(std::int16_t intervalMs, const std::string& unit) {
    const double msPerUnit = isMinutes(unit) ? 60000.0 : 1000.0;
    auto value = static_cast<float>(intervalMs / msPerUnit);
    for (;;) {
        std::array<char, 32> digits{};
        const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value);
        const std::string_view text{digits.data(), end.ptr};
        if (pairTimes(text, unit).intervalMs >= intervalMs) {
            return std::string{text};
        }
        value = std::nextafter(value, std::numeric_limits<float>::infinity());
    }
}

void addSignal(AndiFile& file, std::int32_t dimension, const std::vector<float>& samples,
               const AndiVariable* old) {
    AndiVariable* signal = AddAndiVector(&file, taken::ordinateValues, AndiType::Float, dimension);
    requireMemory(signal != nullptr);
    std::memcpy(signal->Data, samples.data(), samples.size() * sizeof(float));
    if (old != nullptr) {
        copyAttributes(signal->Attributes, old->Attributes);
    }
    addText(signal->Attributes, taken::uniformFlag, "Y");
}

/// Copies a variable of up to two dimensions, none of which are the samples.
void copyVariable(AndiFile& file, const AndiVariable& old) {
    const std::size_t size = static_cast<std::size_t>(old.ElementCount) *
                             static_cast<std::size_t>(elementSize(old.Type));
    AndiVariable* copy =
        old.DimensionCount == 0
            ? AddAndiScalar(&file, old.Name, old.Type, old.Data)
            : AddAndiMatrix(&file, old.Name, old.Type, old.DimensionIds[0],
                            old.DimensionCount == 2 ? old.DimensionIds[1] : noDimension);
    requireMemory(copy != nullptr);
    std::memcpy(copy->Data, old.Data,
                std::min(size, static_cast<std::size_t>(std::max(copy->VSize, 0))));
    copyAttributes(copy->Attributes, old.Attributes);
}

bool canBeCopied(const AndiImage& image, const AndiVariable& variable, std::int32_t points) {
    constexpr std::int32_t mostDimensions = 2;
    if (variable.Data == nullptr || variable.ElementCount <= 0 || isToldAnew(variable.Name) ||
        isNamed(variable.Name, taken::ordinateValues) || isNamed(variable.Name, sampleTimes) ||
        variable.DimensionCount > mostDimensions) {
        return false;
    }
    const std::span dimensions{variable.DimensionIds.data(),
                               static_cast<std::size_t>(variable.DimensionCount)};
    return std::ranges::none_of(dimensions, [&](std::int32_t id) {
        return id == points || image.file.Dimensions[id].Length == 0;
    });
}

/// A chromatogram: all that the file has, with other samples.
void buildFrom(AndiFile& file, const DataSet& set, const Resampling& resampling) {
    const AndiImage& image = *set.image;
    const AndiVariable* signal = variableOf(image, taken::ordinateValues);
    const std::int32_t points = signal->DimensionIds[0];
    for (std::int32_t i = 0; i < image.file.DimensionCount; ++i) {
        const AndiDimension& old = image.file.Dimensions[i];
        const auto length = static_cast<std::int32_t>(resampling.samples.size());
        AddAndiDimension(&file, old.Name, i == points ? length : old.Length);
        requireMemory(file.DimensionCount == i + 1);
    }
    copyAttributes(file.GlobalAttributes, image.file.GlobalAttributes);
    const std::string unit = textOf(image, taken::retentionUnit).value_or("seconds");
    addText(file.GlobalAttributes, taken::retentionUnit, unit);
    addText(file.GlobalAttributes, taken::samplingInterval,
            intervalText(resampling.intervalMs, unit));
    addSignal(file, points, resampling.samples, signal);
    for (const AndiVariable& each : variablesOf(image)) {
        if (canBeCopied(image, each, points)) {
            copyVariable(file, each);
        }
    }
}

/// The total ion chromatogram: its samples, and the texts by the names that a chromatogram's have.
void buildFromTotalIon(AndiFile& file, const DataSet& set, const Resampling& resampling) {
    const std::int32_t points = AddAndiDimension(
        &file, taken::pointNumber, static_cast<std::int32_t>(resampling.samples.size()));
    requireMemory(file.DimensionCount == 1);
    for (const auto& [name, text] : set.texts) {
        addText(file.GlobalAttributes, name.c_str(), text);
    }
    addText(file.GlobalAttributes, "detector_unit", set.detectorUnit);
    addText(file.GlobalAttributes, taken::retentionUnit, "seconds");
    addText(file.GlobalAttributes, taken::samplingInterval,
            intervalText(resampling.intervalMs, "seconds"));
    addSignal(file, points, resampling.samples, nullptr);
}

/// What a file holds whose samples aren't equidistant; nothing of any other.
std::optional<DataSet> unevenSetOf(const std::string& andiFile) {
    try {
        std::vector<DataSet> sets = loadDataSets(andiFile, FileKind::Andi);
        return sets.front().isUniform ? std::nullopt : std::optional{std::move(sets.front())};
    } catch (const std::runtime_error&) {
        // Why it can't be read is what the conversion tells.
        return std::nullopt;
    }
}

} // namespace

std::string ResampledFile::words() const {
    return std::string{isTotalIon ? "total ion chromatogram " : ""} + "resampled to " +
           std::to_string(intervalMs) +
           " ms: " + groupedDigits(static_cast<std::int64_t>(oldCount)) + " samples became " +
           groupedDigits(static_cast<std::int64_t>(newCount)) + ", at most " +
           roundedText(deviation) + (unit.empty() ? "" : ' ' + unit) + " from the signal";
}

std::optional<ResampledFile> writeResampled(const std::string& andiFile, std::int16_t intervalMs,
                                            const std::string& target) {
    const std::optional<DataSet> set = unevenSetOf(andiFile);
    if (!set || !isResampleable(*set)) {
        return std::nullopt;
    }
    const Resampling resampling =
        resampled(*set, intervalMs == 0 ? usualIntervalMs(*set) : intervalMs);
    AndiImage built;
    (set->isTotalIon ? buildFromTotalIon : buildFrom)(built.file, *set, resampling);
    constexpr std::size_t longestWords = 100;
    std::string message(target.size() + longestWords, '\0');
    if (WriteAndiFile(target.c_str(), &built.file, message) != 1) {
        throw std::runtime_error{message.c_str()};
    }
    return ResampledFile{.intervalMs = resampling.intervalMs,
                         .oldCount = set->signal.size(),
                         .newCount = resampling.samples.size(),
                         .deviation = resampling.deviation,
                         .unit = set->detectorUnit,
                         .isTotalIon = set->isTotalIon};
}

std::string resamplingAdvice(const std::string& andiFile) {
    const std::optional<DataSet> set = unevenSetOf(andiFile);
    if (!set) {
        return "";
    }
    if (!isResampleable(*set)) {
        return "it has no ascending time of each sample, which --resample needs";
    }
    return set->isTotalIon
               ? "a mass spectrometer's file: --resample converts its total ion chromatogram"
               : "--resample brings them to equal distances";
}

} // namespace korlit::host
