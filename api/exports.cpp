#include "api/exports.h"

#include "api/guard.h"
#include "api/paths.h"
#include "native/write_native_pair.h"
#include "platform/text.h"

using namespace korlit;

int32_t Andi2Merivolta(char* path, char* message) {
    return guarded([&] {
        if (path == nullptr || message == nullptr) {
            return 0;
        }
        const std::span<char> text = messageBuffer(path, message);
        return WriteNativePair(path, NormalisePath(path), text);
    });
}

int32_t Andi2Dunvale(char* /*path*/, char* message) {
    if (message != nullptr) {
        formatText({message, KORLIT_MESSAGE_MINIMUM}, "%s", "Feature is not implemented !!!");
    }
    return 0;
}
