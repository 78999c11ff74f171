#include "andi/value_lookup.h"

#include "platform/text.h"

#include <algorithm>
#include <cstring>
#include <span>

namespace korlit {

namespace {

bool isSameName(const char* key, const char* storedName) {
    if (storedName == nullptr) {
        return false;
    }
    while (*key != '\0') {
        if (*storedName == '_' || *storedName == '-') {
            ++storedName;
        }
        if (*key != *storedName) {
            return false;
        }
        ++key;
        ++storedName;
        if (*key == '\0' && *storedName == '\0') {
            return true;
        }
    }
    return false;
}

template <typename Element>
Element elementAt(const void* elements, std::int32_t index) {
    constexpr std::int64_t size = sizeof(Element);
    Element element{};
    std::memcpy(&element, static_cast<const char*>(elements) + index * size, size);
    return element;
}

/// Copies as strncpy does: exactly the target's length, zeros behind the text's end. That is its
/// first zero, which no block lacks, however many elements it is said to have.
void deliverText(const char* text, std::span<char> out) {
    const char* end = std::find(text, text + out.size(), '\0');
    std::fill(std::copy(text, end, out.begin()), out.end(), '\0');
}

void deliverNumbers(AndiType type, const void* elements, std::int32_t elementCount,
                    std::span<char> out) {
    const char* separator = elementSize(type) > 1 ? " " : "";
    std::size_t written = 0;
    if (elementCount > 0) {
        out.front() = '\0';
    }
    for (std::int32_t i = 0; i < elementCount && written + 1 < out.size(); ++i) {
        const AndiElementText text = FormatAndiValue(type, elements, i);
        formatText(out.subspan(written), "%s%s", text.data(), separator);
        written += std::strlen(out.data() + written);
    }
}

/// None where the data weren't loaded.
std::int32_t loadedElements(const AndiVariable& variable) {
    return variable.Data == nullptr ? 0 : variable.ElementCount;
}

/// One round of the search over a variable: itself, then its attributes.
bool findInVariable(AndiVariable* variable, const char* key, void* out, std::int32_t outLength,
                    AndiVariable** outVariable) {
    if (variable->IsRecord == 0 &&
        MatchAndiName(key, variable->Name, variable->Type, loadedElements(*variable),
                      variable->Data, out, outLength) == 1) {
        *outVariable = variable;
        return true;
    }
    return outLength != pointerMode &&
           FindAttributeInList(&variable->Attributes, key, out, outLength) == 1;
}

bool findDimension(const AndiFile* file, const char* key, std::span<char> out) {
    for (std::int32_t i = 0; i < file->DimensionCount; ++i) {
        if (isSameName(key, file->Dimensions[i].Name)) {
            formatText(out, "%d", file->Dimensions[i].Length);
            return true;
        }
    }
    return false;
}

} // namespace

int FindAndiValue(AndiFile* file, char* key, void* out, std::int32_t outLength,
                  AndiVariable** outVariable) {
    _strlwr(key);
    *outVariable = nullptr;
    const bool isTextMode = outLength != pointerMode;
    if (isTextMode && FindAttributeInList(&file->GlobalAttributes, key, out, outLength) == 1) {
        return 1;
    }
    for (std::int32_t i = 0; i < file->VariableCount; ++i) {
        if (findInVariable(&file->Variables[i], key, out, outLength, outVariable)) {
            return 1;
        }
    }
    const std::span<char> text{static_cast<char*>(out), static_cast<std::size_t>(outLength)};
    return isTextMode && findDimension(file, key, text) ? 1 : 0;
}

int FindAttributeInList(const AndiAttributeList* list, const char* key, void* out,
                        std::int32_t outLength) {
    for (std::int32_t i = 0; i < list->Count; ++i) {
        const AndiAttribute& attribute = list->Items[i];
        if (MatchAndiName(key, attribute.Name, attribute.Type, attribute.Count, attribute.Value,
                          out, outLength) == 1) {
            return 1;
        }
    }
    return 0;
}

int MatchAndiName(const char* key, const char* storedName, AndiType type, std::int32_t elementCount,
                  void* elements, void* out, std::int32_t outLength) {
    if (!isSameName(key, storedName)) {
        return 0;
    }
    if (outLength == pointerMode) {
        *static_cast<void**>(out) = elements;
        return 1;
    }
    const std::span<char> buffer{static_cast<char*>(out), static_cast<std::size_t>(outLength)};
    if (type == AndiType::Char) {
        deliverText(static_cast<const char*>(elements), buffer);
    } else {
        deliverNumbers(type, elements, elementCount, buffer);
    }
    return 1;
}

AndiElementText FormatAndiValue(AndiType type, const void* elements, std::int32_t index) {
    AndiElementText text{};
    switch (type) {
    case AndiType::Byte:
        formatText(text, "%hd", static_cast<short>(elementAt<std::uint8_t>(elements, index)));
        break;
    case AndiType::Char: {
        const char character = elementAt<char>(elements, index);
        text[0] = character == '\0' ? ' ' : character;
        break;
    }
    case AndiType::Short:
        formatText(text, "%hd", elementAt<std::int16_t>(elements, index));
        break;
    case AndiType::Integer:
        formatText(text, "%d", elementAt<std::int32_t>(elements, index));
        break;
    case AndiType::Float:
        formatGeneral(text, elementAt<float>(elements, index));
        break;
    case AndiType::Double:
        formatGeneral(text, elementAt<double>(elements, index));
        break;
    case AndiType::None:
        break;
    }
    return text;
}

} // namespace korlit
