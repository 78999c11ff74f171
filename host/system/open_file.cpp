#include "host/system/open_file.h"

#include "platform/descriptors.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <vector>

namespace korlit::host {

OpenFile::OpenFile(const std::filesystem::path& filePath, Use use)
    : path{filePath}, descriptor{
                          openUninterrupted(path.c_str(), use == Use::Read ? O_RDONLY : O_RDWR)} {
    if (descriptor < 0) {
        fail();
    }
}

OpenFile::~OpenFile() {
    closeDescriptor(descriptor);
}

void OpenFile::fail() const {
    throw std::filesystem::filesystem_error{"Can't use", path,
                                            std::error_code{errno, std::generic_category()}};
}

std::int64_t OpenFile::size() const {
    const std::int64_t length = lengthOf(descriptor);
    if (length < 0) {
        fail();
    }
    return length;
}

std::int64_t OpenFile::read(std::int64_t place, std::span<std::byte> target) const {
    const auto [moved, hasFailed] = readAt(descriptor, target, std::ssize(target), place);
    if (hasFailed) {
        fail();
    }
    return moved;
}

void OpenFile::write(std::int64_t place, std::span<const std::byte> bytes) const {
    if (writeAt(descriptor, bytes, place) != std::ssize(bytes)) {
        fail();
    }
}

void OpenFile::moveRest(std::int64_t place, std::int64_t distance) const {
    constexpr std::int64_t most = 1024L * 1024;
    const std::int64_t end = size();
    std::vector<std::byte> part(
        static_cast<std::size_t>(std::clamp<std::int64_t>(end - place, 0, most)));
    // What moves towards the end begins there, so that no part is written over another.
    for (std::int64_t done = 0; done < end - place;) {
        const std::int64_t length = std::min(std::ssize(part), end - place - done);
        const std::int64_t from = distance > 0 ? end - done - length : place + done;
        const std::span bytes = std::span{part}.first(static_cast<std::size_t>(length));
        if (read(from, bytes) != length) {
            fail();
        }
        write(from + distance, bytes);
        done += length;
    }
    if (ftruncate(descriptor, end + distance) != 0) {
        fail();
    }
}

} // namespace korlit::host
