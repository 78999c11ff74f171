#include "api/paths.h"

#include "api/exports.h"

#include <algorithm>
#include <cstring>

namespace korlit {

char* NormalisePath(char* path) {
    char* separator = std::strrchr(path, '/');
    char* lastComponent = separator == nullptr ? path : separator + 1;
    if (char* extension = std::strrchr(lastComponent, '.')) {
        return extension;
    }
    char* end = path + std::strlen(path);
    std::strcpy(end, ".");
    return end;
}

std::span<char> messageBuffer(const char* path, char* message) {
    const std::size_t size = std::strlen(path) + KORLIT_MESSAGE_ROOM;
    return {message, std::max<std::size_t>(size, KORLIT_MESSAGE_MINIMUM)};
}

std::span<char> runMessageBuffer(const char* path, char* message) {
    if (message == nullptr) {
        return {};
    }
    return {message, std::max(messageBuffer(path, message).size(), std::strlen(message) + 1)};
}

} // namespace korlit
