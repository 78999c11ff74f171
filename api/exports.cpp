#include "api/exports.h"

#include "api/guard.h"
#include "api/paths.h"
#include "dunvale/run_to_andi.h"
#include "native/read_native_pair.h"
#include "native/write_native_pair.h"
#include "platform/text.h"

using namespace korlit;

namespace {

/// The frame of the exports that change the path's extension.
template <typename Flow>
int32_t convert(char* path, char* message, Flow flow) {
    return guarded([&] {
        if (path == nullptr || message == nullptr) {
            return 0;
        }
        const std::span<char> text = messageBuffer(path, message);
        return flow(path, NormalisePath(path), text);
    });
}

} // namespace

int32_t Andi2Merivolta(char* path, char* message) {
    return convert(path, message, WriteNativePair);
}

int32_t Merivolta2Andi(char* path, char* message) {
    return convert(path, message, ReadNativePair);
}

int32_t Dunvale2Andi(char* path, char* message) {
    return guarded(
        [&] { return path == nullptr ? 0 : RunToAndi(path, runMessageBuffer(path, message)); });
}

int32_t Andi2Dunvale(char* /*path*/, char* message) {
    if (message != nullptr) {
        formatText({message, KORLIT_MESSAGE_MINIMUM}, "%s", "Feature is not implemented !!!");
    }
    return 0;
}
