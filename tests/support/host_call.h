// Calls an export as a host does: with buffers of exactly the size that a host must provide, and
// canaries behind them.
#pragma once

#include "api/exports.h"

#include <algorithm>
#include <cstddef>
#include <ostream>
#include <string>

namespace korlit::test {

using Export = std::int32_t (*)(char* path, char* message);

struct Answer {
    std::int32_t result = 0;
    std::string path;
    std::string message;
    bool areBuffersKept = false; ///< nothing was written behind either buffer

    bool operator==(const Answer&) const = default;
};

inline std::ostream& operator<<(std::ostream& out, const Answer& answer) {
    return out << answer.result << " path '" << answer.path << "' message '" << answer.message
               << "'" << (answer.areBuffersKept ? "" : " WROTE BEHIND A BUFFER");
}

inline const std::string untouchedMessage = "as the host left it";

/// `message` is what the host has put into the buffer beforehand.
inline Answer callAsHost(Export function, const std::string& path,
                         const std::string& message = untouchedMessage) {
    const std::string canary(32, '\x5A');
    const std::size_t pathSize = path.size() + KORLIT_PATH_ROOM;
    const auto messageSize = std::max<std::size_t>(
        {path.size() + KORLIT_MESSAGE_ROOM, KORLIT_MESSAGE_MINIMUM, message.size() + 1});
    std::string pathBuffer = path;
    std::string messageBuffer = message;
    pathBuffer.resize(pathSize);
    messageBuffer.resize(messageSize);
    pathBuffer += canary;
    messageBuffer += canary;
    const std::int32_t result = function(pathBuffer.data(), messageBuffer.data());
    return {.result = result,
            .path = pathBuffer.substr(0, pathBuffer.find('\0')),
            .message = messageBuffer.substr(0, messageBuffer.find('\0')),
            .areBuffersKept = pathBuffer.substr(pathSize) == canary &&
                              messageBuffer.substr(messageSize) == canary};
}

} // namespace korlit::test
