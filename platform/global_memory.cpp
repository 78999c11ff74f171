#include "platform/global_memory.h"

#include "platform/faults.h"
#include "platform/heap.h"

namespace korlit {

GlobalHandle GlobalAlloc(std::int64_t byteCount) {
    return handleOf(newBytes(byteCount));
}

void* GlobalLock(GlobalHandle handle) {
    if (faultAt(FaultPoint::Lock) != FaultKind::None || GlobalSize(handle) == 0) {
        return nullptr;
    }
    return handle;
}

// Blocks never move here, so there is nothing to undo.
void GlobalUnlock(GlobalHandle /*handle*/) {}

GlobalHandle GlobalFree(GlobalHandle handle) {
    deleteBytes(handle);
    return nullptr;
}

std::int64_t GlobalSize(GlobalHandle handle) {
    return handle == nullptr ? 0 : byteCountOf(handle);
}

} // namespace korlit
