#include "andi/andi_reader.h"

#include "andi/andi_layout.h"
#include "andi/byte_order.h"
#include "platform/checked_io.h"
#include "platform/files.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace korlit {

namespace {

constexpr const char* openFailedText = "Error opening Andi file %s";
constexpr const char* notAndiText = "File %s is not a supported Andi file";
constexpr const char* dimensionExpectedText = "Andi File %s internal Error: Dimension expected";
constexpr const char* variableExpectedText = "Andi file %s internal error: variable expected";
constexpr const char* attributesExpectedText =
    "Andi File %s internal Error: Global Attributes expected";
constexpr const char* attributeTypeText = "Andi File %s internal Error: invalid Attribute Type";
constexpr const char* variableTypeText = "Andi file %s internal error: invalid Attribute Type";
constexpr const char* tooManyDimensionsText =
    "Andi File %s Problem: Variable with more than 5 Dimensions";
constexpr const char* unknownDimensionText =
    "Andi File %s internal Error: Variable using unknown Dimension";
constexpr const char* outOfMemoryText = "Out of Memory reading Andi File %s";
constexpr const char* readFailedText = "Error reading Andi File %s";

/// One load: where it reads from, what it fills, where its failure is told.
struct Load {
    const char* path;
    int handle;
    AndiFile* file;
    std::span<char> message;
    DataFilter isWanted;
    std::int64_t dataRoom; ///< bytes that the data of further variables may have
};

/// How many bytes of data a file may have. Each variable brings its own, so that they come to less
/// than the file; variables that share the same bytes over and over could fill any memory.
std::int64_t dataRoomOf(int handle) {
    constexpr std::int64_t timesTheFile = 4;
    constexpr std::int64_t always = 1024 * 1024L;
    return always + timesTheFile * std::max<std::int64_t>(0, _filelength(handle));
}

/// Tells the reason; answers false.
bool fail(const Load& load, const char* format) {
    formatText(load.message, format, load.path);
    return false;
}

/// The next integer of the header; 0 if it can't be read.
std::int32_t readInteger(const Load& load) {
    std::int32_t number = 0;
    if (ReadChecked(load.handle, &number, sizeof number) != 0) {
        return 0;
    }
    ReverseBytes(&number, sizeof number);
    return number;
}

/// Tags and types live in the low half of their integer; the upper half may hold anything.
std::int16_t readLowHalf(const Load& load) {
    return static_cast<std::int16_t>(readInteger(load));
}

AndiType readType(const Load& load) {
    return AndiType{readLowHalf(load)};
}

/// Reads tag and count. Answers whether the tag is the expected one or that of an absent list,
/// whose count is 0 whatever the file says.
bool readListHead(const Load& load, ListTag expected, std::int32_t& count) {
    const auto tag = ListTag{readLowHalf(load)};
    const std::int32_t announced = readInteger(load);
    count = tag == ListTag::Absent ? 0 : announced;
    return tag == ListTag::Absent || tag == expected;
}

/// Memory for the announced number of entries, behind a message box on failure.
template <typename Entry>
bool allocateArray(GlobalHandle& handle, Entry*& entries, std::int32_t count) {
    void* array = nullptr;
    const bool isAllocated = AllocAndiArray(&handle, &array, arrayBlock, count, sizeof(Entry)) == 1;
    entries = static_cast<Entry*>(array);
    return isAllocated;
}

/// Reads the padded bytes of a name or value and clears the padding, whatever the file had there.
/// A negative size that is padded to 0 has no bytes. Answers whether they came.
bool readPadded(const Load& load, void* target, std::int64_t byteCount) {
    const std::int64_t paddedSize = round4(byteCount);
    if (ReadChecked(load.handle, target, paddedSize) != 0) {
        return false;
    }
    const std::int64_t used = std::max<std::int64_t>(0, byteCount);
    std::memset(static_cast<char*>(target) + used, 0, static_cast<std::size_t>(paddedSize - used));
    return true;
}

/// A string of the layout. A failure of any kind, memory included, is a failed read.
void ReadAndiString(const Load& load, GlobalHandle& handle, char*& text) {
    const std::int32_t length = readInteger(load);
    if (hasReadFailed()) {
        return;
    }
    if (!acquireBlock(handle, text, round4(length) + 1)) {
        setReadFailed();
        return;
    }
    readPadded(load, text, length);
}

bool readAttribute(const Load& load, AndiAttribute& attribute) {
    ReadAndiString(load, attribute.NameHandle, attribute.Name);
    attribute.Type = readType(load);
    attribute.Count = readInteger(load);
    if (!isValidType(attribute.Type)) {
        return fail(load, attributeTypeText);
    }
    const std::int64_t size = elementSize(attribute.Type);
    const std::int64_t byteCount = attribute.Count * size;
    attribute.Count = std::max(0, attribute.Count);
    if (!acquireBlock(attribute.ValueHandle, attribute.Value, round4(byteCount) + 1)) {
        return fail(load, outOfMemoryText);
    }
    if (readPadded(load, attribute.Value, byteCount)) {
        ReverseBytes(attribute.Value, size, attribute.Count);
    }
    return true;
}

// The arrays below count an entry when its reading begins, so that a release after a failure walks
// over what was begun and not over what a broken file announced. A negative number is none.

bool ReadAttributeList(const Load& load, AndiAttributeList& list) {
    std::int32_t count = 0;
    if (!readListHead(load, ListTag::Attributes, count)) {
        return fail(load, attributesExpectedText);
    }
    if (count != 0 && !allocateArray(list.Handle, list.Items, count)) {
        return false;
    }
    while (list.Count < count) {
        if (!readAttribute(load, list.Items[list.Count++])) {
            return false;
        }
    }
    return true;
}

bool readDimensions(const Load& load) {
    AndiFile& file = *load.file;
    std::int32_t count = 0;
    if (!readListHead(load, ListTag::Dimensions, count)) {
        return fail(load, dimensionExpectedText);
    }
    if (count != 0 && !allocateArray(file.DimensionsHandle, file.Dimensions, count)) {
        return false;
    }
    // Behind a failed read all further dimensions would only stay zero.
    while (file.DimensionCount < count && !hasReadFailed()) {
        AndiDimension& dimension = file.Dimensions[file.DimensionCount++];
        ReadAndiString(load, dimension.NameHandle, dimension.Name);
        dimension.Length = readInteger(load);
    }
    return true;
}

bool readDimensionIds(const Load& load, AndiVariable& variable) {
    const std::int32_t dimensionCount = readInteger(load);
    if (dimensionCount < 0 || dimensionCount > maxVariableDimensions) {
        return fail(load, tooManyDimensionsText);
    }
    if (dimensionCount > load.file->DimensionCount) {
        return fail(load, unknownDimensionText);
    }
    variable.DimensionCount = dimensionCount;
    for (std::int32_t i = 0; i < dimensionCount; ++i) {
        const std::int32_t id = readInteger(load);
        if (id < 0 || id >= load.file->DimensionCount) {
            return fail(load, unknownDimensionText);
        }
        variable.DimensionIds[static_cast<std::size_t>(i)] = id;
    }
    return true;
}

/// The product of the dimensions' lengths, the record dimension in first place counting with the
/// records of the file. A product beyond 64 bits is as good as the largest number.
std::int64_t declaredElements(const AndiFile& file, const AndiVariable& variable) {
    std::int64_t elements = variable.IsRecord == 1 ? file.RecordCount : 1;
    for (std::int32_t i = variable.IsRecord; i < variable.DimensionCount; ++i) {
        const std::int32_t id = variable.DimensionIds[static_cast<std::size_t>(i)];
        if (__builtin_mul_overflow(elements, std::int64_t{file.Dimensions[id].Length}, &elements)) {
            elements = std::numeric_limits<std::int64_t>::max();
        }
    }
    return elements;
}

bool readData(Load& load, AndiVariable& variable) {
    const std::int64_t byteCount = variable.IsRecord == 1
                                       ? std::int64_t{load.file->RecordCount} * variable.VSize
                                       : variable.VSize;
    const bool isWanted = load.isWanted(variable);
    if (isWanted && !acquireBlock(variable.DataHandle, variable.Data, byteCount + 1)) {
        return fail(load, outOfMemoryText);
    }
    const std::int64_t size = elementSize(variable.Type);
    const std::int64_t room =
        std::clamp<std::int64_t>(byteCount / size, 0, std::numeric_limits<std::int32_t>::max());
    variable.ElementCount = static_cast<std::int32_t>(
        std::clamp<std::int64_t>(declaredElements(*load.file, variable), 0, room));
    if (!isWanted) {
        return true;
    }
    const std::int64_t headerPosition = _llseek(load.handle, 0, SeekOrigin::Current);
    _llseek(load.handle, variable.Begin, SeekOrigin::Start);
    forEachPart(variable, byteCount,
                [&](std::byte* part, std::int64_t partSize, std::int64_t count) {
                    if (ReadChecked(load.handle, part, partSize) == 0) {
                        ReverseBytes(part, size, count);
                    }
                });
    _llseek(load.handle, headerPosition, SeekOrigin::Start);
    load.dataRoom -= hasReadFailed() ? 0 : byteCount;
    return load.dataRoom >= 0 || fail(load, outOfMemoryText);
}

bool readVariable(Load& load, AndiVariable& variable) {
    ReadAndiString(load, variable.NameHandle, variable.Name);
    if (!readDimensionIds(load, variable)) {
        return false;
    }
    variable.IsRecord =
        variable.DimensionCount > 0 && load.file->Dimensions[variable.DimensionIds[0]].Length == 0
            ? 1
            : 0;
    if (!ReadAttributeList(load, variable.Attributes)) {
        return false;
    }
    variable.Type = readType(load);
    if (!isValidType(variable.Type)) {
        return fail(load, variableTypeText);
    }
    variable.VSize = readInteger(load);
    variable.Begin = readInteger(load);
    return readData(load, variable);
}

bool readVariables(Load& load) {
    AndiFile& file = *load.file;
    std::int32_t count = 0;
    if (!readListHead(load, ListTag::Variables, count)) {
        return fail(load, variableExpectedText);
    }
    if (count != 0 && !allocateArray(file.VariablesHandle, file.Variables, count)) {
        return false;
    }
    while (file.VariableCount < count) {
        if (!readVariable(load, file.Variables[file.VariableCount++])) {
            return false;
        }
    }
    return true;
}

bool readSignature(const Load& load) {
    constexpr std::array<char, 3> signature{'C', 'D', 'F'};
    std::array<char, 4> bytes{};
    if (ReadChecked(load.handle, bytes.data(), bytes.size()) != 0 ||
        !std::equal(signature.begin(), signature.end(), bytes.begin())) {
        return fail(load, notAndiText);
    }
    std::memcpy(&load.file->Magic, bytes.data(), signature.size());
    // NOLINTNEXTLINE(bugprone-signed-char-misuse): the version counts as a signed byte
    load.file->Version = static_cast<signed char>(bytes[3]);
    return true;
}

bool readAll(Load& load) {
    if (!readSignature(load)) {
        return false;
    }
    load.file->RecordCount = readInteger(load);
    return readDimensions(load) && ReadAttributeList(load, load.file->GlobalAttributes) &&
           readVariables(load) && (!hasReadFailed() || fail(load, readFailedText));
}

} // namespace

int ReadAndiFile(const char* path, AndiFile* file, std::span<char> message) {
    return ReadAndiPart(path, file, message, [](const AndiVariable& /*variable*/) { return true; });
}

int ReadAndiPart(const char* path, AndiFile* file, std::span<char> message, DataFilter isWanted) {
    FreeAndiFile(file);
    const int handle = _lopen(path);
    Load load{.path = path,
              .handle = handle,
              .file = file,
              .message = message,
              .isWanted = isWanted,
              .dataRoom = dataRoomOf(handle)};
    if (load.handle == fileError) {
        fail(load, openFailedText);
        return 0;
    }
    beginReading();
    const bool isRead = readAll(load);
    _lclose(load.handle);
    if (!isRead) {
        FreeAndiFile(file);
    }
    return isRead ? 1 : 0;
}

} // namespace korlit
