#include "platform/heap.h"

#include "platform/faults.h"

#include <sys/mman.h>

#include <cstddef>
#include <cstdlib>
#include <cstring>

namespace korlit {

namespace {

/// Stands ahead of a block's bytes and keeps them aligned.
struct alignas(std::max_align_t) BlockHead {
    std::int64_t byteCount;
};

constexpr std::int64_t headSize = sizeof(BlockHead);

/// Up to this size the C library keeps blocks at hand, though not for calloc.
constexpr std::int64_t smallSize = 1024;

/// A large page of the processors that this library runs on. With a page fault for each 4 KB,
/// taking and clearing the memory of a long signal would cost more than converting it.
constexpr std::int64_t largePage = std::int64_t{2} * 1024 * 1024;

/// Blocks of at least a large page are mapped from the machine, one by one.
bool isMapped(std::int64_t size) {
    return size >= largePage;
}

/// The kernel puts a mapping of whole large pages where they can lie.
std::size_t mappingSize(std::int64_t size) {
    return static_cast<std::size_t>((size + largePage - 1) / largePage * largePage);
}

void* mapBytes(std::int64_t size) {
    void* bytes = mmap(nullptr, mappingSize(size), PROT_READ | PROT_WRITE,
                       MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (bytes == MAP_FAILED) {
        return nullptr;
    }
    // What would fill less than three quarters of its large page keeps to small ones.
    const std::int64_t inLargePages = (size + largePage / 4) / largePage * largePage;
    madvise(bytes, static_cast<std::size_t>(inLargePages), MADV_HUGEPAGE);
    return bytes;
}

void* allocateBytes(std::int64_t size) {
    if (size > smallSize) {
        return std::calloc(1, static_cast<std::size_t>(size));
    }
    const auto padded = static_cast<std::size_t>((size + headSize - 1) / headSize * headSize);
    void* bytes = std::aligned_alloc(alignof(BlockHead), padded);
    if (bytes != nullptr) {
        std::memset(bytes, 0, padded);
    }
    return bytes;
}

BlockHead* headOf(void* block) {
    return static_cast<BlockHead*>(block) - 1;
}

} // namespace

void* newBytes(std::int64_t byteCount) {
    if (faultAt(FaultPoint::Allocate) != FaultKind::None || byteCount < 0 ||
        byteCount >= blockLimit) {
        return nullptr;
    }
    const std::int64_t size = headSize + byteCount;
    auto* head = static_cast<BlockHead*>(isMapped(size) ? mapBytes(size) : allocateBytes(size));
    if (head == nullptr) {
        return nullptr;
    }
    countHeldBlocks(+1);
    head->byteCount = byteCount;
    return head + 1;
}

void deleteBytes(void* block) {
    if (block == nullptr) {
        return;
    }
    countHeldBlocks(-1);
    BlockHead* head = headOf(block);
    const std::int64_t size = headSize + head->byteCount;
    if (isMapped(size)) {
        munmap(head, mappingSize(size));
    } else {
        std::free(head);
    }
}

std::int64_t byteCountOf(void* block) {
    return headOf(block)->byteCount;
}

} // namespace korlit
