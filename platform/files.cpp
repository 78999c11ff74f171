#include "platform/files.h"

#include "platform/descriptors.h"
#include "platform/faults.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstring>

namespace korlit {

namespace {

constexpr std::int64_t windowSize = 65536;
constexpr std::int64_t nowhere = -1;

struct OpenFile {
    int descriptor = -1;
    std::int64_t position = 0;
    std::int64_t windowStart = 0;
    std::int64_t windowLength = 0;
    bool isGathering = false; ///< the window holds bytes that are still to be written
    bool hasFailed = false;   ///< a write that was reported as done did not reach the file
    std::array<std::byte, windowSize> window;
};

// A conversion holds at most three files at a time. Handles are 1 and up, so that 0 can stand for
// a handle that was never opened.
std::array<OpenFile, 8> openFiles;

OpenFile* openFileOf(int handle) {
    if (handle < 1 || handle > static_cast<int>(openFiles.size())) {
        return nullptr;
    }
    OpenFile& file = openFiles[static_cast<std::size_t>(handle - 1)];
    return file.descriptor < 0 ? nullptr : &file;
}

/// Takes over the descriptor; closes it if there is no room.
int newHandle(int descriptor) {
    for (std::size_t slot = 0; slot < openFiles.size(); ++slot) {
        OpenFile& file = openFiles[slot];
        if (file.descriptor < 0) {
            file.descriptor = descriptor;
            file.position = 0;
            file.windowLength = 0;
            file.isGathering = false;
            file.hasFailed = false;
            countHeldFiles(+1);
            return static_cast<int>(slot) + 1;
        }
    }
    close(descriptor);
    return fileError;
}

std::int64_t readAt(int descriptor, std::byte* target, std::int64_t byteCount,
                    std::int64_t position) {
    return transferAll(byteCount, [&](std::int64_t done) {
        return pread(descriptor, target + done, static_cast<std::size_t>(byteCount - done),
                     position + done);
    });
}

std::int64_t writeAt(int descriptor, const std::byte* source, std::int64_t byteCount,
                     std::int64_t position) {
    return transferAll(byteCount, [&](std::int64_t done) {
        return pwrite(descriptor, source + done, static_cast<std::size_t>(byteCount - done),
                      position + done);
    });
}

std::int64_t bytesInWindow(const OpenFile& file, std::int64_t position) {
    const std::int64_t behindStart = position - file.windowStart;
    return behindStart < 0 ? 0 : std::max<std::int64_t>(0, file.windowLength - behindStart);
}

/// Takes bytes at the position from the window, as far as it holds them.
std::int64_t takeFromWindow(OpenFile& file, std::byte* target, std::int64_t byteCount) {
    const std::int64_t taken = std::min(byteCount, bytesInWindow(file, file.position));
    if (taken > 0) {
        std::memcpy(target, file.window.data() + (file.position - file.windowStart),
                    static_cast<std::size_t>(taken));
        file.position += taken;
    }
    return taken;
}

/// Writes out what the window has gathered. A failure is the file's from then on.
void flushWindow(OpenFile& file) {
    if (file.isGathering && file.windowLength > 0) {
        const std::int64_t written =
            writeAt(file.descriptor, file.window.data(), file.windowLength, file.windowStart);
        file.hasFailed = file.hasFailed || written != file.windowLength;
        file.windowLength = 0;
    }
}

/// Puts bytes at the position into the window, which may have to go out first to make room.
void gather(OpenFile& file, const std::byte* source, std::int64_t byteCount) {
    if (byteCount == 0) {
        return;
    }
    const std::int64_t start = file.position - file.windowStart;
    const bool isAdjoining = start >= 0 && start <= file.windowLength;
    if (!isAdjoining || start + byteCount > windowSize) {
        flushWindow(file);
    }
    if (file.windowLength == 0) {
        file.windowStart = file.position;
        file.isGathering = true;
    }
    const std::int64_t place = file.position - file.windowStart;
    std::memcpy(file.window.data() + place, source, static_cast<std::size_t>(byteCount));
    file.windowLength = std::max(file.windowLength, place + byteCount);
}

/// What is to be moved when `byteCount` bytes are asked for; fileError for nothing at all.
std::int64_t allowedTransfer(const OpenFile* file, std::int64_t byteCount, FaultPoint point) {
    const FaultKind fault = faultAt(point);
    if (file == nullptr || file->position == nowhere || byteCount < 0 || fault == FaultKind::Fail) {
        return fileError;
    }
    return fault == FaultKind::CutShort ? byteCount / 2 : byteCount;
}

} // namespace

int _lopen(const char* path) {
    if (faultAt(FaultPoint::Open) != FaultKind::None) {
        return fileError;
    }
    const int descriptor = openRegularFile(path);
    return descriptor < 0 ? fileError : newHandle(descriptor);
}

int _lcreat(const char* path) {
    if (faultAt(FaultPoint::Create) != FaultKind::None) {
        return fileError;
    }
    const int descriptor = openUninterrupted(path, O_WRONLY | O_CREAT | O_TRUNC);
    return descriptor < 0 ? fileError : newHandle(descriptor);
}

int _lclose(int handle) {
    OpenFile* file = openFileOf(handle);
    if (file == nullptr) {
        return fileError;
    }
    flushWindow(*file);
    // An interrupted close has released the descriptor all the same and must not be repeated.
    const bool isClosed = (close(file->descriptor) == 0 || errno == EINTR) && !file->hasFailed;
    file->descriptor = -1;
    countHeldFiles(-1);
    return isClosed && faultAt(FaultPoint::Close) == FaultKind::None ? 0 : fileError;
}

std::int64_t _hread(int handle, void* target, std::int64_t byteCount) {
    OpenFile* file = openFileOf(handle);
    const std::int64_t wanted = allowedTransfer(file, byteCount, FaultPoint::Read);
    if (wanted < 0) {
        return fileError;
    }
    auto* bytes = static_cast<std::byte*>(target);
    std::int64_t done = takeFromWindow(*file, bytes, wanted);
    const std::int64_t left = wanted - done;
    if (left >= windowSize) {
        const std::int64_t moved = readAt(file->descriptor, bytes + done, left, file->position);
        file->position += moved;
        done += moved;
    } else if (left > 0) {
        file->windowStart = file->position;
        file->windowLength =
            readAt(file->descriptor, file->window.data(), windowSize, file->position);
        done += takeFromWindow(*file, bytes + done, left);
    }
    return done;
}

std::int64_t _hwrite(int handle, const void* source, std::int64_t byteCount) {
    OpenFile* file = openFileOf(handle);
    const std::int64_t wanted = allowedTransfer(file, byteCount, FaultPoint::Write);
    if (wanted < 0) {
        return fileError;
    }
    const auto* bytes = static_cast<const std::byte*>(source);
    std::int64_t done = wanted;
    if (wanted < windowSize) {
        gather(*file, bytes, wanted);
    } else {
        flushWindow(*file);
        done = file->hasFailed ? 0 : writeAt(file->descriptor, bytes, wanted, file->position);
    }
    file->position += done;
    return file->hasFailed ? 0 : done;
}

std::int64_t _llseek(int handle, std::int64_t offset, SeekOrigin origin) {
    OpenFile* file = openFileOf(handle);
    if (file == nullptr) {
        return fileError;
    }
    const bool hasFailed = faultAt(FaultPoint::Seek) != FaultKind::None ||
                           (origin == SeekOrigin::Current && file->position == nowhere);
    std::int64_t place = origin == SeekOrigin::Start ? 0 : file->position;
    if (hasFailed || __builtin_add_overflow(place, offset, &place) || place < 0) {
        file->position = nowhere;
        return fileError;
    }
    file->position = place;
    return place;
}

} // namespace korlit
