// Loads an ANDI file: the netCDF classic layout, header, attributes and data in one go.
#pragma once

#include "andi/andi_file.h"

#include <span>

namespace korlit {

/// Loads the file at `path` into `file`, whose former content is released first, with every number
/// in host byte order. No file is open on return.
///
/// Answers 1, or 0 with `file` empty and the reason in `message`. The one failure without a text is
/// no memory for an array, which shows a message box and leaves `message` as it was. A declared
/// size that its block can't have (negative, or 2 GiB and more) counts as no memory.
///
/// Where a variable's declared size holds fewer elements than its dimensions say, ElementCount is
/// what the block holds.
int ReadAndiFile(const char* path, AndiFile* file, std::span<char> message);

/// Whether the data of a variable are wanted; called when all of its entry is known.
using DataFilter = bool (*)(const AndiVariable& variable);

/// The same with the data of those variables alone that `isWanted` chooses. Of the others Data is
/// null, while ElementCount tells how many elements a block of the declared size would hold. Data
/// that aren't loaded are not looked for in the file either.
int ReadAndiPart(const char* path, AndiFile* file, std::span<char> message, DataFilter isWanted);

} // namespace korlit
