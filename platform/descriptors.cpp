#include "platform/descriptors.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>

namespace korlit {

namespace {

struct ProtectedFile {
    int descriptor = noDescriptor;
};

// A conversion holds one at a time.
std::array<ProtectedFile, 8> protectedFiles;

/// The place of a descriptor, or of noDescriptor for one that is free; null if there is none.
ProtectedFile* placeOf(int descriptor) {
    auto* place = std::ranges::find(protectedFiles, descriptor, &ProtectedFile::descriptor);
    return place == protectedFiles.end() ? nullptr : place;
}

/// A file has many names, but one number on its device.
bool isProtected(const struct stat& file) {
    return std::ranges::any_of(protectedFiles, [&](const ProtectedFile& each) {
        struct stat other {};
        return each.descriptor >= 0 && fstat(each.descriptor, &other) == 0 &&
               other.st_dev == file.st_dev && other.st_ino == file.st_ino;
    });
}

/// Takes all bytes from a file, unless it is protected. Answers whether it has none.
bool clearFile(int descriptor) {
    struct stat status {};
    if (fstat(descriptor, &status) != 0 || isProtected(status)) {
        return false;
    }
    int result = 0;
    if (S_ISREG(status.st_mode) && status.st_size > 0) {
        do {
            result = ftruncate(descriptor, 0);
        } while (result != 0 && errno == EINTR);
    }
    return result == 0;
}

} // namespace

int openUninterrupted(const char* path, int flags) {
    constexpr mode_t newFileMode = 0666;
    int descriptor = noDescriptor;
    do {
        // O_NONBLOCK: opening a pipe that nobody serves fails or returns instead of waiting.
        descriptor = open(path, flags | O_CLOEXEC | O_NONBLOCK, newFileMode);
    } while (descriptor < 0 && errno == EINTR);
    return descriptor;
}

int openRegularFile(const char* path) {
    const int descriptor = openUninterrupted(path, O_RDONLY);
    struct stat status {};
    if (descriptor >= 0 && (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))) {
        close(descriptor);
        return noDescriptor;
    }
    return descriptor;
}

int openProtected(const char* path) {
    ProtectedFile* place = placeOf(noDescriptor);
    return place == nullptr ? noDescriptor : place->descriptor = openRegularFile(path);
}

void closeProtected(int descriptor) {
    if (ProtectedFile* place = placeOf(descriptor)) {
        place->descriptor = noDescriptor;
    }
    closeDescriptor(descriptor);
}

int createFile(const char* path) {
    const int descriptor = openUninterrupted(path, O_WRONLY | O_CREAT);
    if (descriptor >= 0 && !clearFile(descriptor)) {
        closeDescriptor(descriptor);
        return noDescriptor;
    }
    return descriptor;
}

bool closeDescriptor(int descriptor) {
    // An interrupted close has released the descriptor all the same and must not be repeated.
    return close(descriptor) == 0 || errno == EINTR;
}

std::int64_t lengthOf(int descriptor) {
    struct stat status {};
    return fstat(descriptor, &status) == 0 ? std::int64_t{status.st_size} : -1;
}

namespace {

/// Most of what one call of the system is asked to move. For a huge write the system first looks
/// for huge pages to keep it in, which can take several times as long as the write itself.
std::size_t partOf(std::size_t byteCount) {
    constexpr std::size_t most = 2UL * 1024 * 1024;
    return std::min(byteCount, most);
}

} // namespace

Transfer readAt(int descriptor, std::span<std::byte> target, std::int64_t byteCount,
                std::int64_t place) {
    bool hasFailed = false;
    const std::int64_t moved = transferAll(byteCount, [&](std::int64_t done) {
        const std::span<std::byte> left = target.subspan(static_cast<std::size_t>(done));
        const ssize_t count = pread(descriptor, left.data(), partOf(left.size()), place + done);
        hasFailed = count < 0 && errno != EINTR;
        return count;
    });
    return {.moved = moved, .hasFailed = hasFailed};
}

std::int64_t writeAt(int descriptor, std::span<const std::byte> source, std::int64_t place) {
    return transferAll(std::ssize(source), [&](std::int64_t done) {
        const std::span<const std::byte> left = source.subspan(static_cast<std::size_t>(done));
        return pwrite(descriptor, left.data(), partOf(left.size()), place + done);
    });
}

} // namespace korlit
