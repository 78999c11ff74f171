#include "andi/andi_file.h"

#include "platform/message_box.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace korlit {

namespace {

constexpr std::int32_t growthFailed = 0;
constexpr std::int32_t nothingAdded = -1;

void showMemoryError(const char* title) {
    MessageBoxA(GetActiveWindow(), "Error allocating memory", title);
}

std::int64_t roundUp(std::int64_t count, std::int32_t block) {
    return (count + block - 1) / block * block;
}

/// Room for one more element; null behind a message box. The element is zero and counts only when
/// the caller stores the new count.
template <typename Element>
Element* newElement(std::int32_t storedCount, GlobalHandle& handle, Element*& items) {
    // Arrays count in 16 bits: one element past the highest count is asked for as a negative number
    // of elements, which no memory can hold.
    auto count = static_cast<std::int16_t>(storedCount);
    void* array = items;
    if (GrowAndiArray(&count, &handle, &array, arrayBlock, 1, sizeof(Element)) == 0) {
        return nullptr;
    }
    items = static_cast<Element*>(array);
    return &items[count - 1];
}

bool acquireName(GlobalHandle& handle, char*& name, const char* text) {
    if (text == nullptr) {
        return false;
    }
    const auto length = static_cast<std::int64_t>(std::strlen(text));
    if (!acquireBlock(handle, name, round4(length) + 1)) {
        releaseBlock(handle, name);
        return false;
    }
    std::memcpy(name, text, static_cast<std::size_t>(length));
    return true;
}

bool acquireValue(AndiAttribute& attribute, const void* elements) {
    const std::int64_t byteCount = std::int64_t{attribute.Count} * elementSize(attribute.Type);
    if (!isValidType(attribute.Type) || attribute.Count < 0 || elements == nullptr ||
        !acquireBlock(attribute.ValueHandle, attribute.Value, round4(byteCount) + 1)) {
        releaseBlock(attribute.ValueHandle, attribute.Value);
        return false;
    }
    std::memcpy(attribute.Value, elements, static_cast<std::size_t>(byteCount));
    return true;
}

/// Length of an attribute in elements; negative for a text too long to count or a bad length.
std::int32_t attributeCount(std::int32_t length, const void* elements) {
    if (length != textLength || elements == nullptr) {
        return length;
    }
    const std::size_t characters = std::strlen(static_cast<const char*>(elements)) + 1;
    const bool isCountable = characters <= std::numeric_limits<std::int32_t>::max();
    return isCountable ? static_cast<std::int32_t>(characters) : -1;
}

bool isDimension(const AndiFile& file, std::int32_t index) {
    return index >= 0 && index < file.DimensionCount;
}

/// Zero-filled data for `elementCount` elements of the variable's type.
bool acquireData(AndiVariable& variable, std::int64_t elementCount) {
    const std::int64_t size = elementSize(variable.Type);
    const bool isRefused = size == 0 || elementCount < 0 || elementCount >= globalAllocLimit;
    if (isRefused ||
        !acquireBlock(variable.DataHandle, variable.Data, round4(elementCount * size) + 1)) {
        releaseBlock(variable.DataHandle, variable.Data);
        return false;
    }
    variable.ElementCount = static_cast<std::int32_t>(elementCount);
    variable.VSize = static_cast<std::int32_t>(round4(elementCount * size));
    return true;
}

/// The common course of the variable builders: the variable takes its dimensions from `shape`.
AndiVariable* addVariable(AndiFile* file, const char* name, const AndiVariable& shape,
                          std::int64_t elementCount) {
    AndiVariable* variable =
        newElement(file->VariableCount, file->VariablesHandle, file->Variables);
    if (variable == nullptr) {
        return nullptr;
    }
    *variable = shape;
    if (!acquireName(variable->NameHandle, variable->Name, name) ||
        !acquireData(*variable, elementCount)) {
        releaseBlock(variable->NameHandle, variable->Name);
        return nullptr;
    }
    ++file->VariableCount;
    return variable;
}

} // namespace

std::int32_t AddAndiDimension(AndiFile* file, const char* name, std::int32_t length) {
    AndiDimension* dimension =
        newElement(file->DimensionCount, file->DimensionsHandle, file->Dimensions);
    if (dimension == nullptr) {
        return growthFailed;
    }
    if (!acquireName(dimension->NameHandle, dimension->Name, name)) {
        return nothingAdded;
    }
    dimension->Length = length;
    return file->DimensionCount++;
}

std::int32_t AddAndiAttribute(AndiAttributeList* list, const char* name, AndiType type,
                              std::int32_t length, const void* elements) {
    AndiAttribute* attribute = newElement(list->Count, list->Handle, list->Items);
    if (attribute == nullptr) {
        return growthFailed;
    }
    attribute->Type = type;
    attribute->Count = attributeCount(length, elements);
    if (!acquireName(attribute->NameHandle, attribute->Name, name) ||
        !acquireValue(*attribute, elements)) {
        releaseBlock(attribute->NameHandle, attribute->Name);
        return nothingAdded;
    }
    return list->Count++;
}

AndiVariable* AddAndiMatrix(AndiFile* file, const char* name, AndiType type,
                            std::int32_t firstDimension, std::int32_t secondDimension) {
    const bool isMatrix = secondDimension >= 0;
    if (!isDimension(*file, firstDimension) || (isMatrix && !isDimension(*file, secondDimension))) {
        return nullptr;
    }
    AndiVariable shape{};
    shape.Type = type;
    shape.DimensionCount = isMatrix ? 2 : 1;
    shape.DimensionIds[0] = firstDimension;
    std::int64_t elementCount = file->Dimensions[firstDimension].Length;
    if (isMatrix) {
        shape.DimensionIds[1] = secondDimension;
        elementCount *= file->Dimensions[secondDimension].Length;
    }
    return addVariable(file, name, shape, elementCount);
}

AndiVariable* AddAndiVector(AndiFile* file, const char* name, AndiType type,
                            std::int32_t dimension) {
    return AddAndiMatrix(file, name, type, dimension, noDimension);
}

AndiVariable* AddAndiScalar(AndiFile* file, const char* name, AndiType type, const void* element) {
    if (element == nullptr) {
        return nullptr;
    }
    AndiVariable shape{};
    shape.Type = type;
    AndiVariable* variable = addVariable(file, name, shape, 1);
    if (variable != nullptr) {
        std::memcpy(variable->Data, element, static_cast<std::size_t>(elementSize(type)));
    }
    return variable;
}

void FreeAndiFile(AndiFile* file) {
    for (std::int32_t i = 0; i < file->DimensionCount; ++i) {
        releaseBlock(file->Dimensions[i].NameHandle, file->Dimensions[i].Name);
    }
    releaseBlock(file->DimensionsHandle, file->Dimensions);
    file->DimensionCount = 0;

    FreeAttributeList(&file->GlobalAttributes);

    for (std::int32_t i = 0; i < file->VariableCount; ++i) {
        AndiVariable& variable = file->Variables[i];
        releaseBlock(variable.NameHandle, variable.Name);
        FreeAttributeList(&variable.Attributes);
        releaseBlock(variable.DataHandle, variable.Data);
    }
    releaseBlock(file->VariablesHandle, file->Variables);
    file->VariableCount = 0;
}

void FreeAttributeList(AndiAttributeList* list) {
    if (list->Handle != nullptr) {
        for (std::int32_t i = 0; i < list->Count; ++i) {
            AndiAttribute& attribute = list->Items[i];
            releaseBlock(attribute.NameHandle, attribute.Name);
            releaseBlock(attribute.ValueHandle, attribute.Value);
        }
        releaseBlock(list->Handle, list->Items);
    }
    list->Count = 0;
}

std::int32_t GrowAndiArray(std::int16_t* count, GlobalHandle* handle, void** items,
                           std::int32_t block, std::int32_t increment, std::int32_t elementSize) {
    const std::int16_t oldCount = *count;
    *count = static_cast<std::int16_t>(*count + increment);
    const std::int64_t currentSize = GlobalSize(*handle);
    const std::int64_t neededSize = std::int64_t{*count} * elementSize;
    if (neededSize >= 0 && neededSize <= currentSize) {
        std::memset(static_cast<std::byte*>(*items) + std::int64_t{oldCount} * elementSize, 0,
                    static_cast<std::size_t>(std::int64_t{increment} * elementSize));
        return 1;
    }

    const std::int64_t newSize = roundUp(*count, block) * elementSize;
    GlobalHandle newHandle = GlobalAlloc(newSize);
    if (newHandle == nullptr) {
        showMemoryError("ReadAndi 3");
        return 0;
    }
    void* newItems = GlobalLock(newHandle);
    if (newItems == nullptr) {
        showMemoryError("ReadAndi 4");
        GlobalFree(newHandle);
        return 0;
    }
    if (*items != nullptr) {
        std::memcpy(newItems, *items, static_cast<std::size_t>(std::min(currentSize, newSize)));
    }
    releaseBlock(*handle, *items);
    *handle = newHandle;
    *items = newItems;
    return 1;
}

std::int32_t AllocAndiArray(GlobalHandle* handle, void** items, std::int32_t block,
                            std::int32_t elementCount, std::int32_t elementSize) {
    *items = nullptr;
    const std::int64_t capacity = std::max<std::int64_t>(block, roundUp(elementCount, block));
    *handle = GlobalAlloc(capacity * elementSize);
    if (*handle == nullptr) {
        showMemoryError("ReadAndi 5");
        return 0;
    }
    *items = GlobalLock(*handle);
    if (*items == nullptr) {
        showMemoryError("ReadAndi 6");
        *handle = GlobalFree(*handle);
        return 0;
    }
    return 1;
}

} // namespace korlit
