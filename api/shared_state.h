// What all conversions share. A conversion is one call at a time; nothing here carries meaning from
// one call to the next. TheAndiFile may stay filled behind a call and is released at the start of
// the next one that uses it, or when the library is unloaded.
#pragma once

#include "andi/andi_file.h"
#include "native/native_records.h"

#include <array>

namespace korlit {

extern AndiFile TheAndiFile;

/// Texts on their way: values looked up (at most maxValueText characters) and names composed.
extern std::array<char, 304> TextScratch;
constexpr std::int32_t maxValueText = 299;

extern SliHeader TheSliHeader;
extern RepHeader TheRepHeader;
extern ResHeader TheResHeader;

} // namespace korlit
