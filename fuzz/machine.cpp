#include "fuzz/machine.h"

#include "platform/faults.h"
#include "platform/heap.h"
#include "platform/library.h"
#include "platform/message_box.h"

#include <dlfcn.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace korlit {

namespace {

int boxes = 0;

constexpr std::size_t headSize = alignof(std::max_align_t);

} // namespace

std::int64_t fuzz::largestBlock = 1 << 18;

int fuzz::shownBoxes() {
    return boxes;
}

Window* GetActiveWindow() {
    return nullptr;
}

void MessageBoxA(Window* /*owner*/, const char* /*text*/, const char* /*title*/) {
    ++boxes;
}

// Each block is one of the C library's, whose bounds a sanitizer watches, behind its byte count.
void* newBytes(std::int64_t byteCount) {
    if (byteCount < 0 || byteCount > fuzz::largestBlock) {
        return nullptr;
    }
    countHeldBlocks(+1);
    void* head = std::calloc(1, headSize + static_cast<std::size_t>(byteCount));
    std::memcpy(head, &byteCount, sizeof byteCount);
    return static_cast<std::byte*>(head) + headSize;
}

void deleteBytes(void* block) {
    if (block != nullptr) {
        countHeldBlocks(-1);
        std::free(static_cast<std::byte*>(block) - headSize);
    }
}

std::int64_t byteCountOf(void* block) {
    std::int64_t byteCount = 0;
    std::memcpy(&byteCount, static_cast<std::byte*>(block) - headSize, sizeof byteCount);
    return byteCount;
}

LibraryHandle LoadLibraryA(const char* /*name*/) {
    static char linkedIn = 0;
    countHeldLibraries(+1);
    return reinterpret_cast<LibraryHandle>(&linkedIn);
}

void* GetProcAddress(LibraryHandle /*library*/, const char* name) {
    return dlsym(RTLD_DEFAULT, name);
}

void FreeLibrary(LibraryHandle library) {
    if (library != nullptr) {
        countHeldLibraries(-1);
    }
}

} // namespace korlit
