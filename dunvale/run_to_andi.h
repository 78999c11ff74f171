// Converts a Dunvale run file into one ANDI file for each of its channels.
#pragma once

#include <span>

namespace korlit {

/// Converts the run file at `path`. A text that `message` holds on entry is the output path of
/// every channel; else the files are named by the run file without its extension, the channel's
/// number from 1, and ".cdf".
///
/// Answers true with `message` as it was, or false with the reason in it. A channel that can't be
/// written doesn't keep the others from being; those written before a failure stay.
bool RunToAndi(const char* path, std::span<char> message);

} // namespace korlit
