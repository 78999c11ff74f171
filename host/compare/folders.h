// Folders against each other, file by file.
#pragma once

#include "host/compare/compare.h"

namespace korlit::host {

/// Compares the files of two folders that belong to each other by name, or one file with those of a
/// folder. Answers 0 if all are the same data, 1 if some aren't, have no partner or can't be read,
/// 2 where there is nothing to compare, and 130 for an interrupt.
int compareFolders(const CompareOptions& options);

} // namespace korlit::host
