#include "platform/cfile.h"

#include "platform/faults.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <span>

namespace korlit {

CFile::~CFile() {
    Close();
}

bool CFile::Open(const char* path) {
    Close();
    if (faultAt(FaultPoint::Open) != FaultKind::None) {
        return false;
    }
    descriptor = openProtected(path);
    position = 0;
    windowLength = 0;
    isAtEnd = false;
    if (descriptor >= 0) {
        countHeldFiles(+1);
    }
    return descriptor >= 0;
}

/// Copies what the window holds of the bytes at a place; answers how many.
std::int64_t CFile::copyHeld(std::span<std::byte> target, std::int64_t place) const {
    const std::int64_t offset = place - windowStart;
    const std::int64_t copied = std::min(std::ssize(target), windowLength - offset);
    if (offset < 0 || copied <= 0) {
        return 0;
    }
    std::memcpy(target.data(), window.data() + offset, static_cast<std::size_t>(copied));
    return copied;
}

Transfer CFile::fetch(std::span<std::byte> target, std::int64_t place) {
    const std::int64_t held = copyHeld(target, place);
    const std::span rest = target.subspan(static_cast<std::size_t>(held));
    if (rest.empty()) {
        return {.moved = held};
    }
    if (std::ssize(rest) >= windowSize) {
        const auto [moved, hasFailed] = readAt(descriptor, rest, std::ssize(rest), place + held);
        return {.moved = held + moved, .hasFailed = hasFailed};
    }
    const auto [moved, hasFailed] = readAt(descriptor, window, std::ssize(rest), place + held);
    windowStart = place + held;
    windowLength = moved;
    return {.moved = held + copyHeld(rest, place + held), .hasFailed = hasFailed};
}

std::int64_t CFile::Read(void* target, std::int64_t byteCount) {
    const FaultKind fault = faultAt(FaultPoint::Read);
    if (fault == FaultKind::Fail) {
        return -1;
    }
    const std::int64_t left = isAtEnd ? 0 : byteCount;
    const std::int64_t wanted = fault == FaultKind::CutShort ? left / 2 : left;
    const auto [moved, hasFailed] =
        fetch({static_cast<std::byte*>(target), static_cast<std::size_t>(wanted)}, position);
    position += moved;
    isAtEnd = isAtEnd || (!hasFailed && moved < byteCount);
    return hasFailed ? -1 : moved;
}

std::int64_t CFile::GetRemaining() const {
    return isAtEnd ? 0 : std::max<std::int64_t>(0, lengthOf(descriptor) - position);
}

void CFile::Close() {
    if (descriptor >= 0) {
        closeProtected(descriptor);
        descriptor = noDescriptor;
        countHeldFiles(-1);
    }
}

} // namespace korlit
