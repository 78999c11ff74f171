#include "host/files/andi_image.h"

#include "andi/andi_reader.h"
#include "andi/value_lookup.h"
#include "host/system/standard_error.h"

#include <algorithm>

namespace korlit::host {

namespace {

/// Room for the reader's or writer's longest text about a path.
std::string messageFor(const std::string& path) {
    constexpr std::size_t longestText = 100;
    std::string message;
    message.resize(path.size() + longestText);
    return message;
}

std::string untilNul(const char* text, std::size_t limit) {
    return std::string{text, std::find(text, text + limit, '\0')};
}

/// What a failed call has told, in `message` or in the box that it showed.
std::string reasonOf(const std::string& message, const StandardErrorCapture& boxes) {
    std::string reason = untilNul(message.data(), message.size());
    if (reason.empty()) {
        reason = boxes.text();
        reason.erase(reason.find_last_not_of('\n') + 1);
    }
    return reason;
}

/// A name as the lookups want it.
std::string lookupKey(std::string_view name) {
    std::string key{name};
    std::erase(key, '_');
    return key;
}

std::string loadPart(AndiImage& image, const std::string& path, DataFilter isWanted) {
    std::string message = messageFor(path);
    const StandardErrorCapture boxes;
    return ReadAndiPart(path.c_str(), &image.file, message, isWanted) == 1
               ? ""
               : reasonOf(message, boxes);
}

/// The spectra of a mass spectrometer are most of its files, and no chromatogram.
bool isOfSpectra(const AndiVariable& variable) {
    return isNamed(variable.Name, "mass_values") || isNamed(variable.Name, "intensity_values") ||
           isNamed(variable.Name, "time_values");
}

} // namespace

std::string load(AndiImage& image, const std::string& path) {
    return loadPart(image, path,
                    [](const AndiVariable& variable) { return !isOfSpectra(variable); });
}

std::string loadHeader(AndiImage& image, const std::string& path) {
    return loadPart(image, path, [](const AndiVariable& /*variable*/) { return false; });
}

std::optional<std::string> textOf(const AndiImage& image, std::string_view name) {
    constexpr std::int32_t longestText = 4096;
    std::string key = lookupKey(name);
    std::string text(longestText, '\0');
    AndiVariable* variable = nullptr;
    // The lookup reads only, but may hand out what can be changed.
    auto* file = const_cast<AndiFile*>(&image.file);
    if (FindAndiValue(file, key.data(), text.data(), longestText - 1, &variable) == 0) {
        return std::nullopt;
    }
    return std::string{text.c_str()};
}

const AndiVariable* variableOf(const AndiImage& image, std::string_view name) {
    std::string key = lookupKey(name);
    AndiVariable* variable = nullptr;
    void* data = nullptr;
    FindAndiValue(const_cast<AndiFile*>(&image.file), key.data(), static_cast<void*>(&data),
                  pointerMode, &variable);
    return variable;
}

const AndiVariable* variableNamed(const AndiImage& image, std::string_view name) {
    const auto variables = variablesOf(image);
    const auto found = std::ranges::find_if(
        variables, [&](const AndiVariable& each) { return isNamed(each.Name, name); });
    return found == variables.end() ? nullptr : &*found;
}

NumberView numbersOf(const AndiVariable* variable) {
    return variable == nullptr ? NumberView{}
                               : NumberView{variable->Type, variable->Data,
                                            static_cast<std::size_t>(variable->ElementCount)};
}

std::vector<std::string> rowsOf(const AndiImage& image, const AndiVariable* variable) {
    std::vector<std::string> rows;
    if (variable == nullptr || variable->Type != AndiType::Char || variable->DimensionCount != 2 ||
        variable->Data == nullptr) {
        return rows;
    }
    const std::int64_t width = image.file.Dimensions[variable->DimensionIds[1]].Length;
    const auto* data = static_cast<const char*>(variable->Data);
    for (std::int64_t place = 0; width > 0 && place + width <= variable->ElementCount;
         place += width) {
        rows.push_back(untilNul(data + place, static_cast<std::size_t>(width)));
    }
    return rows;
}

std::optional<std::string> textOf(const AndiAttribute& attribute) {
    if (attribute.Type != AndiType::Char || attribute.Value == nullptr) {
        return std::nullopt;
    }
    return untilNul(static_cast<const char*>(attribute.Value),
                    static_cast<std::size_t>(attribute.Count));
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
    return MatchAndiName(lookupKey(templateName).c_str(), storedName, AndiType::None, 0, nullptr,
                         static_cast<void*>(&unused), pointerMode) == 1;
}

} // namespace korlit::host
