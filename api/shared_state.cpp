#include "api/shared_state.h"

namespace korlit {

AndiFile TheAndiFile{};
std::array<char, 304> TextScratch{};
SliHeader TheSliHeader{};
RepHeader TheRepHeader{};
ResHeader TheResHeader{};

} // namespace korlit
