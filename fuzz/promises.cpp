#include "fuzz/promises.h"

#include "andi/andi_reader.h"
#include "fuzz/machine.h"
#include "platform/faults.h"
#include "tests/support/host_call.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace korlit::fuzz {

namespace {

constexpr char untouched = '~';

void requireTerminated(const char* text, GlobalHandle block) {
    const auto size = static_cast<std::size_t>(GlobalSize(block));
    require(text != nullptr && strnlen(text, size) < size, "a text is terminated in its block");
}

void requireInBlock(AndiType type, std::int32_t count, GlobalHandle block) {
    require(isValidType(type), "a type is one of the six");
    const std::int64_t spare = type == AndiType::Char ? 1 : 0;
    require(count >= 0 && count * std::int64_t{elementSize(type)} + spare <= GlobalSize(block),
            "the elements are within their block, and a text is terminated");
}

void requireSound(const AndiAttributeList& list) {
    for (std::int32_t i = 0; i < list.Count; ++i) {
        const AndiAttribute& attribute = list.Items[i];
        requireTerminated(attribute.Name, attribute.NameHandle);
        requireInBlock(attribute.Type, attribute.Count, attribute.ValueHandle);
    }
}

} // namespace

void require(bool isKept, const char* promise) {
    if (!isKept) {
        std::fprintf(stderr, "Broken promise: %s\n", promise);
        std::abort();
    }
}

void requireNothingHeld() {
    require(heldBlockCount() == 0, "no block is held");
    require(heldFileCount() == 0, "no file is held");
    require(heldLibraryCount() == 0, "no library is held");
}

void requireSound(const AndiFile& file) {
    for (std::int32_t i = 0; i < file.DimensionCount; ++i) {
        requireTerminated(file.Dimensions[i].Name, file.Dimensions[i].NameHandle);
    }
    requireSound(file.GlobalAttributes);
    for (std::int32_t i = 0; i < file.VariableCount; ++i) {
        const AndiVariable& variable = file.Variables[i];
        requireTerminated(variable.Name, variable.NameHandle);
        require(variable.DimensionCount >= 0 && variable.DimensionCount <= maxVariableDimensions,
                "a variable has at most five dimensions");
        for (std::int32_t place = 0; place < variable.DimensionCount; ++place) {
            const std::int32_t id = variable.DimensionIds[static_cast<std::size_t>(place)];
            require(id >= 0 && id < file.DimensionCount, "a dimension is one of the file");
        }
        requireSound(variable.Attributes);
        requireInBlock(variable.Type, variable.ElementCount, variable.DataHandle);
    }
}

void requireLoadable(const std::string& path) {
    AndiFile file{};
    Message message{path};
    require(ReadAndiFile(path.c_str(), &file, message.span()) == 1,
            "a file that was written can be loaded");
    requireSound(file);
    FreeAndiFile(&file);
}

Message::Message(const std::string& path)
    : buffer(std::max<std::size_t>(path.size() + KORLIT_MESSAGE_ROOM, KORLIT_MESSAGE_MINIMUM),
             untouched) {}

bool Message::isTold() const {
    const bool isTouched =
        std::any_of(buffer.begin(), buffer.end(), [](char each) { return each != untouched; });
    require(!isTouched || std::find(buffer.begin(), buffer.end(), '\0') != buffer.end(),
            "a message is terminated");
    return isTouched;
}

bool convertAsHost(std::int32_t (*conversion)(char*, char*), const std::string& path,
                   const std::string& messageBefore, const std::string& success) {
    const int boxesBefore = shownBoxes();
    const test::Answer answer = test::callAsHost(conversion, path, messageBefore);
    const auto messageSize = std::max<std::size_t>(
        {path.size() + KORLIT_MESSAGE_ROOM, KORLIT_MESSAGE_MINIMUM, messageBefore.size() + 1});
    require(answer.areBuffersKept, "nothing is written behind a buffer");
    require(answer.result == 0 || answer.result == 1, "the result is 0 or 1");
    require(answer.message.size() < messageSize, "a message is terminated");
    require(answer.result == 0 || answer.message.starts_with(success), "a success has its words");
    require(answer.result == 1 || answer.message != messageBefore || shownBoxes() > boxesBefore,
            "the reason of a failure is told");
    return answer.result == 1;
}

} // namespace korlit::fuzz
