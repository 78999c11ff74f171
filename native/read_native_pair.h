// From the pair of files of a Merivolta data set to an ANDI file.
#pragma once

#include "platform/library.h"

#include <span>

namespace korlit {

/// Converts the slice file at `path` and the report beside it into an ANDI file of the same base
/// name. `extension` is the place in the path's buffer where ".rpt", ".sli" and ".cdf" are written,
/// with room for them behind it.
///
/// TheAndiFile comes in empty. Answers true, or false with the reason in `message`, which stays as
/// it was where the sibling library tells the user itself. On return the path ends in ".cdf", or in
/// what the failing step put there. No file, block or library stays held but the blocks of
/// TheAndiFile after a success.
bool ReadNativePair(char* path, char* extension, std::span<char> message);

/// Runs the library's UpdateRepHeader on TheRepHeader and the report at `path`. Answers 1, or 0 if
/// that can't be run or faults.
int BringRepHeaderUpToDate(LibraryHandle library, const char* path);

} // namespace korlit
