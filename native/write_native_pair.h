// From an ANDI file to the pair of files of a Merivolta data set.
#pragma once

#include <span>

namespace korlit {

/// Converts the ANDI file at `path` into a slice file and a report file of the same base name.
///
/// `extension` is the place in the path's buffer where ".sli" and ".rpt" are written, with room for
/// both behind it. Answers true, or false with the reason in `message`; on return the path ends in
/// ".sli", unless the load failed (then it is untouched) or the report file could not be created
/// (".rpt"). Files that a failed conversion created stay on disk. Leaves no file open and no block
/// but those of TheAndiFile, which stays loaded where a target could not be created.
bool WriteNativePair(char* path, char* extension, std::span<char> message);

/// Writes TheSliHeader, zeros up to the offset of the samples, and PointCount samples.
void WriteSliceFile(int file, const float* data);

} // namespace korlit
