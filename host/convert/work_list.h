// Which files a batch converts, and to what.
#pragma once

#include "host/convert/job.h"
#include "host/convert/work_options.h"

#include <string>
#include <vector>

namespace korlit::host {

struct WorkList {
    std::vector<Job> jobs;
    std::vector<std::string> leftOut; ///< files in folders that are not converted, with the reason
};

/// Lists the jobs, sorted within each folder.
///
/// Of a folder what is recognised is taken, or what is of the kind `from`; hidden files are not.
/// What another job of the list makes is no source: of two files in a folder that would be made of
/// each other, the newer one is taken for the other's conversion and left out, or of two of the
/// same age that which is no ANDI file. A part of the work is chosen by each path's own hash, so
/// that the parts stay the same whatever is written meanwhile.
///
/// Throws a runtime_error where `filesFrom` can't be read, or where there is one output for several
/// files.
WorkList listWork(const WorkOptions& options);

} // namespace korlit::host
