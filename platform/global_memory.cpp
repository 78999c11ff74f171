#include "platform/global_memory.h"

#include "platform/faults.h"

#include <cstddef>
#include <cstdlib>

namespace korlit {

/// Head of a block; its bytes follow directly.
struct alignas(std::max_align_t) GlobalBlock {
    std::int64_t byteCount;
};

GlobalHandle GlobalAlloc(std::int64_t byteCount) {
    if (faultAt(FaultPoint::Allocate) != FaultKind::None || byteCount < 0 ||
        byteCount >= globalAllocLimit) {
        return nullptr;
    }
    // calloc hands large blocks out as untouched zero pages: memory that a file only announces and
    // never fills is not taken from the machine.
    const std::size_t size = sizeof(GlobalBlock) + static_cast<std::size_t>(byteCount);
    auto* block = static_cast<GlobalBlock*>(std::calloc(1, size));
    if (block != nullptr) {
        block->byteCount = byteCount;
        countHeldBlocks(+1);
    }
    return block;
}

void* GlobalLock(GlobalHandle handle) {
    if (faultAt(FaultPoint::Lock) != FaultKind::None || handle == nullptr ||
        handle->byteCount == 0) {
        return nullptr;
    }
    return handle + 1;
}

// Blocks never move here, so there is nothing to undo.
void GlobalUnlock(GlobalHandle /*handle*/) {}

GlobalHandle GlobalFree(GlobalHandle handle) {
    if (handle != nullptr) {
        std::free(handle);
        countHeldBlocks(-1);
    }
    return nullptr;
}

std::int64_t GlobalSize(GlobalHandle handle) {
    return handle == nullptr ? 0 : handle->byteCount;
}

} // namespace korlit
