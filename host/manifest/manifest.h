// The manifest of batches: a file of lines, to which each batch appends what it did.
#pragma once

#include "host/manifest/record.h"

#include <cstddef>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace korlit::host {

/// What one or several manifests hold.
struct Manifest {
    std::vector<BatchRecord> batches;
    std::vector<FileRecord> files;     ///< in the order in which they were recorded, by their times
    std::vector<std::string> problems; ///< of lines that hold no record, in words
};

/// Adds a record.
void add(Manifest& manifest, ManifestRecord record);

/// How many records of files there are of each batch.
std::map<std::string, std::size_t> recordCounts(const Manifest& manifest);

/// In words, which batches have fewer records than files.
std::vector<std::string> unfinishedBatches(const Manifest& manifest);

/// What a command does with a manifest.
struct ManifestUse {
    std::string command;
    std::function<int(const Manifest&)> use;
    /// Leaves out of each record what the command has no use for; none where it needs all.
    void (*drop)(FileRecord&) = nullptr;
};

/// Reads manifests, in whatever order they are named, and answers what the command does with them.
/// Tells on standard error of lines that hold no record, and answers 2 where a manifest can't be
/// read or holds none.
int withManifests(const std::vector<std::string>& paths, const ManifestUse& wanted);

/// Why lines shouldn't be appended to what is there under a name: it holds something else. The
/// empty text where they may be.
std::string manifestProblem(const std::filesystem::path& file);

} // namespace korlit::host
