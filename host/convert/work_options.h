// What a batch is to convert, and where to.
#pragma once

#include "host/files/inputs.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>

namespace korlit::host {

/// To what the user wants files to be converted.
enum class Goal : std::uint8_t { Unsaid, Andi, Pair };

struct WorkOptions {
    Inputs inputs;
    Goal to = Goal::Unsaid;
    std::filesystem::path outputFolder; ///< empty for beside the input
    std::filesystem::path output;       ///< the one output's own path; empty for none
    std::size_t shard = 1;              ///< this process takes the shard-th
    std::size_t shardCount = 1;         ///< of so many parts
};

} // namespace korlit::host
