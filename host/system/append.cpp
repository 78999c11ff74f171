#include "host/system/append.h"

#include "platform/descriptors.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

namespace korlit::host {

namespace {

class Descriptor {
  public:
    Descriptor(const std::filesystem::path& file, int flags)
        : number{openUninterrupted(file.c_str(), flags | O_CLOEXEC)} {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number >= 0) {
            close(number);
        }
    }

    const int number;
};

std::error_code lastError() {
    return {errno, std::generic_category()};
}

/// Fills `part` from a place on, at the end of the file with less.
bool readPart(const Descriptor& source, std::int64_t place, std::vector<char>& part) {
    errno = 0;
    const std::int64_t length = transferAll(std::ssize(part), [&](std::int64_t done) {
        return pread(source.number, part.data() + done,
                     part.size() - static_cast<std::size_t>(done), place + done);
    });
    part.resize(static_cast<std::size_t>(length));
    return errno == 0 || errno == EINTR;
}

bool writePart(const Descriptor& target, const std::vector<char>& part) {
    return transferAll(std::ssize(part), [&](std::int64_t done) {
               return write(target.number, part.data() + done,
                            part.size() - static_cast<std::size_t>(done));
           }) == std::ssize(part);
}

} // namespace

std::error_code appendFrom(const std::filesystem::path& source, std::int64_t place,
                           const std::filesystem::path& target) {
    constexpr std::size_t partSize = 1024 * 1024;
    const Descriptor from{source, O_RDONLY};
    const Descriptor to{target, O_WRONLY | O_APPEND};
    if (from.number < 0 || to.number < 0) {
        return lastError();
    }
    std::vector<char> part(partSize);
    while (part.size() == partSize) {
        if (!readPart(from, place, part) || !writePart(to, part)) {
            return lastError();
        }
        place += std::ssize(part);
    }
    return {};
}

} // namespace korlit::host
