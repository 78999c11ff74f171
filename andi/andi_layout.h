// What the reader and the writer of ANDI files have in common: the tags of the header's lists.
#pragma once

#include "andi/andi_file.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace korlit {

enum class ListTag : std::int16_t { Absent = 0, Dimensions = 10, Variables = 11, Attributes = 12 };

/// Walks over the `byteCount` bytes of a variable's data in parts, on their way from or to a file:
/// `transfer(bytes, size, count)` gets each part with its size and the number of elements in it, to
/// be reversed while the processor has them at hand. No bytes are one part.
template <typename Transfer>
void forEachPart(const AndiVariable& variable, std::int64_t byteCount, Transfer transfer) {
    constexpr std::int64_t partSize = 256 * 1024L;
    const std::int64_t size = elementSize(variable.Type);
    auto* data = static_cast<std::byte*>(variable.Data);
    std::int64_t done = 0;
    do {
        const std::int64_t part = std::min(byteCount - done, partSize);
        const std::int64_t elementBytes = variable.ElementCount * size - done;
        transfer(data + done, part, std::clamp<std::int64_t>(elementBytes, 0, part) / size);
        done += part;
    } while (done < byteCount);
}

} // namespace korlit
