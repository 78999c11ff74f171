#include "host/system/append.h"

#include "platform/descriptors.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstddef>
#include <span>
#include <vector>

namespace korlit::host {

namespace {

struct Descriptor {
    explicit Descriptor(int opened) : number{opened} {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number >= 0) {
            closeDescriptor(number);
        }
    }

    const int number;
};

std::error_code lastError() {
    return {errno, std::generic_category()};
}

} // namespace

std::error_code appendFrom(const std::filesystem::path& source, std::int64_t place,
                           const std::filesystem::path& target) {
    constexpr std::int64_t partSize = 1024L * 1024;
    const Descriptor from{openRegularFile(source.c_str())};
    const Descriptor to{open(target.c_str(), O_WRONLY | O_CLOEXEC)};
    if (from.number < 0 || to.number < 0) {
        return lastError();
    }
    std::vector<std::byte> part(partSize);
    std::int64_t end = lengthOf(to.number);
    while (true) {
        const auto [length, hasFailed] = readAt(from.number, part, partSize, place);
        const std::span read{part.data(), static_cast<std::size_t>(length)};
        if (hasFailed || writeAt(to.number, read, end) != length) {
            return lastError();
        }
        if (length < partSize) {
            return {};
        }
        place += length;
        end += length;
    }
}

} // namespace korlit::host
