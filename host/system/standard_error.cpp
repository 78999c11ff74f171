#include "host/system/standard_error.h"

#include "platform/descriptors.h"

#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace korlit::host {

StandardErrorCapture::StandardErrorCapture()
    : original{dup(STDERR_FILENO)}, kept{memfd_create("standard error", MFD_CLOEXEC)} {
    if (original >= 0 && kept >= 0) {
        dup2(kept, STDERR_FILENO);
    }
}

StandardErrorCapture::~StandardErrorCapture() {
    if (original >= 0) {
        dup2(original, STDERR_FILENO);
        close(original);
    }
    if (kept >= 0) {
        close(kept);
    }
}

std::string StandardErrorCapture::text() const {
    struct stat status {};
    if (kept < 0 || fstat(kept, &status) != 0) {
        return {};
    }
    std::string text(static_cast<std::size_t>(status.st_size), '\0');
    const std::int64_t length = transferAll(std::ssize(text), [&](std::int64_t done) {
        return pread(kept, text.data() + done, text.size() - static_cast<std::size_t>(done), done);
    });
    text.resize(static_cast<std::size_t>(length));
    return text;
}

} // namespace korlit::host
