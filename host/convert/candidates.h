// The files that a batch may convert: those that were named, and what is found in folders.
#pragma once

#include "host/convert/work_options.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace korlit::host {

/// A file on its way into the list. There may be very many: each holds what differs from its
/// neighbours alone.
struct Candidate {
    std::string name;         ///< in its folder; of a file that was named the whole path
    std::uint32_t folder = 0; ///< one of the folders beside it
    FileKind kind = FileKind::Unknown;
    std::uint8_t channelCount = 1;
    bool isFound = false; ///< in a folder, not named itself
    std::string problem;  ///< why it can't be converted; empty if that is still to be seen
};

struct CandidateFolder {
    std::filesystem::path path;
    std::filesystem::path below; ///< where it lies below the folder that was named
};

struct Candidates {
    std::vector<CandidateFolder> folders{{}}; ///< the first is that of all files that were named
    std::vector<Candidate> files;
    std::vector<std::string> ignored; ///< of folders, each with the reason
    std::size_t reachedCount = 0;     ///< found in folders, of the kind asked for already
};

/// Lists the files, sorted within each folder. A file is listed once, however many ways lead to it.
///
/// Of a folder everything is taken that its content or its name says is of a known kind, whether it
/// can be read or not; what is of the kind asked for already is a candidate only if something is
/// wrong with it. The report of a pair goes with its slice file, and is a problem of its own
/// without one. Folders that can't be read are problems, and those that are not entered are
/// ignored. Hidden files are passed over.
///
/// Throws a runtime_error where `filesFrom` can't be read.
Candidates candidatesOf(const WorkOptions& options);

} // namespace korlit::host
