#include "native/native_state.h"

namespace korlit {

AndiFile TheAndiFile{};
ValueText TextScratch{};

SliHeader TheSliHeader{};
RepHeader TheRepHeader{};
ResHeader TheResHeader{};

} // namespace korlit
