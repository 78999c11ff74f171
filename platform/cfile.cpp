#include "platform/cfile.h"

#include "platform/descriptors.h"
#include "platform/faults.h"

#include <unistd.h>

#include <algorithm>

namespace korlit {

CFile::~CFile() {
    Close();
}

bool CFile::Open(const char* path) {
    Close();
    if (faultAt(FaultPoint::Open) != FaultKind::None) {
        return false;
    }
    descriptor = openRegularFile(path);
    position = 0;
    isAtEnd = false;
    if (descriptor >= 0) {
        countHeldFiles(+1);
    }
    return descriptor >= 0;
}

std::int64_t CFile::Read(void* target, std::int64_t byteCount) {
    const FaultKind fault = faultAt(FaultPoint::Read);
    bool hasFailed = fault == FaultKind::Fail;
    const std::int64_t left = hasFailed || isAtEnd ? 0 : byteCount;
    const std::int64_t wanted = fault == FaultKind::CutShort ? left / 2 : left;
    auto* bytes = static_cast<char*>(target);
    const std::int64_t moved = transferAll(wanted, [&](std::int64_t done) {
        const ssize_t count = pread(descriptor, bytes + done,
                                    static_cast<std::size_t>(wanted - done), position + done);
        hasFailed = count < 0 && errno != EINTR;
        return count;
    });
    position += moved;
    isAtEnd = isAtEnd || (!hasFailed && moved < byteCount);
    return hasFailed ? -1 : moved;
}

std::int64_t CFile::GetRemaining() const {
    return isAtEnd ? 0 : std::max<std::int64_t>(0, lengthOf(descriptor) - position);
}

void CFile::Close() {
    if (descriptor >= 0) {
        close(descriptor);
        descriptor = -1;
        countHeldFiles(-1);
    }
}

} // namespace korlit
