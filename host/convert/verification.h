// The outputs of a conversion, read back from the disk and held against their source before they
// move to their place.
#pragma once

#include "host/files/plan.h"
#include "host/manifest/record.h"
#include "host/proof/prospect.h"
#include "host/proof/verdict.h"

#include <filesystem>
#include <string>
#include <vector>

namespace korlit::host {

/// Holds what was staged for a plan to it. Throws a runtime_error where that can't be read.
Verdict verdictOfStaged(const Plan& plan, const std::filesystem::path& stage,
                        const Prospect& prospect);

/// The same as it travels between processes and stands in a manifest. Of what is unexpected it has
/// the first hundred.
RecordedVerdict recorded(const Verdict& verdict);

/// Throws a runtime_error, which tells how much is unexpected and what comes first, unless the data
/// are the same.
void requireSame(const Verdict& verdict);

/// Throws a runtime_error where any of `kept`, which are targets that are there already, hasn't the
/// bytes of what was staged for it. An ANDI file has the name of its source, too.
void requireAsStaged(const Plan& plan, const std::vector<std::string>& kept,
                     const std::filesystem::path& stage);

} // namespace korlit::host
