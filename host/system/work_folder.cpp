#include "host/system/work_folder.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string_view>
#include <system_error>
#include <vector>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view namePrefix = ".korlit-work-";
constexpr const char* lockName = "lock";

/// The lock of a folder, taken; -1 where another process has it or there is none to take.
int takeLock(const fs::path& folder, int flags) {
    constexpr mode_t ownersOnly = 0600;
    const int lock =
        open((folder / lockName).c_str(), flags | O_RDWR | O_CLOEXEC | O_NOFOLLOW, ownersOnly);
    struct stat status {};
    // Whoever held it before may have removed the folder together with this very file.
    if (lock >= 0 && (flock(lock, LOCK_EX | LOCK_NB) != 0 || fstat(lock, &status) != 0 ||
                      status.st_nlink == 0)) {
        close(lock);
        return -1;
    }
    return lock;
}

bool isOwn(const fs::path& folder) {
    constexpr mode_t others = 0077;
    struct stat status {};
    return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == geteuid() && (status.st_mode & others) == 0;
}

std::vector<fs::path> workFoldersIn(const fs::path& parent) {
    std::vector<fs::path> found;
    std::error_code error;
    for (auto entry = fs::directory_iterator{parent, error}; !error && entry != fs::end(entry);
         entry.increment(error)) {
        if (entry->path().filename().string().starts_with(namePrefix) && isOwn(entry->path())) {
            found.push_back(entry->path());
        }
    }
    return found;
}

/// Removes what a folder holds, and the lock last: who finds a folder without one may take it.
void removeContents(const fs::path& folder) {
    std::error_code ignored;
    for (const auto& entry : fs::directory_iterator{folder, ignored}) {
        if (entry.path().filename() != lockName) {
            fs::remove_all(entry.path(), ignored);
        }
    }
}

void removeFolder(const fs::path& folder) {
    std::error_code ignored;
    removeContents(folder);
    fs::remove(folder / lockName, ignored);
    fs::remove(folder, ignored);
}

} // namespace

WorkFolder::WorkFolder(const fs::path& parent) {
    constexpr int mostAttempts = 100;
    for (int attempt = 0; attempt < mostAttempts; ++attempt) {
        if (isMade(parent)) {
            return;
        }
    }
    throw fs::filesystem_error{"no folder for files on their way", parent,
                               std::error_code{errno, std::generic_category()}};
}

/// One attempt. A process that clears up may take the folder for abandoned until the lock is held,
/// and has then removed it: the next attempt will do.
bool WorkFolder::isMade(const fs::path& parent) {
    std::string pattern = (parent / (std::string{namePrefix} + "XXXXXX")).string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw fs::filesystem_error{"no folder for files on their way", parent,
                                   std::error_code{errno, std::generic_category()}};
    }
    folder = pattern;
    lock = takeLock(folder, O_CREAT | O_EXCL);
    return lock >= 0;
}

WorkFolder::~WorkFolder() {
    removeFolder(folder);
    close(lock);
}

void WorkFolder::clear(const char* first) const {
    std::error_code ignored;
    fs::remove(folder / first, ignored);
    removeContents(folder);
}

void settleAbandoned(const fs::path& parent, const std::function<void(const fs::path&)>& settle) {
    for (const fs::path& folder : workFoldersIn(parent)) {
        // One without a lock was killed while it began or ended.
        const int lock = takeLock(folder, O_CREAT);
        if (lock >= 0) {
            settle(folder);
            removeFolder(folder);
            close(lock);
        }
    }
}

} // namespace korlit::host
