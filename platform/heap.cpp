#include "platform/heap.h"

#include "platform/faults.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

namespace korlit {

void* newBytes(std::int64_t byteCount, std::int64_t headSize) {
    if (faultAt(FaultPoint::Allocate) != FaultKind::None || byteCount < 0 ||
        byteCount >= blockLimit) {
        return nullptr;
    }
    // calloc hands large blocks out as untouched zero pages: memory that a file only announces and
    // never fills is not taken from the machine.
    const std::int64_t size = std::max<std::int64_t>(headSize + byteCount, 1);
    void* block = std::calloc(1, static_cast<std::size_t>(size));
    if (block != nullptr) {
        countHeldBlocks(+1);
    }
    return block;
}

void deleteBytes(void* block) {
    if (block != nullptr) {
        std::free(block);
        countHeldBlocks(-1);
    }
}

} // namespace korlit
