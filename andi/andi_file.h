// The in-memory image of an ANDI file: dimensions, attributes and variables with their data, the
// operations that build one piece by piece, and those that release it.
//
// Every name, attribute value and data block is a block of its own with zeros behind its bytes and
// at least one spare byte at its end, so that each name and text is terminated whether or not a
// terminator was stored; only numbers that exchangeData brought in may have none. Handle and
// pointer of a block stand side by side; a null handle is no block. An AndiFile owns its arrays,
// and an element of an array owns its blocks.
#pragma once

#include "platform/global_memory.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace korlit {

/// Element type codes, as netCDF classic files hold them.
enum class AndiType : std::int32_t {
    None = 0,
    Byte = 1,
    Char = 2,
    Short = 3,
    Integer = 4,
    Float = 5,
    Double = 6,
};

struct AndiTypeTraits {
    const char* name;
    std::int32_t size; ///< bytes of one element
};

/// Indexed by the type code.
constexpr std::array<AndiTypeTraits, 7> andiTypes{{
    {.name = "", .size = 0},
    {.name = "BYTE", .size = 1},
    {.name = "char", .size = 1},
    {.name = "short", .size = 2},
    {.name = "integer", .size = 4},
    {.name = "float", .size = 4},
    {.name = "double", .size = 8},
}};

constexpr bool isValidType(AndiType type) {
    return type >= AndiType::Byte && type <= AndiType::Double;
}

/// Bytes of one element; 0 for a code that is no type.
constexpr std::int32_t elementSize(AndiType type) {
    return isValidType(type) ? andiTypes[static_cast<std::size_t>(type)].size : 0;
}

/// A dimension length of 0 marks the record dimension.
struct AndiDimension {
    GlobalHandle NameHandle;
    char* Name;
    std::int32_t Length;
};

struct AndiAttribute {
    GlobalHandle NameHandle;
    char* Name;
    AndiType Type;
    std::int32_t Count; ///< elements; of a text its characters, with the terminator if stored
    GlobalHandle ValueHandle;
    void* Value; ///< the elements, in host byte order
};

struct AndiAttributeList {
    std::int32_t Count;
    GlobalHandle Handle;
    AndiAttribute* Items;
};

/// More dimensions than this no variable has.
constexpr std::int32_t maxVariableDimensions = 5;

struct AndiVariable {
    GlobalHandle NameHandle;
    char* Name;
    std::int32_t DimensionCount;                                  ///< 0 for a scalar
    std::array<std::int32_t, maxVariableDimensions> DimensionIds; ///< indexes into Dimensions
    std::int32_t ElementCount; ///< elements in Data: the product of the lengths, 1 for a scalar
    AndiAttributeList Attributes;
    AndiType Type;
    std::int32_t VSize; ///< bytes of the data; of one record for a record variable
    std::int32_t Begin; ///< offset of the data in the file
    GlobalHandle DataHandle;
    void* Data;
    std::int32_t IsRecord; ///< 1 for a loaded variable along the record dimension
};

/// Empty when every field is zero; its owner makes it so before first use.
struct AndiFile {
    std::int32_t Magic;   ///< signature of a loaded file, first byte lowest
    std::int32_t Version; ///< fourth byte of a loaded file
    std::int32_t RecordCount;
    std::int32_t DimensionCount;
    std::int32_t VariableCount;
    GlobalHandle DimensionsHandle;
    GlobalHandle VariablesHandle;
    AndiAttributeList GlobalAttributes;
    AndiDimension* Dimensions;
    AndiVariable* Variables;
};

/// A byte count raised to the next multiple of 4, to which names, values and data are padded.
constexpr std::int64_t round4(std::int64_t byteCount) {
    return (byteCount + 3) / 4 * 4;
}

/// Stands for the length of a text including its terminator.
constexpr std::int32_t textLength = -1;

/// Stands for the dimension that a vector doesn't have.
constexpr std::int32_t noDimension = -1;

// The builders. Where one fails, nothing was added. No memory for the array itself is reported in a
// message box; no memory for a name, value or data block only by the result.

/// Answers the new dimension's index, 0 if the array can't grow, -1 if the name finds no memory.
std::int32_t AddAndiDimension(AndiFile* file, const char* name, std::int32_t length);

/// Adds a copy of `length` elements, or of a text if `length` is textLength. Answers the new
/// attribute's index, 0 if the array can't grow, -1 if name or value finds no memory or the
/// arguments make no attribute.
std::int32_t AddAndiAttribute(AndiAttributeList* list, const char* name, AndiType type,
                              std::int32_t length, const void* elements);

// A variable's address holds until the next variable is added: fill it and add its attributes
// first. The three answer null on any failure, an index that is no dimension of the file included.

/// A variable over two dimensions, or over the first alone if `secondDimension` is negative, with
/// its data zero.
AndiVariable* AddAndiMatrix(AndiFile* file, const char* name, AndiType type,
                            std::int32_t firstDimension, std::int32_t secondDimension);

/// A variable over one dimension with its data zero.
AndiVariable* AddAndiVector(AndiFile* file, const char* name, AndiType type,
                            std::int32_t dimension);

/// A variable without dimensions that holds a copy of one element.
AndiVariable* AddAndiScalar(AndiFile* file, const char* name, AndiType type, const void* element);

/// Gives the variable a block that holds its data, and its own one to the caller in exchange.
template <typename Element>
void exchangeData(AndiVariable& variable, GlobalHandle& handle, Element*& elements) {
    std::swap(variable.DataHandle, handle);
    elements = static_cast<Element*>(std::exchange(variable.Data, elements));
}

// The release. RecordCount, Magic and Version keep their values; both may be called on what is
// already released.

void FreeAndiFile(AndiFile* file);
void FreeAttributeList(AndiAttributeList* list);

// The arrays, for the builders and the reader. Sizes are of the records above.

/// Arrays are sized in steps of this many elements.
constexpr std::int32_t arrayBlock = 4;

/// Adds `increment` to `*count` and sees to it that the array holds that many elements: in place
/// where they fit, with the new ones zeroed, else in a new block that takes the old one's content.
/// Answers 1, or 0 behind a message box with the old array as it was.
std::int32_t GrowAndiArray(std::int16_t* count, GlobalHandle* handle, void** items,
                           std::int32_t block, std::int32_t increment, std::int32_t elementSize);

/// A new zero-filled array of at least `elementCount` elements, and of a block in any case: a
/// negative count is none. Answers 1, or 0 behind a message box with handle and pointer null.
std::int32_t AllocAndiArray(GlobalHandle* handle, void** items, std::int32_t block,
                            std::int32_t elementCount, std::int32_t elementSize);

} // namespace korlit
