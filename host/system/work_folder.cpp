#include "host/system/work_folder.h"

#include "platform/descriptors.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>
#include <system_error>
#include <vector>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view namePrefix = ".korlit-work-";
constexpr const char* lockName = "lock";

/// What a note begins with, by which it is known to be whole, and whether it is marked.
struct NoteHead {
    std::uint64_t isMarked = 0;
    std::uint64_t length = 0;
    std::uint64_t hash = 0;

    bool fits(const NoteHead& other) const { return length == other.length && hash == other.hash; }
};

NoteHead headOf(std::string_view text) {
    // The same on every machine that shares the folder (FNV-1a).
    std::uint64_t hash = 0xCBF29CE484222325;
    for (const char character : text) {
        hash = (hash ^ static_cast<unsigned char>(character)) * 0x100000001B3;
    }
    return {.isMarked = 0, .length = text.size(), .hash = hash};
}

NoteHead readHead(int file) {
    NoteHead head{};
    readAt(file, std::as_writable_bytes(std::span{&head, 1}), sizeof head, 0);
    return head;
}

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

constexpr mode_t others = 0077;

bool isOpenToOthers(const fs::path& folder) {
    struct stat status {};
    return lstat(folder.c_str(), &status) != 0 || (status.st_mode & others) != 0;
}

/// Whether even a new folder of ours is said to be open to others: a file system without
/// permissions shows the same for everything. Whoever may write there may write to all around it.
bool knowsNoPermissions(const fs::path& parent) {
    std::string probe = (parent / (std::string{namePrefix} + "XXXXXX")).string();
    if (mkdtemp(probe.data()) == nullptr) {
        return false;
    }
    const bool isOpen = isOpenToOthers(probe);
    rmdir(probe.c_str());
    return isOpen;
}

bool isOwn(const fs::path& folder) {
    struct stat status {};
    return lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == geteuid() &&
           (!isOpenToOthers(folder) || knowsNoPermissions(folder.parent_path()));
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
    if (lock < 0) {
        const int error = errno;
        rmdir(folder.c_str());
        errno = error;
    }
    return lock >= 0;
}

WorkFolder::~WorkFolder() {
    if (!isLeft && isInPlace()) {
        removeFolder(folder);
    }
    close(lock);
}

bool WorkFolder::isInPlace() const {
    struct stat held {};
    struct stat found {};
    return fstat(lock, &held) == 0 && lstat((folder / lockName).c_str(), &found) == 0 &&
           held.st_dev == found.st_dev && held.st_ino == found.st_ino;
}

void WorkFolder::clear() const {
    removeContents(folder);
}

std::string WorkFolder::note() const {
    const NoteHead head = readHead(lock);
    if (head.length > static_cast<std::uint64_t>(lengthOf(lock))) {
        return {};
    }
    std::string text(head.length, '\0');
    readAt(lock, std::as_writable_bytes(std::span{text}), std::ssize(text), sizeof head);
    return head.fits(headOf(text)) ? text : "";
}

std::error_code WorkFolder::write(std::string_view text, bool isSynced) {
    forget();
    hasNote = true;
    const NoteHead head = headOf(text);
    std::string bytes{reinterpret_cast<const char*>(&head), sizeof head};
    bytes += text;
    const bool isWritten = writeAt(lock, std::as_bytes(std::span{bytes}), 0) == std::ssize(bytes) &&
                           (!isSynced || fdatasync(lock) == 0);
    return isWritten ? std::error_code{} : std::error_code{errno, std::generic_category()};
}

void WorkFolder::mark() {
    constexpr std::array marked{std::byte{1}};
    writeAt(lock, marked, offsetof(NoteHead, isMarked));
}

bool WorkFolder::isMarked() const {
    return readHead(lock).isMarked != 0;
}

void WorkFolder::forget() {
    constexpr std::array<std::byte, sizeof(NoteHead)> none{};
    if (hasNote) {
        hasNote = writeAt(lock, none, 0) != std::ssize(none);
    }
}

void settleAbandoned(const fs::path& parent, const std::function<void(WorkFolder&)>& settle) {
    for (const fs::path& folder : workFoldersIn(parent)) {
        // One without a lock was killed while it began or ended.
        const int lock = takeLock(folder, O_CREAT);
        if (lock >= 0) {
            WorkFolder taken{folder, lock};
            taken.hasNote = true;
            settle(taken);
        }
    }
}

} // namespace korlit::host
