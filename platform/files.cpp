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
#include <limits>

namespace korlit {

namespace {

constexpr std::int64_t windowSize = 65536;
constexpr std::int64_t nowhere = -1;

/// A stretch of the file in memory: bytes that were read, or that are still to be written.
struct Window {
    std::int64_t start = 0;
    std::int64_t length = 0;
    std::array<std::byte, windowSize> bytes;

    std::int64_t end() const { return start + length; }
};

struct OpenFile {
    int descriptor = -1;
    bool isWritten = false;
    bool hasFailed = false; ///< a write that was reported as done did not reach the file
    std::int64_t position = 0;
    std::size_t latest = 0; ///< the window that was used last
    // A header and the data far behind it are read, and written, by turns.
    std::array<Window, 2> windows;
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
int newHandle(int descriptor, bool isWritten) {
    for (std::size_t slot = 0; slot < openFiles.size(); ++slot) {
        OpenFile& file = openFiles[slot];
        if (file.descriptor < 0) {
            file.descriptor = descriptor;
            file.isWritten = isWritten;
            file.hasFailed = false;
            file.position = 0;
            for (Window& window : file.windows) {
                window.length = 0;
            }
            countHeldFiles(+1);
            return static_cast<int>(slot) + 1;
        }
    }
    close(descriptor);
    return fileError;
}

/// Reads `byteCount` bytes and as many of the `room` as come along with them.
std::int64_t readAt(int descriptor, std::byte* target, std::int64_t byteCount, std::int64_t room,
                    std::int64_t position) {
    return transferAll(byteCount, [&](std::int64_t done) {
        return pread(descriptor, target + done, static_cast<std::size_t>(room - done),
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

Window& useOlderWindow(OpenFile& file) {
    file.latest = 1 - file.latest;
    return file.windows[file.latest];
}

/// Takes bytes at the position from the latest window, as far as it holds them.
std::int64_t takeFromLatest(OpenFile& file, std::byte* target, std::int64_t byteCount) {
    const Window& window = file.windows[file.latest];
    const std::int64_t taken = std::min(byteCount, window.end() - file.position);
    if (file.position < window.start || taken <= 0) {
        return 0;
    }
    std::memcpy(target, window.bytes.data() + (file.position - window.start),
                static_cast<std::size_t>(taken));
    file.position += taken;
    return taken;
}

/// Reads what the windows don't hold: straight to the target, or by way of the latest window.
std::int64_t readBehind(OpenFile& file, std::byte* target, std::int64_t byteCount) {
    if (byteCount >= windowSize) {
        const std::int64_t moved =
            readAt(file.descriptor, target, byteCount, byteCount, file.position);
        file.position += moved;
        return moved;
    }
    Window& window = file.windows[file.latest];
    window.start = file.position;
    window.length =
        readAt(file.descriptor, window.bytes.data(), byteCount, windowSize, file.position);
    return takeFromLatest(file, target, byteCount);
}

/// Writes out what the window has gathered. A failure is the file's from then on.
void flush(OpenFile& file, Window& window) {
    if (window.length > 0) {
        const std::int64_t written =
            writeAt(file.descriptor, window.bytes.data(), window.length, window.start);
        file.hasFailed = file.hasFailed || written != window.length;
        window.length = 0;
    }
}

/// Writes out what would later go over `byteCount` bytes at the position, but for `target`.
void flushOverlaps(OpenFile& file, std::int64_t byteCount, const Window* target = nullptr) {
    for (Window& window : file.windows) {
        const bool isOverlapping =
            window.start < file.position + byteCount && file.position < window.end();
        if (isOverlapping && &window != target) {
            flush(file, window);
        }
    }
}

/// The window that can take `byteCount` bytes at the position: one that they adjoin, or else the
/// older one, emptied. One that is full goes out on the way, so that a loss is told early.
Window& windowFor(OpenFile& file, std::int64_t byteCount) {
    for (const std::size_t each : {file.latest, 1 - file.latest}) {
        const Window& window = file.windows[each];
        if (window.start <= file.position && file.position <= window.end() &&
            file.position + byteCount <= window.start + windowSize && window.length > 0) {
            file.latest = each;
            return file.windows[each];
        }
    }
    Window& latest = file.windows[file.latest];
    Window& older = useOlderWindow(file);
    if (latest.length == windowSize) {
        flush(file, latest);
    }
    flush(file, older);
    older.start = file.position;
    return older;
}

/// Puts bytes at the position into a window.
void gather(OpenFile& file, const std::byte* source, std::int64_t byteCount) {
    if (byteCount == 0) {
        return;
    }
    Window& window = windowFor(file, byteCount);
    flushOverlaps(file, byteCount, &window);
    const std::int64_t place = file.position - window.start;
    std::memcpy(window.bytes.data() + place, source, static_cast<std::size_t>(byteCount));
    window.length = std::max(window.length, place + byteCount);
}

/// What is to be moved when `byteCount` bytes are asked for; fileError for nothing at all.
std::int64_t allowedTransfer(const OpenFile* file, std::int64_t byteCount, FaultPoint point) {
    const FaultKind fault = faultAt(point);
    if (file == nullptr || file->isWritten != (point == FaultPoint::Write) ||
        file->position == nowhere || byteCount < 0 ||
        byteCount > std::numeric_limits<std::int64_t>::max() - file->position ||
        fault == FaultKind::Fail) {
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
    return descriptor < 0 ? fileError : newHandle(descriptor, false);
}

int _lcreat(const char* path) {
    if (faultAt(FaultPoint::Create) != FaultKind::None) {
        return fileError;
    }
    const int descriptor = openUninterrupted(path, O_WRONLY | O_CREAT | O_TRUNC);
    return descriptor < 0 ? fileError : newHandle(descriptor, true);
}

int _lclose(int handle) {
    OpenFile* file = openFileOf(handle);
    if (file == nullptr) {
        return fileError;
    }
    for (Window& window : file->windows) {
        if (file->isWritten) {
            flush(*file, window);
        }
    }
    // An interrupted close has released the descriptor all the same and must not be repeated.
    const bool isClosed = (close(file->descriptor) == 0 || errno == EINTR) && !file->hasFailed;
    file->descriptor = -1;
    countHeldFiles(-1);
    return isClosed && faultAt(FaultPoint::Close) == FaultKind::None ? 0 : fileError;
}

std::int64_t _filelength(int handle) {
    const OpenFile* file = openFileOf(handle);
    return file == nullptr ? fileError : lengthOf(file->descriptor);
}

std::int64_t _hread(int handle, void* target, std::int64_t byteCount) {
    OpenFile* file = openFileOf(handle);
    const std::int64_t wanted = allowedTransfer(file, byteCount, FaultPoint::Read);
    if (wanted < 0) {
        return fileError;
    }
    auto* bytes = static_cast<std::byte*>(target);
    std::int64_t done = takeFromLatest(*file, bytes, wanted);
    if (done < wanted) {
        useOlderWindow(*file);
        done += takeFromLatest(*file, bytes + done, wanted - done);
    }
    return done < wanted ? done + readBehind(*file, bytes + done, wanted - done) : done;
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
        flushOverlaps(*file, wanted);
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
