// A field of a file's record, and how its value is read.
#pragma once

#include "host/proof/reading.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace korlit::host {

template <typename Number>
Value numberAt(const char* field, std::size_t size) {
    Number number{};
    std::memcpy(&number, field, size);
    return static_cast<double>(number);
}

inline Value textAt(const char* field, std::size_t size) {
    return std::string{field, std::find(field, field + size, '\0')};
}

struct RecordField {
    const char* part;
    const char* name;
    std::size_t offset;
    std::size_t size;
    Value (*valueAt)(const char* field, std::size_t size);
};

template <typename Number>
constexpr RecordField numberField(const char* part, const char* name, std::size_t offset) {
    return {part, name, offset, sizeof(Number), numberAt<Number>};
}

constexpr RecordField textField(const char* part, const char* name, std::size_t offset,
                                std::size_t size) {
    return {part, name, offset, size, textAt};
}

/// The field at an offset of its record.
inline const RecordField& fieldAt(std::span<const RecordField> fields, std::size_t offset) {
    return *std::ranges::find(fields, offset, &RecordField::offset);
}

inline ValueKey keyOf(const RecordField& field, std::size_t peak = 0) {
    return {.part = field.part, .name = field.name, .peak = peak};
}

} // namespace korlit::host
