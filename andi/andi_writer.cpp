#include "andi/andi_writer.h"

#include "andi/andi_layout.h"
#include "andi/byte_order.h"
#include "platform/checked_io.h"
#include "platform/files.h"
#include "platform/text.h"

#include <array>
#include <cstring>
#include <limits>

namespace korlit {

namespace {

constexpr const char* writeFailedText = "Error writing Andi File %s";

void writeInteger(int handle, std::int32_t number) {
    ReverseBytes(&number, sizeof number);
    WriteChecked(handle, &number, sizeof number);
}

/// A tag and count, or the absent form for a list without entries.
void writeListHead(int handle, ListTag tag, std::int32_t count) {
    writeInteger(handle, count == 0 ? 0 : static_cast<std::int32_t>(tag));
    writeInteger(handle, count);
}

/// The place that the next write goes to. The layout has 32 bits for it: a file that outgrows them
/// can't be written.
std::int32_t currentPlace(int handle) {
    const std::int64_t place = _llseek(handle, 0, SeekOrigin::Current);
    if (place < 0 || place > std::numeric_limits<std::int32_t>::max()) {
        setWriteFailed();
        return 0;
    }
    return static_cast<std::int32_t>(place);
}

void WriteAndiString(int handle, const char* text) {
    const std::size_t length = text == nullptr ? 0 : std::strlen(text);
    writeInteger(handle, static_cast<std::int32_t>(length));
    WriteChecked(handle, text, round4(static_cast<std::int64_t>(length)));
}

void WriteAttributeList(int handle, const AndiAttributeList& list) {
    writeListHead(handle, ListTag::Attributes, list.Count);
    for (std::int32_t i = 0; i < list.Count; ++i) {
        const AndiAttribute& attribute = list.Items[i];
        const std::int64_t size = elementSize(attribute.Type);
        WriteAndiString(handle, attribute.Name);
        writeInteger(handle, static_cast<std::int32_t>(attribute.Type));
        writeInteger(handle, attribute.Count);
        ReverseBytes(attribute.Value, size, attribute.Count);
        WriteChecked(handle, attribute.Value, round4(attribute.Count * size));
    }
}

void writeDimensions(int handle, const AndiFile& file) {
    writeListHead(handle, ListTag::Dimensions, file.DimensionCount);
    for (std::int32_t i = 0; i < file.DimensionCount; ++i) {
        WriteAndiString(handle, file.Dimensions[i].Name);
        writeInteger(handle, file.Dimensions[i].Length);
    }
}

/// The entry of a variable, but for the offset of its data.
void writeVariableEntry(int handle, const AndiVariable& variable) {
    WriteAndiString(handle, variable.Name);
    writeInteger(handle, variable.DimensionCount);
    for (std::int32_t i = 0; i < variable.DimensionCount; ++i) {
        writeInteger(handle, variable.DimensionIds[static_cast<std::size_t>(i)]);
    }
    WriteAttributeList(handle, variable.Attributes);
    writeInteger(handle, static_cast<std::int32_t>(variable.Type));
    writeInteger(handle, variable.VSize);
}

/// The place of each entry's offset, which is 0 so far, is noted in Begin.
void writeHeader(int handle, AndiFile& file) {
    constexpr std::array<char, 4> signature{'C', 'D', 'F', 1};
    WriteChecked(handle, signature.data(), signature.size());
    writeInteger(handle, file.RecordCount);
    writeDimensions(handle, file);
    WriteAttributeList(handle, file.GlobalAttributes);
    writeListHead(handle, ListTag::Variables, file.VariableCount);
    for (std::int32_t i = 0; i < file.VariableCount; ++i) {
        writeVariableEntry(handle, file.Variables[i]);
        file.Variables[i].Begin = currentPlace(handle);
        writeInteger(handle, 0);
    }
}

/// The data of a variable at the end of the file, and their offset in its entry, of which Begin
/// holds the place.
void writeData(int handle, AndiVariable& variable, std::int32_t recordCount) {
    const std::int32_t entryPlace = variable.Begin;
    variable.Begin = currentPlace(handle);
    _llseek(handle, entryPlace, SeekOrigin::Start);
    writeInteger(handle, variable.Begin);
    _llseek(handle, variable.Begin, SeekOrigin::Start);
    const std::int64_t byteCount = variable.IsRecord == 1
                                       ? std::int64_t{recordCount} * variable.VSize
                                       : std::int64_t{variable.VSize};
    const std::int64_t size = elementSize(variable.Type);
    forEachPart(variable, byteCount,
                [&](std::byte* part, std::int64_t partSize, std::int64_t count) {
                    ReverseBytes(part, size, count);
                    WriteChecked(handle, part, partSize);
                });
}

} // namespace

int WriteAndiFile(const char* path, AndiFile* file, std::span<char> message) {
    beginWriting();
    // A file that could not be created shows in the first write.
    const int handle = _lcreat(path);
    writeHeader(handle, *file);
    for (std::int32_t i = 0; i < file->VariableCount; ++i) {
        writeData(handle, file->Variables[i], file->RecordCount);
    }
    CloseWritten(handle);
    if (hasWriteFailed()) {
        formatText(message, writeFailedText, path);
        FreeAndiFile(file);
        return 0;
    }
    return 1;
}

} // namespace korlit
