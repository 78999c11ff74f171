#include "platform/global_memory.h"

#include "platform/faults.h"
#include "platform/heap.h"

#include <cstddef>

namespace korlit {

/// Head of a block; its bytes follow directly.
struct alignas(std::max_align_t) GlobalBlock {
    std::int64_t byteCount;
};

GlobalHandle GlobalAlloc(std::int64_t byteCount) {
    auto* block = static_cast<GlobalBlock*>(newBytes(byteCount, sizeof(GlobalBlock)));
    if (block != nullptr) {
        block->byteCount = byteCount;
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
    deleteBytes(handle);
    return nullptr;
}

std::int64_t GlobalSize(GlobalHandle handle) {
    return handle == nullptr ? 0 : handle->byteCount;
}

} // namespace korlit
