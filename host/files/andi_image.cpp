#include "host/files/andi_image.h"

#include "andi/andi_reader.h"
#include "andi/andi_writer.h"
#include "andi/value_lookup.h"
#include "host/system/standard_error.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <span>
#include <string_view>

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

template <typename Element>
std::vector<double> elements(const AndiVariable& variable) {
    std::vector<double> numbers(static_cast<std::size_t>(variable.ElementCount));
    const auto* data = static_cast<const char*>(variable.Data);
    for (double& number : numbers) {
        Element element{};
        std::memcpy(&element, data, sizeof element);
        data += sizeof element;
        number = static_cast<double>(element);
    }
    return numbers;
}

} // namespace

std::string load(AndiImage& image, const std::string& path) {
    std::string message = messageFor(path);
    const StandardErrorCapture boxes;
    return ReadAndiFile(path.c_str(), &image.file, message) == 1 ? "" : reasonOf(message, boxes);
}

std::optional<std::string> textOf(const AndiImage& image, const std::string& key) {
    constexpr std::int32_t longestText = 4096;
    std::string name = key;
    std::string text(longestText, '\0');
    AndiVariable* variable = nullptr;
    // The lookup reads only, but may hand out what can be changed.
    auto* file = const_cast<AndiFile*>(&image.file);
    if (FindAndiValue(file, name.data(), text.data(), longestText - 1, &variable) == 0) {
        return std::nullopt;
    }
    return std::string{text.c_str()};
}

const AndiVariable* variableOf(const AndiImage& image, const std::string& key) {
    std::string name = key;
    AndiVariable* variable = nullptr;
    void* data = nullptr;
    FindAndiValue(const_cast<AndiFile*>(&image.file), name.data(), &data, pointerMode, &variable);
    return variable;
}

std::vector<double> numbersOf(const AndiVariable* variable) {
    if (variable == nullptr || variable->Data == nullptr) {
        return {};
    }
    switch (variable->Type) {
    case AndiType::Byte:
        return elements<std::int8_t>(*variable);
    case AndiType::Short:
        return elements<std::int16_t>(*variable);
    case AndiType::Integer:
        return elements<std::int32_t>(*variable);
    case AndiType::Float:
        return elements<float>(*variable);
    case AndiType::Double:
        return elements<double>(*variable);
    case AndiType::None:
    case AndiType::Char:
        break;
    }
    return {};
}

std::vector<std::string> rowsOf(const AndiImage& image, const AndiVariable* variable) {
    std::vector<std::string> rows;
    if (variable == nullptr || variable->Type != AndiType::Char || variable->DimensionCount != 2) {
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

void setSourceReference(AndiImage& image, const std::string& source) {
    AndiAttributeList& list = image.file.GlobalAttributes;
    const std::int32_t oldCount = list.Count;
    AddAndiAttribute(&list, "source_file_reference", AndiType::Char, textLength, source.c_str());
    if (list.Count == oldCount) {
        throw std::bad_alloc{};
    }
    // The new value takes the place of the old one, if there is one.
    const std::span attributes{list.Items, static_cast<std::size_t>(list.Count)};
    AndiAttribute& added = attributes.back();
    const auto old = std::ranges::find_if(attributes, [&](const AndiAttribute& each) {
        return std::string_view{each.Name} == added.Name;
    });
    if (&*old != &added) {
        std::swap(*old, added);
        releaseBlock(added.NameHandle, added.Name);
        releaseBlock(added.ValueHandle, added.Value);
        --list.Count;
    }
}

std::string save(AndiImage& image, const std::string& path) {
    std::string message = messageFor(path);
    return WriteAndiFile(path.c_str(), &image.file, message) == 1 ? "" : message.c_str();
}

} // namespace korlit::host
