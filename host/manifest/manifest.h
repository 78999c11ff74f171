// The manifest of batches: a file of lines, to which each batch appends what it did.
#pragma once

#include "host/manifest/record.h"

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace korlit::host {

/// What one or several manifests hold.
struct Manifest {
    std::vector<BatchRecord> batches;
    std::vector<FileRecord> files;     ///< in the order in which they were recorded
    std::vector<std::string> problems; ///< of lines that hold no record, in words
};

/// Adds a record.
void add(Manifest& manifest, ManifestRecord record);

/// Reads manifests one after the other for a command and answers what `use` does. Tells on standard
/// error of lines that hold no record, and answers 2 where a manifest can't be read or holds none.
int withManifests(const std::string& command, const std::vector<std::string>& paths,
                  const std::function<int(const Manifest&)>& use);

/// Why lines shouldn't be appended to what is there under a name: it holds something else. The
/// empty text where they may be.
std::string manifestProblem(const std::filesystem::path& file);

} // namespace korlit::host
