#include "platform/file_windows.h"

#include <algorithm>
#include <cstring>

namespace korlit {

/// Whether bytes at a place can be gathered here without a gap, and fit.
bool FileWindows::Window::adjoins(std::int64_t place, std::int64_t byteCount) const {
    return length > 0 && start <= place && place <= end() && place + byteCount <= start + size;
}

bool FileWindows::Window::overlaps(std::int64_t place, std::int64_t byteCount) const {
    return start < place + byteCount && place < end();
}

Stretch FileWindows::Window::give() {
    const auto byteCount = static_cast<std::size_t>(length);
    length = 0;
    return {.place = start, .bytes = std::span{bytes}.first(byteCount)};
}

void FileWindows::clear() {
    for (Window& window : windows) {
        window.length = 0;
    }
}

std::int64_t FileWindows::takeFromLatest(std::int64_t place, std::span<std::byte> target) {
    const Window& window = latestWindow();
    const std::int64_t taken = std::min(std::ssize(target), window.end() - place);
    if (place < window.start || taken <= 0) {
        return 0;
    }
    std::memcpy(target.data(), window.bytes.data() + (place - window.start),
                static_cast<std::size_t>(taken));
    return taken;
}

std::int64_t FileWindows::take(std::int64_t place, std::span<std::byte> target) {
    const std::int64_t taken = takeFromLatest(place, target);
    if (taken == std::ssize(target)) {
        return taken;
    }
    latest = 1 - latest;
    return taken + takeFromLatest(place + taken, target.subspan(static_cast<std::size_t>(taken)));
}

std::span<std::byte> FileWindows::renew(std::int64_t place) {
    Window& window = latestWindow();
    window.start = place;
    window.length = 0;
    return window.bytes;
}

void FileWindows::hold(std::int64_t byteCount) {
    latestWindow().length = byteCount;
}

Stretches FileWindows::makeRoom(std::int64_t place, std::int64_t byteCount) {
    Stretches due;
    if (otherWindow().adjoins(place, byteCount) && !latestWindow().adjoins(place, byteCount)) {
        latest = 1 - latest;
    } else if (!latestWindow().adjoins(place, byteCount)) {
        latest = 1 - latest;
        due[0] = latestWindow().give();
        latestWindow().start = place;
    }
    // One that is full goes out on the way, so that a loss is told early.
    Window& other = otherWindow();
    if (other.length == size || other.overlaps(place, byteCount)) {
        due[1] = other.give();
    }
    return due;
}

void FileWindows::gather(std::int64_t place, std::span<const std::byte> source) {
    Window& window = latestWindow();
    const std::int64_t offset = place - window.start;
    std::memcpy(window.bytes.data() + offset, source.data(), source.size());
    window.length = std::max(window.length, offset + std::ssize(source));
}

Stretches FileWindows::giveAll() {
    return {otherWindow().give(), latestWindow().give()};
}

} // namespace korlit
