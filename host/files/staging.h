// One conversion through the library's exports, in a folder of its own, so that its files come to
// their place whole or not at all and no file of its source's folder is touched.
#pragma once

#include "host/files/plan.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>

namespace korlit::host {

/// Of a run that another program has changed since its targets were listed.
constexpr const char* channelsChangedText = "Its channels have changed while it was converted";

struct StagedResult {
    bool isConverted = false;
    std::error_code reason;  ///< what the system said of a failure that isn't the source's
    std::string message;     ///< the library's words on one line, with the true paths
    std::int64_t points = 0; ///< samples in all that was written
    std::int64_t peaks = 0;
};

/// Converts into the folder `stage`, which must exist. ANDI files name the plan's source as theirs.
/// A failure without words in the library's message has those of its message box. May throw a
/// filesystem_error, with the path of a target, where the staging folder can't take what it must.
StagedResult convertStaged(const Plan& plan, const std::filesystem::path& stage);

} // namespace korlit::host
