// Makes the records of a Merivolta data set from a loaded ANDI file.
#pragma once

#include "andi/andi_file.h"
#include "native/native_blocks.h"

#include <cstddef>
#include <span>

namespace korlit {

/// Fills TheSliHeader, TheRepHeader, TheResHeader and `blocks` from `file`, by the names of the
/// chromatography template. A value that the file lacks leaves its field zero; only the samples are
/// required. Times become minutes, the sample interval milliseconds.
///
/// Answers 1 and releases `file`, or 0 with the reason in `message`. A peak table of more than 570
/// peaks, or one that finds no memory, is left out: `message` says so and the answer is 1. The
/// blocks are the caller's to release on every road; they must come in empty.
int MapAndiToNative(NativeBlocks& blocks, AndiFile* file, std::span<char> message);

/// Copies the peak variable `name` (squeezed, lower case) of TheAndiFile into the float at
/// `fieldOffset` of the first PeakCount records, times `factor`; with a factor of 1 bit for bit.
/// Records behind the variable's end, and all of them if there is no such variable, keep what they
/// hold.
void CopyPeakColumn(const char* name, PeakRecord* peaks, std::size_t fieldOffset, float factor);

} // namespace korlit
