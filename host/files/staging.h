// One conversion through the library's exports, in a folder of its own, so that its files come to
// their place whole or not at all and no file of its source's folder is touched.
#pragma once

#include "host/files/recognise.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace korlit::host {

/// A file that a conversion makes: under which name in the staging folder, and where it belongs.
struct Target {
    std::string stagedName;
    std::filesystem::path path;
};

/// What is to be converted to what.
struct Plan {
    std::string source;
    FileKind kind = FileKind::Unknown;
    std::string stem{}; ///< base name of the staged files
    std::vector<Target> targets{};
};

/// The plan by which `source` is converted to files named `stem` in `folder`: a slice and a report
/// file for an ANDI file, else an ANDI file, or for a run one for each channel with the channel's
/// number behind the stem.
Plan planFor(const std::string& source, FileKind kind, const std::filesystem::path& folder,
             const std::string& stem);

/// The report that belongs to a slice file: beside it with the extension .rpt in either case.
std::filesystem::path reportOf(const std::filesystem::path& slice);

struct StagedResult {
    bool isConverted = false;
    std::string message;     ///< the library's words on one line, with the true paths
    std::int64_t points = 0; ///< samples in all that was written
    std::int64_t peaks = 0;
};

/// Converts into the folder `stage`, which must exist. ANDI files name the plan's source as theirs.
/// A failure without words in the library's message has those of its message box. May throw a
/// filesystem_error where the staging folder can't take what it must.
StagedResult convertStaged(const Plan& plan, const std::filesystem::path& stage);

} // namespace korlit::host
