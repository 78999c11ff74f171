// The conversions of the command, through the library's exports as any host uses them.
#pragma once

#include <string>
#include <vector>

namespace korlit::host {

/// Converts each file, a slice file (.sli) or a run file into ANDI files and any other as an ANDI
/// file into a pair, and prints a line for it on standard output: the file, then the library's own
/// text. Answers the exit status: 0 if all were converted, 1 if some failed.
int convertFiles(const std::vector<std::string>& files);

} // namespace korlit::host
