#include "api/shared_state.h"

namespace korlit {

AndiFile TheAndiFile{};
std::array<char, 304> TextScratch{};
namespace {

/// Lets go of the last file when the library is unloaded.
struct AtUnload {
    AtUnload() = default;
    AtUnload(const AtUnload&) = delete;
    AtUnload& operator=(const AtUnload&) = delete;
    ~AtUnload() { FreeAndiFile(&TheAndiFile); }
};
const AtUnload atUnload;

} // namespace

SliHeader TheSliHeader{};
RepHeader TheRepHeader{};
ResHeader TheResHeader{};

} // namespace korlit
