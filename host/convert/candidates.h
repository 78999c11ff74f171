// The files that a batch may convert: those that were named, and what is found in folders.
#pragma once

#include "host/convert/work_options.h"

#include <cstddef>
#include <filesystem>
#include <string>
#include <vector>

namespace korlit::host {

/// A file on its way into the list.
struct Candidate {
    std::filesystem::path file;
    std::filesystem::path folderBelow; ///< where it lies below the folder that was named
    FileKind kind = FileKind::Unknown;
    bool isFound = false; ///< in a folder, not named itself
    std::string problem;  ///< why it can't be converted; empty if that is still to be seen
};

struct Candidates {
    std::vector<Candidate> files;
    std::vector<std::string> ignored; ///< of folders, each with the reason
    std::size_t reachedCount = 0;     ///< found in folders, of the kind asked for already
};

/// Lists the files, sorted within each folder. A file is listed once, however many ways lead to it.
///
/// Of a folder everything is taken that its content or its name says is of a known kind, whether it
/// can be read or not. Hidden files and the output folder are passed over; the report of a pair
/// goes with its slice file, and is a problem of its own without one.
///
/// Throws a runtime_error where `filesFrom` can't be read.
Candidates candidatesOf(const WorkOptions& options);

} // namespace korlit::host
