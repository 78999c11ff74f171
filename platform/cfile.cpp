#include "platform/cfile.h"

#include "platform/descriptors.h"
#include "platform/faults.h"

#include <unistd.h>

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
    if (descriptor >= 0) {
        countHeldFiles(+1);
    }
    return descriptor >= 0;
}

std::int64_t CFile::Read(void* target, std::int64_t byteCount) {
    auto* bytes = static_cast<char*>(target);
    const std::int64_t moved = transferAll(byteCount, [&](std::int64_t done) {
        return pread(descriptor, bytes + done, static_cast<std::size_t>(byteCount - done),
                     position + done);
    });
    position += moved;
    return moved;
}

void CFile::Close() {
    if (descriptor >= 0) {
        close(descriptor);
        descriptor = -1;
        countHeldFiles(-1);
    }
}

} // namespace korlit
