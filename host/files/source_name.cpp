#include "host/files/source_name.h"

#include "host/files/andi_image.h"
#include "host/system/append.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <stdexcept>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

const std::string writeFailedText = "Error writing Andi File ";

/// Bytes that an attribute takes in a header.
std::int64_t storedSize(const AndiAttribute& attribute) {
    constexpr std::int64_t numbers = 3; // the lengths of name and value, and the type
    return numbers * std::int64_t{sizeof(std::int32_t)} +
           round4(static_cast<std::int64_t>(std::strlen(attribute.Name))) +
           round4(std::int64_t{attribute.Count} * elementSize(attribute.Type));
}

/// Replaces the text, or adds it; answers by how many bytes the header grows.
std::int64_t setReference(AndiAttributeList& list, const std::string& source) {
    const std::int32_t oldCount = list.Count;
    AddAndiAttribute(&list, "source_file_reference", AndiType::Char, textLength, source.c_str());
    if (list.Count == oldCount) {
        throw std::bad_alloc{};
    }
    // The new value takes the place of the old one, if there is one.
    const std::span attributes{list.Items, static_cast<std::size_t>(list.Count)};
    AndiAttribute& added = attributes.back();
    std::int64_t growth = storedSize(added);
    const auto old = std::ranges::find_if(attributes, [&](const AndiAttribute& each) {
        return std::string_view{each.Name} == added.Name;
    });
    if (&*old != &added) {
        growth -= storedSize(*old);
        std::swap(*old, added);
        releaseBlock(added.NameHandle, added.Name);
        releaseBlock(added.ValueHandle, added.Value);
        --list.Count;
    }
    return growth;
}

/// Where the data start, which lie together behind the header.
std::int64_t dataPlace(std::span<const AndiVariable> variables, const fs::path& file) {
    const auto first = std::ranges::min_element(variables, {}, &AndiVariable::Begin);
    return first == variables.end() ? static_cast<std::int64_t>(fs::file_size(file)) : first->Begin;
}

void moveData(std::span<AndiVariable> variables, std::int64_t distance, const fs::path& file) {
    for (AndiVariable& variable : variables) {
        const std::int64_t place = variable.Begin + distance;
        if (place > std::numeric_limits<std::int32_t>::max()) {
            throw std::runtime_error{writeFailedText + file.string()};
        }
        variable.Begin = static_cast<std::int32_t>(place);
    }
}

} // namespace

void nameSource(AndiImage& image, const fs::path& file, const std::string& source) {
    const std::span variables{image.file.Variables,
                              static_cast<std::size_t>(image.file.VariableCount)};
    const std::int64_t oldPlace = dataPlace(variables, file);
    moveData(variables, setReference(image.file.GlobalAttributes, source), file);
    const fs::path whole = file.parent_path() / "whole"; // as short a name as fits any system
    if (const std::string reason = saveHeader(image, whole); !reason.empty()) {
        throw std::runtime_error{reason};
    }
    if (appendFrom(file, oldPlace, whole)) {
        throw std::runtime_error{writeFailedText + file.string()};
    }
    fs::rename(whole, file);
}

} // namespace korlit::host
