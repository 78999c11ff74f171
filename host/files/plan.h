// What a conversion makes of what.
#pragma once

#include "host/files/formats.h"

#include <filesystem>
#include <string>
#include <vector>

namespace korlit::host {

/// A file of a conversion: under which name in the staging folder, and where it belongs.
struct StagedFile {
    std::string stagedName;
    std::filesystem::path path;
};

/// What is to be converted to what.
struct Plan {
    std::string source;
    FileKind kind = FileKind::Unknown;
    std::vector<StagedFile> sources{};
    std::vector<StagedFile> targets{};
};

/// The plan by which `source` is converted to files named `stem` in `folder`: a slice and a report
/// file for an ANDI file, else an ANDI file, or for a run one for each channel with the channel's
/// number behind the stem.
Plan planFor(const std::string& source, FileKind kind, const std::filesystem::path& folder,
             const std::string& stem);

/// The same for a source whose channels have been counted.
Plan planFor(const std::string& source, FileKind kind, int channelCount,
             const std::filesystem::path& folder, const std::string& stem);

} // namespace korlit::host
