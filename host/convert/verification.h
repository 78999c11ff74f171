// The outputs of a conversion, read back from the disk and held against their source before they
// move to their place.
#pragma once

#include "host/files/plan.h"
#include "host/proof/prospect.h"
#include "host/proof/verdict.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace korlit::host {

/// All that one rule has changed.
struct VerifiedRule {
    std::string id;
    std::string words;
    std::int64_t count = 0;
};

/// What came of it, in words, as it travels between processes.
struct Verification {
    std::string verdict;
    bool isSame = false;
    std::vector<VerifiedRule> expected;
    std::vector<std::string> unexpected; ///< the first hundred
};

/// Holds what was staged for a plan to it. Throws a runtime_error where that can't be read.
Verdict verdictOfStaged(const Plan& plan, const std::filesystem::path& stage,
                        const Prospect& prospect);

Verification verificationOf(const Verdict& verdict);

/// Throws a runtime_error, which tells how much is unexpected and what comes first, unless the data
/// are the same.
void requireSame(const Verdict& verdict);

} // namespace korlit::host
