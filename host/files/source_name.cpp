#include "host/files/source_name.h"

#include "andi/andi_file.h"
#include "andi/byte_order.h"
#include "host/system/open_file.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <span>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <vector>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t numberSize = sizeof(std::int32_t);

[[noreturn]] void failToRead() {
    throw std::runtime_error{"The file that was written isn't as it should be"};
}

/// Goes through the header of a netCDF file, in its order.
class HeaderWalk {
  public:
    explicit HeaderWalk(std::span<std::byte> headerBytes) : bytes{headerBytes} {}

    std::size_t place() const { return next; }

    void pass(std::int64_t count) {
        if (count < 0 || count > std::ssize(bytes) - static_cast<std::int64_t>(next)) {
            failToRead();
        }
        next += static_cast<std::size_t>(count);
    }

    std::int32_t number() {
        std::int32_t value = 0;
        const std::size_t start = next;
        pass(numberSize);
        std::memcpy(&value, &bytes[start], numberSize);
        ReverseBytes(&value, numberSize);
        return value;
    }

    std::string_view text() {
        const std::int32_t length = number();
        const std::size_t start = next;
        pass(round4(length));
        return {reinterpret_cast<const char*>(bytes.data()) + start,
                static_cast<std::size_t>(length)};
    }

    /// Calls `take` for each entry of a list, behind its tag.
    template <typename Take>
    void list(Take take) {
        number();
        for (std::int32_t count = number(); count > 0; --count) {
            take();
        }
    }

  private:
    std::span<std::byte> bytes;
    std::size_t next = 0;
};

/// What is to be known of a header, with places in its bytes.
struct Header {
    std::size_t reference = 0;       ///< the count of the source_file_reference, ahead of its bytes
    std::int64_t referenceSize = 0;  ///< how many there are, padding included
    std::vector<std::size_t> begins; ///< the places of the variables' data
    std::size_t size = 0;
    AndiCounts counts;
};

/// Answers where the count of its elements lies, ahead of them.
std::size_t passAttribute(HeaderWalk& walk, std::string_view& name) {
    name = walk.text();
    const auto type = static_cast<AndiType>(walk.number());
    const std::size_t place = walk.place();
    walk.pass(round4(std::int64_t{walk.number()} * elementSize(type)));
    return place;
}

void takeAttribute(HeaderWalk& walk, Header& header) {
    std::string_view name;
    const std::size_t place = passAttribute(walk, name);
    if (name == "source_file_reference") {
        header.reference = place;
        header.referenceSize = static_cast<std::int64_t>(walk.place() - place - numberSize);
    }
}

void takeVariable(HeaderWalk& walk, Header& header, const std::vector<std::int64_t>& dimensions) {
    const std::string_view name = walk.text();
    std::int64_t elements = 1;
    for (std::int32_t i = walk.number(); i > 0; --i) {
        elements *= dimensions.at(static_cast<std::size_t>(walk.number()));
    }
    if (name == "ordinate_values") {
        header.counts.points = elements;
    } else if (name == "peak_retention_time") {
        header.counts.peaks = elements;
    }
    std::string_view unused;
    walk.list([&] { passAttribute(walk, unused); });
    walk.pass(2 * numberSize); // type and size
    header.begins.push_back(walk.place());
    walk.pass(numberSize);
}

Header headerIn(std::span<std::byte> bytes) {
    constexpr std::int64_t signatureAndRecords = 8;
    Header header;
    HeaderWalk walk{bytes};
    walk.pass(signatureAndRecords);
    std::vector<std::int64_t> dimensions;
    walk.list([&] {
        walk.text();
        dimensions.push_back(walk.number());
    });
    walk.list([&] { takeAttribute(walk, header); });
    walk.list([&] { takeVariable(walk, header, dimensions); });
    header.size = walk.place();
    if (header.reference == 0) {
        failToRead();
    }
    return header;
}

/// The bytes of the count and the value, which has a terminator, padding included.
std::vector<std::byte> referenceBytes(const std::string& source) {
    auto count = static_cast<std::int32_t>(source.size() + 1);
    std::vector<std::byte> bytes(numberSize + static_cast<std::size_t>(round4(count)));
    ReverseBytes(&count, numberSize);
    std::memcpy(bytes.data(), &count, numberSize);
    std::memcpy(&bytes[numberSize], source.data(), source.size());
    return bytes;
}

void moveBegin(std::byte* begin, std::int64_t distance) {
    std::int32_t place = 0;
    std::memcpy(&place, begin, numberSize);
    ReverseBytes(&place, numberSize);
    const std::int64_t moved = place + distance;
    if (moved > std::numeric_limits<std::int32_t>::max()) {
        throw std::system_error{std::make_error_code(std::errc::file_too_large)};
    }
    place = static_cast<std::int32_t>(moved);
    ReverseBytes(&place, numberSize);
    std::memcpy(begin, &place, numberSize);
}

} // namespace

AndiCounts nameSource(const fs::path& path, const std::string& source) {
    constexpr std::int64_t mostOfHeader = 64L * 1024;
    const OpenFile file{path, OpenFile::Use::Change};
    std::vector<std::byte> bytes(
        static_cast<std::size_t>(std::min<std::int64_t>(file.size(), mostOfHeader)));
    file.read(0, bytes);
    const Header header = headerIn(bytes);
    const std::vector<std::byte> reference = referenceBytes(source);
    const std::int64_t growth =
        std::ssize(reference) - static_cast<std::int64_t>(numberSize) - header.referenceSize;
    if (growth == 0) {
        file.write(static_cast<std::int64_t>(header.reference), reference);
        return header.counts;
    }
    for (const std::size_t begin : header.begins) {
        moveBegin(&bytes[begin], growth);
    }
    const auto place = bytes.begin() + static_cast<std::ptrdiff_t>(header.reference);
    file.moveRest(static_cast<std::int64_t>(header.size), growth);
    bytes.resize(header.size);
    const auto behind =
        bytes.erase(place, place + static_cast<std::ptrdiff_t>(numberSize) + header.referenceSize);
    bytes.insert(behind, reference.begin(), reference.end());
    file.write(0, bytes);
    return header.counts;
}

} // namespace korlit::host
