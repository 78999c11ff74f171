// The files that a batch is about, before it is known what becomes of them.
#pragma once

#include "host/convert/work_options.h"

#include <filesystem>
#include <string>
#include <vector>

namespace korlit::host {

/// A file on its way into the work.
struct Candidate {
    std::filesystem::path file;
    std::filesystem::path folderBelow; ///< where it lies below the folder that was named
    FileKind kind = FileKind::Unknown;
    bool isFound = false; ///< in a folder, not named itself
    std::string problem;
};

struct Candidates {
    std::vector<Candidate> files;
    std::vector<std::string> leftOut; ///< with the reason
};

/// What was named, in that order, and what is in the folders that were, sorted. Throws a
/// runtime_error where `filesFrom` can't be read.
Candidates candidatesOf(const WorkOptions& options);

} // namespace korlit::host
