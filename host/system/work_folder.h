// A hidden folder for files on their way, beside the place where they belong.
//
// It is its process's own for as long as that lives: a lock in it, which dies with the process,
// tells whether it does. What a process that was killed has left behind is found by the next one
// that comes, whatever machine or container either runs in, as long as the file system has locks.
// The file with the lock holds a note for whoever that is.
#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

namespace korlit::host {

class WorkFolder {
  public:
    /// Makes the folder in `parent`, open to nobody else. Throws a filesystem_error where that
    /// can't be done.
    explicit WorkFolder(const std::filesystem::path& parent);
    WorkFolder(const WorkFolder&) = delete;
    WorkFolder& operator=(const WorkFolder&) = delete;
    /// Removes it with all that it holds, unless it was left or is somebody else's by now.
    ~WorkFolder();

    const std::filesystem::path& path() const { return folder; }

    /// Whether it is still where it was made. Who clears up by hand may have removed it.
    bool isInPlace() const;

    /// Removes what it holds but the lock.
    void clear() const;

    /// Leaves it to whoever comes next.
    void leave() { isLeft = true; }

    /// What the note says; nothing where it isn't whole.
    std::string note() const;
    /// Writes the note, in one go; answers the system's error. Has the disk hold it if `isSynced`.
    std::error_code write(std::string_view text, bool isSynced);
    /// Marks the note, which stays as it is. That takes no room.
    void mark();
    bool isMarked() const;
    /// Takes the note back.
    void forget();

  private:
    friend void settleAbandoned(const std::filesystem::path& parent,
                                const std::function<void(WorkFolder&)>& settle);

    WorkFolder(std::filesystem::path takenFolder, int takenLock)
        : folder{std::move(takenFolder)}, lock{takenLock} {}
    bool isMade(const std::filesystem::path& parent);

    std::filesystem::path folder;
    int lock = -1;
    bool isLeft = false;
    bool hasNote = false;
};

/// Calls `settle` with each work folder in `parent` whose process is gone, and removes it then.
/// What another user owns or may write to is neither trusted nor touched.
void settleAbandoned(const std::filesystem::path& parent,
                     const std::function<void(WorkFolder&)>& settle);

} // namespace korlit::host
