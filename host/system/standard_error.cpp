#include "host/system/standard_error.h"

#include "platform/descriptors.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <span>

namespace korlit::host {

namespace {

/// Standard error and the file that takes its place. A process has one pair for as long as it
/// lives, since a batch changes over and back for every file.
struct Exchange {
    int original = noDescriptor;
    int kept = noDescriptor;
    pid_t process = -1;
    int captures = 0;

    bool isReady() const { return original >= 0 && kept >= 0; }

    /// What another process has, of which this is a fork, is its own: two at one place would mix.
    void prepare() {
        if (process == getpid()) {
            return;
        }
        for (const int descriptor : {original, kept}) {
            if (descriptor >= 0) {
                closeDescriptor(descriptor);
            }
        }
        *this = {.original = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, STDERR_FILENO),
                 .kept = memfd_create("standard error", MFD_CLOEXEC),
                 .process = getpid()};
    }
};

Exchange exchange;

std::int64_t placeInKept() {
    return exchange.isReady() ? lseek(exchange.kept, 0, SEEK_CUR) : 0;
}

} // namespace

StandardErrorCapture::StandardErrorCapture() {
    exchange.prepare();
    if (exchange.captures++ == 0 && exchange.isReady()) {
        dup2(exchange.kept, STDERR_FILENO);
    }
    begin = placeInKept();
}

StandardErrorCapture::~StandardErrorCapture() {
    if (--exchange.captures == 0 && exchange.isReady()) {
        dup2(exchange.original, STDERR_FILENO);
        if (placeInKept() > 0 && ftruncate(exchange.kept, 0) == 0) {
            lseek(exchange.kept, 0, SEEK_SET);
        }
    }
}

std::string StandardErrorCapture::text() const {
    std::string text(static_cast<std::size_t>(placeInKept() - begin), '\0');
    const std::span bytes{reinterpret_cast<std::byte*>(text.data()), text.size()};
    text.resize(
        static_cast<std::size_t>(readAt(exchange.kept, bytes, std::ssize(text), begin).moved));
    return text;
}

} // namespace korlit::host
