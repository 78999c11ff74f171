#include "fuzz/machine.h"

#include "native/ostrelix.h"
#include "platform/faults.h"
#include "platform/heap.h"
#include "platform/library.h"
#include "platform/message_box.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <type_traits>

extern "C" {
std::remove_pointer_t<korlit::ReadChromHeaderEntry> ReadChromHeader;
std::remove_pointer_t<korlit::GetSliDataOffSetEntry> GetSliDataOffSet;
std::remove_pointer_t<korlit::FileReadErrorEntry> FileReadError;
std::remove_pointer_t<korlit::UpdateRepHeaderEntry> UpdateRepHeader;
}

namespace korlit {

namespace {

int boxes = 0;

// Each block is one of the C library's, whose bounds a sanitizer watches.
struct alignas(std::max_align_t) BlockHead {
    std::int64_t byteCount;
};

struct LinkedEntry {
    std::string_view name;
    void* address;
};

const std::array<LinkedEntry, 4> linkedEntries{{
    {.name = "ReadChromHeader", .address = reinterpret_cast<void*>(ReadChromHeader)},
    {.name = "GetSliDataOffSet", .address = reinterpret_cast<void*>(GetSliDataOffSet)},
    {.name = "FileReadError", .address = reinterpret_cast<void*>(FileReadError)},
    {.name = "UpdateRepHeader", .address = reinterpret_cast<void*>(UpdateRepHeader)},
}};

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

void* newBytes(std::int64_t byteCount) {
    constexpr std::int64_t headSize = sizeof(BlockHead);
    if (byteCount < 0 || byteCount > fuzz::largestBlock) {
        return nullptr;
    }
    countHeldBlocks(+1);
    auto* head =
        static_cast<BlockHead*>(std::calloc(1, static_cast<std::size_t>(headSize + byteCount)));
    head->byteCount = byteCount;
    return head + 1;
}

void deleteBytes(void* block) {
    if (block != nullptr) {
        countHeldBlocks(-1);
        std::free(static_cast<BlockHead*>(block) - 1);
    }
}

std::int64_t byteCountOf(void* block) {
    return (static_cast<BlockHead*>(block) - 1)->byteCount;
}

LibraryHandle LoadLibraryA(const char* /*name*/) {
    static char linkedIn = 0;
    countHeldLibraries(+1);
    return reinterpret_cast<LibraryHandle>(&linkedIn);
}

void* GetProcAddress(LibraryHandle /*library*/, const char* name) {
    const auto* entry = std::ranges::find(linkedEntries, name, &LinkedEntry::name);
    return entry == linkedEntries.end() ? nullptr : entry->address;
}

void FreeLibrary(LibraryHandle library) {
    if (library != nullptr) {
        countHeldLibraries(-1);
    }
}

} // namespace korlit
