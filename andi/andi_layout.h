// What the reader and the writer of ANDI files have in common: the tags of the header's lists.
#pragma once

#include <cstdint>

namespace korlit {

enum class ListTag : std::int16_t { Absent = 0, Dimensions = 10, Variables = 11, Attributes = 12 };

} // namespace korlit
