// A hidden folder for files on their way, beside the place where they belong.
//
// It is its process's own for as long as that lives: a lock in it, which dies with the process,
// tells whether it does. What a process that was killed has left behind is found by the next one
// that comes, whatever machine or container either runs in, as long as the file system has locks.
#pragma once

#include <filesystem>
#include <functional>

namespace korlit::host {

class WorkFolder {
  public:
    /// Makes the folder in `parent`, open to nobody else. Throws a filesystem_error where that
    /// can't be done.
    explicit WorkFolder(const std::filesystem::path& parent);
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    /// Removes it with all that it holds.
    ~WorkFolder();

    const std::filesystem::path& path() const { return folder; }

    /// Removes what it holds: `first` ahead of all else, and never the lock.
    void clear(const char* first) const;

  private:
    bool isMade(const std::filesystem::path& parent);

    std::filesystem::path folder;
    int lock = -1;
};

/// Calls `settle` with each work folder in `parent` whose process is gone, and removes it then.
/// What another user owns or may write to is neither trusted nor touched.
void settleAbandoned(const std::filesystem::path& parent,
                     const std::function<void(const std::filesystem::path&)>& settle);

} // namespace korlit::host
