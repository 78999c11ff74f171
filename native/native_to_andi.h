// Makes an ANDI file from the records of a Merivolta data set.
#pragma once

#include "andi/andi_file.h"
#include "native/native_blocks.h"

#include <cstddef>
#include <span>

namespace korlit {

/// Builds an ANDI file in `file`, which comes in empty, from TheSliHeader, TheResHeader and
/// `blocks`, and writes it. The samples become the file's; the caller gets an empty block for them.
///
/// `path` is that of the data set without an extension, with room for ".cdf", which is appended.
/// The area of each record is changed in place. Answers 1 with the new name in `message` and `file`
/// still filled, or 0 with `file` released; `message` then says so only if it was the writing that
/// failed.
int MapNativeToAndi(NativeBlocks& blocks, AndiFile* file, char* path, std::span<char> message);

/// Adds a float variable `name` over the dimension of the peaks, with the bytes of the float at
/// `fieldOffset` of each of the first PeakCount records. Adds nothing if there is no memory for it.
void AddPeakColumn(AndiFile* file, const char* name, std::int32_t peakDimension,
                   const PeakRecord* peaks, std::size_t fieldOffset);

} // namespace korlit
