#include "host/system/standard_streams.h"

#include <fcntl.h>
#include <unistd.h>

#include <csignal>
#include <initializer_list>

namespace korlit::host {

void openStandardStreams() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0) {
            // It takes the lowest number that is free, which is this one.
            const bool isFull = stream != STDIN_FILENO && open("/dev/full", O_RDWR) >= 0;
            if (!isFull) {
                open("/dev/null", O_RDWR);
            }
        }
    }
}

} // namespace korlit::host
