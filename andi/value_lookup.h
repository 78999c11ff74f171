// Finds a value of an ANDI file by name, whether it is a global attribute, a variable, an attribute
// of a variable or a dimension, and delivers it as text or as a pointer to a variable's data.
//
// Names are compared in a squeezed form: the key "detectorunit" finds detector_unit and
// detector-unit. One separator ahead of each character of the key is passed over; the stored name's
// own letters are compared as they stand.
#pragma once

#include "andi/andi_file.h"

#include <array>

namespace korlit {

/// The length of `out` that asks for a pointer instead of text.
constexpr std::int32_t pointerMode = 0;

/// Searches a loaded file; answers 1 on the first hit, else 0 with `out` as it was.
///
/// `key` is lower-cased in place. With `outLength` above 0, `out` is a char buffer of that length:
/// a char value up to its first zero, which its block has in any case, fills it whole, padded with
/// zeros and without a terminator where the text takes all of it; numbers are rendered one behind
/// the other, each with a blank behind it (bytes without), cut at the buffer's end and terminated;
/// a value of no numbers writes nothing. With pointerMode, `out` is a void* that receives a
/// variable's Data; only variables are searched.
///
/// `*outVariable` is the variable that was hit by its own name, else null. A variable along the
/// record dimension is not found by its name.
int FindAndiValue(AndiFile* file, char* key, void* out, std::int32_t outLength,
                  AndiVariable** outVariable);

/// The same for one attribute list, with a key in lower case already.
int FindAttributeInList(const AndiAttributeList* list, const char* key, void* out,
                        std::int32_t outLength);

/// Compares one key with one stored name and on a match (1) delivers the elements.
int MatchAndiName(const char* key, const char* storedName, AndiType type, std::int32_t elementCount,
                  void* elements, void* out, std::int32_t outLength);

/// A terminated text of one element.
using AndiElementText = std::array<char, 20>;

/// Renders element `index`; the empty text for a type that is none.
AndiElementText FormatAndiValue(AndiType type, const void* elements, std::int32_t index);

} // namespace korlit
