#include "platform/message_box.h"

#include "platform/text.h"

#include <poll.h>
#include <unistd.h>

#include <array>
#include <cstring>

namespace korlit {

Window* GetActiveWindow() {
    return nullptr;
}

void MessageBoxA(Window* /*owner*/, const char* text, const char* title) {
    std::array<char, 256> line{};
    formatText(line, "%s: %s\n", title, text);

    // A pipe that polls as writable takes a line this short whole and at once. One whose reader is
    // gone polls as an error, and writing to it would send the host a signal.
    pollfd standardError{.fd = STDERR_FILENO, .events = POLLOUT, .revents = 0};
    if (poll(&standardError, 1, 0) == 1 && standardError.revents == POLLOUT) {
        [[maybe_unused]] const ssize_t written =
            write(STDERR_FILENO, line.data(), std::strlen(line.data()));
    }
}

} // namespace korlit
