#include "platform/file_size_signal.h"

#include <cerrno>
#include <ctime>

namespace korlit {

namespace {

sigset_t fileSizeSignal() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGXFSZ);
    return signals;
}

} // namespace

FileSizeSignalHeld::FileSizeSignalHeld() {
    const sigset_t signals = fileSizeSignal();
    pthread_sigmask(SIG_BLOCK, &signals, &before);
}

FileSizeSignalHeld::~FileSizeSignalHeld() {
    // The host may ask what the last call of the system said.
    const int error = errno;
    // One that came meanwhile would be delivered now. A host that holds it itself keeps it.
    if (sigismember(&before, SIGXFSZ) == 0) {
        const sigset_t signals = fileSizeSignal();
        const timespec atOnce{};
        while (sigtimedwait(&signals, nullptr, &atOnce) == SIGXFSZ) {
        }
        pthread_sigmask(SIG_SETMASK, &before, nullptr);
    }
    errno = error;
}

} // namespace korlit
