// Which files a batch converts, and to what.
#pragma once

#include "host/convert/job.h"
#include "host/convert/work_options.h"

#include <cstddef>
#include <string>
#include <vector>

namespace korlit::host {

struct WorkList {
    std::vector<Job> jobs;
    std::vector<std::string> ignored; ///< files in folders that are not converted, with the reason
    std::size_t reachedCount = 0;     ///< found in folders, of the kind asked for already
};

/// Lists the jobs, sorted within each folder. A part of the work is chosen by each path's own hash,
/// so that the parts stay the same whatever is written meanwhile.
///
/// No direction is guessed: what folders hold is converted one way only. Files that were named go
/// by their content. A target that is a source of the batch, by whatever name or link, is a problem
/// of both jobs, and one that another job makes too is a problem of the later.
///
/// Throws WrongUse where folders hold files for both directions and none was asked for, where
/// `output` doesn't fit what is to be converted, and where a list of files can't be read.
WorkList listWork(const WorkOptions& options);

} // namespace korlit::host
