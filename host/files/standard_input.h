// Standard input, where a command takes files by their names.
#pragma once

#include "host/system/temporary_folder.h"

#include <filesystem>
#include <string>

namespace korlit::host {

/// The word that stands for it among the names of files.
constexpr const char* standardInputWord = "-";

/// What people call the file of that name.
std::string shownName(const std::string& file);

/// A file with all that standard input holds, for as long as this lives.
class StandardInputCopy {
  public:
    /// Throws a runtime_error where it can't be read or kept.
    StandardInputCopy();

    std::string path() const { return (folder.path() / "standard input").string(); }
    /// Words about the copy as words about what it is a copy of.
    std::string withoutCopy(std::string words) const;

  private:
    TemporaryFolder folder;
};

} // namespace korlit::host
