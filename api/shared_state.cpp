#include "api/shared_state.h"

#include "native/native_state.h"

namespace korlit {

namespace {

struct AtUnload {
    AtUnload() = default;
    AtUnload(const AtUnload&) = delete;
    AtUnload& operator=(const AtUnload&) = delete;
    ~AtUnload() { releaseSharedState(); }
};
const AtUnload atUnload;

} // namespace

void releaseSharedState() {
    FreeAndiFile(&TheAndiFile);
}

} // namespace korlit
