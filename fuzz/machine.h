// The machine that the targets run on: little memory, message boxes that nobody sees, and the
// sibling library linked in.
#pragma once

#include <cstdint>

namespace korlit::fuzz {

/// A larger block is one that the machine hasn't got; 256 KiB unless a target says otherwise. A
/// file may announce sizes that it doesn't hold, and what a target is to find does not take
/// gigabytes of zeros to show.
extern std::int64_t largestBlock;

/// Message boxes since the start of the process.
int shownBoxes();

} // namespace korlit::fuzz
