#include "api/exports.h"

#include "api/guard.h"
#include "api/paths.h"
#include "api/shared_state.h"
#include "dunvale/run_to_andi.h"
#include "native/read_native_pair.h"
#include "native/write_native_pair.h"
#include "platform/text.h"

using namespace korlit;

namespace {

/// The frame of the exports that convert a Merivolta data set: they change the path's extension,
/// and share their state.
template <typename Flow>
int32_t convert(char* path, char* message, Flow flow) {
    return guarded([&] {
        if (path == nullptr || message == nullptr) {
            return false;
        }
        const std::span<char> text = messageBuffer(path, message);
        char* extension = NormalisePath(path);
        releaseSharedState();
        return flow(path, extension, text);
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
        [&] { return path != nullptr && RunToAndi(path, runMessageBuffer(path, message)); });
}

int32_t Andi2Dunvale(char* /*path*/, char* message) {
    if (message != nullptr) {
        formatText({message, KORLIT_MESSAGE_MINIMUM}, "%s", "Feature is not implemented !!!");
    }
    return 0;
}
