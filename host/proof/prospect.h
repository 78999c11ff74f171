// What the outputs of a source must hold.
#pragma once

#include "host/data/resampled_file.h"
#include "host/proof/expectation.h"

#include <string>
#include <vector>

namespace korlit::host {

struct Prospect {
    std::vector<Reading> sources; ///< of a run one for each channel
    std::vector<Expectations> expected;
};

/// What becomes of a source, whose path is that by which it is converted. Throws a runtime_error
/// where it can't be read.
Prospect prospectOf(const std::string& source, FileKind kind, Wanted wanted);

/// What becomes of an ANDI file by way of the one that it was resampled to.
Prospect prospectOfResampled(const std::string& resampledFile, const ResampledFile& resampling,
                             Wanted wanted);

} // namespace korlit::host
