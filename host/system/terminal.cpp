#include "host/system/terminal.h"

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace korlit::host {

bool isOutputTerminal() {
    return isatty(STDOUT_FILENO) == 1;
}

bool isErrorTerminal() {
    return isatty(STDERR_FILENO) == 1;
}

bool isOutputAbandoned() {
    pollfd output{.fd = STDOUT_FILENO, .events = POLLOUT, .revents = 0};
    return poll(&output, 1, 0) == 1 && (output.revents & (POLLERR | POLLHUP)) != 0;
}

std::size_t terminalWidth() {
    constexpr std::size_t usualWidth = 80;
    winsize size{};
    const bool isKnown = ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isKnown ? size.ws_col : usualWidth;
}

} // namespace korlit::host
