// Global memory: zero-filled blocks that are known by a handle and used through a pointer.
//
// The conversions count bytes as a 32-bit process does, so a block of 2 GiB or more is refused here
// however much memory the machine has. Byte counts arrive in 64 bits and signed: a count that went
// negative or beyond that limit fails at its allocation and never makes a short block.
#pragma once

#include "platform/heap.h"

#include <cstdint>

namespace korlit {

struct GlobalBlock;
/// Handle of a block; null is no block.
using GlobalHandle = GlobalBlock*;

/// The handle of a block of the heap, which is one of global memory too.
inline GlobalHandle handleOf(void* block) {
    return static_cast<GlobalHandle>(block);
}

/// The smallest byte count that is refused.
constexpr std::int64_t globalAllocLimit = blockLimit;

/// A new zero-filled block of `byteCount` bytes. Null if the count is negative, at or above
/// globalAllocLimit, or more than the machine has. The caller frees it with GlobalFree.
GlobalHandle GlobalAlloc(std::int64_t byteCount);

/// The block's bytes, aligned for any type and in place until GlobalFree. Null for a null handle
/// and for a block of 0 bytes, which has a handle and no pointer.
void* GlobalLock(GlobalHandle handle);

/// Ends the use of the pointer. A null handle is passed over.
void GlobalUnlock(GlobalHandle handle);

/// Frees the block and answers null: the handle is gone. A null handle is passed over.
GlobalHandle GlobalFree(GlobalHandle handle);

/// The block's size in bytes, 0 for a null handle.
std::int64_t GlobalSize(GlobalHandle handle);

/// Allocates and locks in one go. Answers whether both handle and pointer are there; if not, a
/// handle that was got stays with the caller.
template <typename Item>
bool acquireBlock(GlobalHandle& handle, Item*& items, std::int64_t byteCount) {
    handle = GlobalAlloc(byteCount);
    items = static_cast<Item*>(GlobalLock(handle));
    return handle != nullptr && items != nullptr;
}

/// Unlocks and frees what acquireBlock got, as far as it got, and clears handle and pointer.
template <typename Item>
void releaseBlock(GlobalHandle& handle, Item*& items) {
    GlobalUnlock(handle);
    handle = GlobalFree(handle);
    items = nullptr;
}

} // namespace korlit
