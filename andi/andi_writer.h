// Writes an ANDI file: the netCDF classic layout, its data directly behind its header.
#pragma once

#include "andi/andi_file.h"

#include <span>

namespace korlit {

/// Writes `file` to `path`, replacing what stood there. Answers 1, or 0 with `file` released and
/// "Error writing Andi File %s" in `message`; a file that was written in part stays on disk.
///
/// No copy of the data is made: numbers are turned to the file's byte order where they lie. After a
/// result of 1 `file` can therefore neither be looked up nor written again, only released.
int WriteAndiFile(const char* path, AndiFile* file, std::span<char> message);

} // namespace korlit
