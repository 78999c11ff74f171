// What a batch is to convert, and where to.
#pragma once

#include "host/files/formats.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace korlit::host {

/// To what the user wants files to be converted.
enum class Goal : std::uint8_t { Unsaid, Andi, Pair };

struct WorkOptions {
    std::vector<std::string> paths;    ///< files and folders
    std::string filesFrom;             ///< a file of further paths; "-" is standard input
    bool isZeroSeparated = false;      ///< each of those ends with a NUL, else with its line
    bool isRecursive = false;          ///< folders with what lies below
    FileKind from = FileKind::Unknown; ///< the kind of all files; Unknown has it recognised
    Goal to = Goal::Unsaid;
    std::filesystem::path outputFolder; ///< empty for beside the input
    std::filesystem::path output;       ///< the one output's own path; empty for none
    std::size_t shard = 1;              ///< this process takes the shard-th
    std::size_t shardCount = 1;         ///< of so many parts
};

} // namespace korlit::host
