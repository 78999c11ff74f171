#include "fuzz/promises.h"

#include "andi/andi_reader.h"
#include "fuzz/machine.h"
#include "platform/faults.h"
#include "tests/support/host_call.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace korlit::fuzz {

namespace {

template <typename... Numbers>
void append(std::string& image, Numbers... numbers) {
    (image.append(reinterpret_cast<const char*>(&numbers), sizeof numbers), ...);
}

void appendText(std::string& image, const char* text, GlobalHandle block) {
    const auto size = static_cast<std::size_t>(GlobalSize(block));
    require(text != nullptr && strnlen(text, size) < size, "a text is terminated in its block");
    image.append(text) += '\0';
}

/// The whole block goes into the image, whatever stands behind the elements.
void appendElements(std::string& image, AndiType type, std::int32_t count, const void* elements,
                    GlobalHandle block) {
    require(isValidType(type), "a type is one of the six");
    const std::int64_t spare = type == AndiType::Char ? 1 : 0;
    require(count >= 0 && count * std::int64_t{elementSize(type)} + spare <= GlobalSize(block),
            "the elements are within their block, and a text is terminated");
    append(image, type, count);
    image.append(static_cast<const char*>(elements), static_cast<std::size_t>(GlobalSize(block)));
}

void appendList(std::string& image, const AndiAttributeList& list) {
    append(image, list.Count);
    for (std::int32_t i = 0; i < list.Count; ++i) {
        const auto& [nameBlock, name, type, count, valueBlock, value] = list.Items[i];
        appendText(image, name, nameBlock);
        appendElements(image, type, count, value, valueBlock);
    }
}

void appendVariable(std::string& image, const AndiFile& file, const AndiVariable& variable) {
    appendText(image, variable.Name, variable.NameHandle);
    require(variable.DimensionCount >= 0 && variable.DimensionCount <= maxVariableDimensions,
            "a variable has at most five dimensions");
    for (std::int32_t place = 0; place < variable.DimensionCount; ++place) {
        const std::int32_t id = variable.DimensionIds[static_cast<std::size_t>(place)];
        require(id >= 0 && id < file.DimensionCount, "a dimension is one of the file");
    }
    append(image, variable.DimensionCount, variable.DimensionIds, variable.VSize,
           variable.IsRecord);
    appendList(image, variable.Attributes);
    appendElements(image, variable.Type, variable.ElementCount, variable.Data, variable.DataHandle);
}

} // namespace

void require(bool isKept, const char* promise) {
    if (!isKept) {
        std::fprintf(stderr, "Broken promise: %s\n", promise);
        std::abort();
    }
}

void requireNothingHeld() {
    require(heldBlockCount() + heldFileCount() + heldLibraryCount() == 0,
            "no block, file or library is held");
}

std::string contentOf(const AndiFile& file) {
    std::string image;
    append(image, file.RecordCount, file.DimensionCount, file.VariableCount);
    for (std::int32_t i = 0; i < file.DimensionCount; ++i) {
        appendText(image, file.Dimensions[i].Name, file.Dimensions[i].NameHandle);
        append(image, file.Dimensions[i].Length);
    }
    appendList(image, file.GlobalAttributes);
    for (std::int32_t i = 0; i < file.VariableCount; ++i) {
        appendVariable(image, file, file.Variables[i]);
    }
    return image;
}

std::string load(const std::string& path, AndiFile& file) {
    // A buffer of exactly the size that a host must provide, so that a sanitizer sees its end.
    std::vector<char> message(
        std::max<std::size_t>(path.size() + KORLIT_MESSAGE_ROOM, KORLIT_MESSAGE_MINIMUM));
    const int boxesBefore = shownBoxes();
    const bool isLoaded = ReadAndiFile(path.c_str(), &file, message) == 1;
    const bool isTold = message.front() != '\0' || shownBoxes() > boxesBefore;
    require(isLoaded != isTold, "a file is loaded, or the reason told");
    return isLoaded ? contentOf(file) : "";
}

void requireLoadable(const std::string& path) {
    AndiFile file{};
    require(!load(path, file).empty(), "a file that was written can be loaded");
    FreeAndiFile(&file);
}

bool convertAsHost(std::int32_t (*conversion)(char*, char*), const std::string& path,
                   const std::string& messageBefore, const std::string& success) {
    const int boxesBefore = shownBoxes();
    const test::Answer answer = test::callAsHost(conversion, path, messageBefore);
    require(answer.areBuffersKept, "nothing is written behind a buffer");
    require(answer.result == 0 || answer.result == 1, "the result is 0 or 1");
    require(answer.result == 0 || answer.message.starts_with(success), "a success has its words");
    require(answer.result == 1 || answer.message != messageBefore || shownBoxes() > boxesBefore,
            "the reason of a failure is told");
    return answer.result == 1;
}

} // namespace korlit::fuzz
