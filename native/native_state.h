// What the two conversions of a Merivolta data set share. They come one at a time; nothing here
// carries meaning from one to the next.
#pragma once

#include "andi/andi_file.h"
#include "native/native_records.h"

#include <array>

namespace korlit {

/// Comes in empty. A conversion may leave it filled; what is then released when is for the exports
/// to say.
extern AndiFile TheAndiFile;

/// A value on its way, of at most maxValueText characters.
using ValueText = std::array<char, 304>;
extern ValueText TextScratch;
constexpr std::int32_t maxValueText = 299;

extern SliHeader TheSliHeader;
extern RepHeader TheRepHeader;
extern ResHeader TheResHeader;

} // namespace korlit
