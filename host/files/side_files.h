// The files that commands write beside the data that they read and make: charts, pages, manifests.
#pragma once

#include "host/system/file_identity.h"

#include <cstddef>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace korlit::host {

/// Files that are to be written, none of which may take the place of data or of each other. By
/// whatever names and links lead to a file, it is that file.
class SideFiles {
  public:
    /// Takes up one more, where `kind` says what it would be, as in "chart". Answers why it may not
    /// be written: it is no regular file, holds data or has the name of data, or is one of these
    /// already. The empty text where it may.
    std::string add(const std::filesystem::path& file, const std::string& kind);

    /// Which of them is at the place of a file that is read or made besides, from 0 in the order in
    /// which they were taken up; nothing where none is.
    std::optional<std::size_t> at(const std::filesystem::path& file) const;

    /// What it would be.
    const std::string& kindOf(std::size_t number) const { return kinds[number]; }
    bool empty() const { return kinds.empty(); }

  private:
    std::vector<std::string> kinds;
    std::map<FileIdentity, std::size_t> present;
    std::map<FilePlace, std::size_t> places;
};

} // namespace korlit::host
