// A folder of one's own for files on their way.
#pragma once

#include <filesystem>
#include <string>

namespace korlit::host {

class TemporaryFolder {
  public:
    /// Makes one where temporary files belong: where $TMPDIR says, or in /tmp if that isn't there.
    TemporaryFolder();
    /// Makes a new folder in `parent`, open to nobody else, whose name starts with `prefix`. Throws
    /// a filesystem_error where that can't be done.
    explicit TemporaryFolder(const std::filesystem::path& parent,
                             const std::string& prefix = ".korlit-");
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;
    /// Removes it with all that it holds.
    ~TemporaryFolder();

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

} // namespace korlit::host
