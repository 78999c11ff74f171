// Which files a batch converts, and to what.
#pragma once

#include "host/convert/job.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace korlit::host {

struct WorkOptions {
    std::vector<std::string> paths; ///< files and folders
    std::string filesFrom;          ///< a file of further paths, a line each; "-" is standard input
    bool isRecursive = false;       ///< folders with what lies below
    FileKind from = FileKind::Unknown;  ///< the kind of all files; Unknown has it recognised
    std::filesystem::path outputFolder; ///< empty for beside the input
    std::filesystem::path output;       ///< the one output's own path; empty for none
    std::size_t shard = 1;              ///< this process takes the shard-th
    std::size_t shardCount = 1;         ///< of so many parts
};

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
