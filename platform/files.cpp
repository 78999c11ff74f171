#include "platform/files.h"

#include "platform/descriptors.h"
#include "platform/faults.h"
#include "platform/file_windows.h"

#include <array>
#include <cstddef>
#include <limits>
#include <span>

namespace korlit {

namespace {

constexpr std::int64_t nowhere = -1;

struct OpenFile {
    int descriptor = noDescriptor;
    bool isWritten = false;
    bool hasFailed = false; ///< a write that was reported as done did not reach the file
    std::int64_t position = 0;
    FileWindows windows;
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

/// Takes over the descriptor, if there is one; closes it if there is no room.
int newHandle(int descriptor, bool isWritten) {
    if (descriptor < 0) {
        return fileError;
    }
    for (std::size_t slot = 0; slot < openFiles.size(); ++slot) {
        OpenFile& file = openFiles[slot];
        if (file.descriptor < 0) {
            file.descriptor = descriptor;
            file.isWritten = isWritten;
            file.hasFailed = false;
            file.position = 0;
            file.windows.clear();
            countHeldFiles(+1);
            return static_cast<int>(slot) + 1;
        }
    }
    closeDescriptor(descriptor);
    return fileError;
}

/// Reads what the windows don't hold: straight to the target, or by way of a window.
std::int64_t readBehind(OpenFile& file, std::span<std::byte> target, std::int64_t place) {
    const std::int64_t byteCount = std::ssize(target);
    if (byteCount >= FileWindows::size) {
        return readAt(file.descriptor, target, byteCount, place).moved;
    }
    const std::span<std::byte> room = file.windows.renew(place);
    file.windows.hold(readAt(file.descriptor, room, byteCount, place).moved);
    return file.windows.take(place, target);
}

/// Writes out what was gathered. A failure is the file's from then on, and the end of its writing.
void writeOut(OpenFile& file, const Stretches& stretches) {
    for (const auto& [place, bytes] : stretches) {
        if (!bytes.empty() && !file.hasFailed) {
            file.hasFailed = writeAt(file.descriptor, bytes, place) != std::ssize(bytes);
        }
    }
}

/// No bytes are in reach from anywhere.
bool isInReach(const OpenFile& file, std::int64_t byteCount) {
    const bool isSomewhere = file.position != nowhere && byteCount > 0;
    return byteCount == 0 ||
           (isSomewhere && byteCount <= std::numeric_limits<std::int64_t>::max() - file.position);
}

/// What is to be moved when `byteCount` bytes are asked for; fileError for nothing at all.
std::int64_t allowedTransfer(const OpenFile* file, std::int64_t byteCount, FaultPoint point) {
    const FaultKind fault = faultAt(point);
    if (file == nullptr || file->isWritten != (point == FaultPoint::Write) ||
        !isInReach(*file, byteCount) || fault == FaultKind::Fail) {
        return fileError;
    }
    return fault == FaultKind::CutShort ? byteCount / 2 : byteCount;
}

} // namespace

int _lopen(const char* path) {
    if (faultAt(FaultPoint::Open) != FaultKind::None) {
        return fileError;
    }
    return newHandle(openRegularFile(path), false);
}

int _lcreat(const char* path) {
    if (faultAt(FaultPoint::Create) != FaultKind::None) {
        return fileError;
    }
    return newHandle(createFile(path), true);
}

int _lflush(int handle) {
    OpenFile* file = openFileOf(handle);
    if (file == nullptr || !file->isWritten) {
        return fileError;
    }
    writeOut(*file, file->windows.giveAll());
    return file->hasFailed ? fileError : 0;
}

int _lclose(int handle) {
    OpenFile* file = openFileOf(handle);
    if (file == nullptr) {
        return fileError;
    }
    _lflush(handle);
    const bool isClosed = closeDescriptor(file->descriptor) && !file->hasFailed;
    file->descriptor = noDescriptor;
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
    const std::span bytes{static_cast<std::byte*>(target), static_cast<std::size_t>(wanted)};
    std::int64_t done = file->windows.take(file->position, bytes);
    if (done < wanted) {
        done +=
            readBehind(*file, bytes.subspan(static_cast<std::size_t>(done)), file->position + done);
    }
    file->position += done;
    return done;
}

std::int64_t _hwrite(int handle, const void* source, std::int64_t byteCount) {
    OpenFile* file = openFileOf(handle);
    const std::int64_t wanted = allowedTransfer(file, byteCount, FaultPoint::Write);
    if (wanted < 0) {
        return fileError;
    }
    const std::span bytes{static_cast<const std::byte*>(source), static_cast<std::size_t>(wanted)};
    std::int64_t done = wanted;
    if (wanted >= FileWindows::size) {
        writeOut(*file, file->windows.giveAll());
        done = file->hasFailed ? 0 : writeAt(file->descriptor, bytes, file->position);
        file->hasFailed = done < wanted;
    } else if (wanted > 0) {
        writeOut(*file, file->windows.makeRoom(file->position, wanted));
        file->windows.gather(file->position, bytes);
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
