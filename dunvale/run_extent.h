// How much of what a run announces its file holds. The conversion counts as zero whatever is
// missing; who has to know before asks here.
#pragma once

#include "platform/cfile.h"

#include <cstdint>
#include <optional>

namespace korlit {

struct RunExtent {
    int channels = 0;      ///< announced
    int channelsThere = 0; ///< with the head of their signal
    std::int64_t samples = 0;
    std::int64_t samplesThere = 0;
    bool isWhole = true; ///< down to the last table behind the signals
};

/// Walks over a run from the start of its open file, block after block, and reads the counts alone.
/// Nothing for a file that ends within its head, or has a count that no run can have: the
/// conversion has words for those.
std::optional<RunExtent> extentOf(CFile& file);

} // namespace korlit
