// Which files of two folders belong to each other, by their names.
#pragma once

#include "host/files/listing.h"

#include <filesystem>
#include <string>
#include <vector>

namespace korlit::host {

/// A file that is to be compared.
struct PlacedFile {
    std::string path;
    std::filesystem::path place; ///< below its folder; of a file that was named the name
    FileKind kind = FileKind::Unknown;
    int channelCount = 1;
    std::string problem; ///< why it can't be read; empty if that is still to be seen
};

/// Two that belong to each other, or one that has no partner.
struct FilePair {
    const PlacedFile* a = nullptr;
    const PlacedFile* b = nullptr;
    int channel = 0; ///< of a run, the one that belongs to the other file; 0 where names don't tell
};

std::vector<PlacedFile> placedFiles(const std::string& root, const Listing& listing);

/// Pairs each file at most once; a run with as many files as it has channels. First come those with
/// the same place and name, then runs with the files of their channels, then those that have the
/// same name but for its extension. Sorted by place; the files must outlive the pairs.
std::vector<FilePair> pairsOf(const std::vector<PlacedFile>& a, const std::vector<PlacedFile>& b);

} // namespace korlit::host
