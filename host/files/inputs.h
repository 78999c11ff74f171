// What a user names for a command to work on.
#pragma once

#include "host/files/formats.h"

#include <string>
#include <vector>

namespace korlit::host {

struct Inputs {
    std::vector<std::string> paths;    ///< files and folders
    std::string filesFrom;             ///< a file of further paths; "-" is standard input
    bool isZeroSeparated = false;      ///< each of those ends with a NUL, else with its line
    bool isRecursive = false;          ///< folders with what lies below
    FileKind from = FileKind::Unknown; ///< the kind of all files; Unknown has it recognised
};

} // namespace korlit::host
