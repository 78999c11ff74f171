#include "platform/cfile.h"

#include "platform/descriptors.h"
#include "platform/faults.h"

#include <algorithm>
#include <cstddef>
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
    isAtEnd = false;
    if (descriptor >= 0) {
        countHeldFiles(+1);
    }
    return descriptor >= 0;
}

std::int64_t CFile::Read(void* target, std::int64_t byteCount) {
    const FaultKind fault = faultAt(FaultPoint::Read);
    if (fault == FaultKind::Fail) {
        return -1;
    }
    const std::int64_t left = isAtEnd ? 0 : byteCount;
    const std::int64_t wanted = fault == FaultKind::CutShort ? left / 2 : left;
    const std::span bytes{static_cast<std::byte*>(target), static_cast<std::size_t>(wanted)};
    const auto [moved, hasFailed] = readAt(descriptor, bytes, wanted, position);
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
