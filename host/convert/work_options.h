// What a batch is to convert, and where to.
#pragma once

#include "host/files/formats.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace korlit::host {

struct WorkOptions {
    std::vector<std::string> paths; ///< files and folders
    std::string filesFrom;          ///< a file of further paths, a line each; "-" is standard input
    bool isRecursive = false;       ///< folders with what lies below
    FileKind from = FileKind::Unknown;  ///< the kind of all files; Unknown has it recognised
    std::filesystem::path outputFolder; ///< empty for beside the input
    std::filesystem::path output;       ///< the one output's own path; empty for none
    std::size_t shard = 1;              ///< this process takes the shard-th
    std::size_t shardCount = 1;         ///< of so many parts
};

} // namespace korlit::host
