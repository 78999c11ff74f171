#include "host/proof/netcdf_layout.h"

#include "host/text/numbers.h"
#include "host/text/utf8.h"

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

namespace korlit::host {

namespace {

enum class Tag : std::uint32_t { Absent = 0, Dimensions = 10, Variables = 11, Attributes = 12 };

/// Of the types 1 to 6.
constexpr std::array<std::int64_t, 6> elementSizes{1, 1, 2, 4, 4, 8};

constexpr std::int64_t unit = 4; ///< to which all that has a length is padded

std::int64_t paddedSize(std::int64_t size) {
    return (size + unit - 1) / unit * unit;
}

struct PlacedVariable {
    std::string name;
    std::int64_t size;         ///< of the data, for a record variable of one record
    std::int64_t unpaddedSize; ///< the same
    std::int64_t begin;
    bool isRecord;
};

/// Throws a runtime_error with the words of what is wrong.
class Walk {
  public:
    Walk(std::istream& source, std::int64_t size) : file{source}, fileSize{size} {}

    void run() {
        if (text(unit) != std::string_view{"CDF\1", unit}) {
            throw std::runtime_error{"it doesn't begin with CDF and 1"};
        }
        recordCount = number("the count of records");
        list(Tag::Dimensions, "dimensions", [this] { dimension(); });
        attributes();
        list(Tag::Variables, "variables", [this] { variable(); });
        requirePlaces();
    }

  private:
    [[noreturn]] void fail(const std::string& words) const {
        throw std::runtime_error{words + ", ahead of byte " + std::to_string(place)};
    }

    void requireRoom(std::int64_t count) const {
        if (count > fileSize - place) {
            fail("the file ends within its header");
        }
    }

    std::string text(std::int64_t count) {
        requireRoom(count);
        std::string bytes(static_cast<std::size_t>(count), '\0');
        file.read(bytes.data(), count);
        if (file.gcount() != count) {
            fail("it can't be read");
        }
        place += count;
        return bytes;
    }

    std::uint32_t word() {
        std::uint32_t value = 0;
        for (const char byte : text(unit)) {
            value = value << 8U | static_cast<std::uint8_t>(byte);
        }
        return value;
    }

    std::int64_t number(const std::string& what) {
        const std::uint32_t value = word();
        if (value > std::numeric_limits<std::int32_t>::max()) {
            fail(what + " is negative");
        }
        return value;
    }

    /// What has a length, with its padding.
    std::string padded(std::int64_t length) {
        std::string bytes = text(length);
        const std::string padding = text(paddedSize(length) - length);
        if (padding.find_first_not_of('\0') != std::string::npos) {
            fail("a padding isn't zero");
        }
        return bytes;
    }

    std::string name() {
        std::string bytes = padded(number("the length of a name"));
        if (bytes.empty() || bytes.find('\0') != std::string::npos) {
            fail("a name is empty or has a zero in it");
        }
        return bytes;
    }

    std::int64_t elementSize() {
        const std::uint32_t type = word();
        if (type < 1 || type > elementSizes.size()) {
            fail("a type is none of 1 to 6");
        }
        return elementSizes[type - 1];
    }

    template <typename Read>
    void list(Tag tag, const std::string& what, Read readOne) {
        const auto found = Tag{word()};
        const std::int64_t count = number("the count of " + what);
        if (found != tag && (found != Tag::Absent || count > 0)) {
            fail("there is no list of " + what);
        }
        for (std::int64_t i = 0; i < count; ++i) {
            readOne();
        }
    }

    void dimension() {
        name();
        lengths.push_back(number("the length of a dimension"));
        if (std::ranges::count(lengths, 0) > 1) {
            fail("two dimensions are without a length");
        }
    }

    void attributes() {
        list(Tag::Attributes, "attributes", [this] {
            name();
            const std::int64_t ofOne = elementSize();
            padded(number("the count of an attribute") * ofOne);
        });
    }

    /// The lengths of a variable's dimensions, 0 for that of the records.
    std::vector<std::int64_t> shape() {
        std::vector<std::int64_t> ofVariable;
        const std::int64_t rank = number("a count of dimensions");
        requireRoom(rank * unit);
        for (std::int64_t i = 0; i < rank; ++i) {
            const std::uint32_t id = word();
            if (id >= lengths.size()) {
                fail("a variable has a dimension that there is none of");
            }
            ofVariable.push_back(lengths[id]);
            if (ofVariable.back() == 0 && i > 0) {
                fail("the records aren't a variable's first dimension");
            }
        }
        return ofVariable;
    }

    void variable() {
        PlacedVariable variable{
            .name = name(), .size = 0, .unpaddedSize = 0, .begin = 0, .isRecord = false};
        const std::vector<std::int64_t> lengthsOfIt = shape();
        variable.isRecord = !lengthsOfIt.empty() && lengthsOfIt.front() == 0;
        attributes();
        variable.unpaddedSize = elementSize();
        for (const std::int64_t length : lengthsOfIt) {
            if (__builtin_mul_overflow(variable.unpaddedSize, std::max<std::int64_t>(length, 1),
                                       &variable.unpaddedSize)) {
                fail("a variable is larger than any file");
            }
        }
        variable.size = number("the size of a variable");
        variable.begin = number("the place of a variable");
        if (hasData(variable) && variable.size != paddedSize(variable.unpaddedSize)) {
            fail(printable(variable.name) + " has " + groupedDigits(variable.size) +
                 " bytes by its entry and " + groupedDigits(variable.unpaddedSize) +
                 " by its dimensions");
        }
        variables.push_back(std::move(variable));
    }

    /// Of a variable for records that aren't there no reader looks at size and place.
    bool hasData(const PlacedVariable& variable) const {
        return !variable.isRecord || recordCount > 0;
    }

    /// No data lie in the header or in those of another variable: first come those of all
    /// variables, then the records. The file ends where they do.
    void requirePlaces() {
        std::vector<PlacedVariable> placed = variables;
        std::erase_if(placed, [this](const auto& each) { return !hasData(each); });
        std::ranges::stable_sort(placed, {}, [](const PlacedVariable& each) {
            return std::pair{each.isRecord, each.begin};
        });
        std::int64_t end = place;
        for (const PlacedVariable& each : placed) {
            if (each.begin < end) {
                throw std::runtime_error{printable(each.name) + " begins at byte " +
                                         std::to_string(each.begin) + " within what ends at " +
                                         std::to_string(end)};
            }
            end = each.begin + each.size;
        }
        requireEnd(end + sizeOfFurtherRecords(placed));
    }

    /// Behind the first. The only variable with records has them without padding.
    std::int64_t sizeOfFurtherRecords(const std::vector<PlacedVariable>& placed) const {
        std::int64_t size = 0;
        const bool isAlone = std::ranges::count(placed, true, &PlacedVariable::isRecord) == 1;
        for (const PlacedVariable& each : placed) {
            size += !each.isRecord ? 0 : isAlone ? each.unpaddedSize : each.size;
        }
        return size * (recordCount - 1);
    }

    void requireEnd(std::int64_t end) const {
        if (recordCount > 0 && !std::ranges::any_of(variables, &PlacedVariable::isRecord)) {
            throw std::runtime_error{"it has records without a variable for them"};
        }
        if (fileSize != paddedSize(end)) {
            throw std::runtime_error{"the file has " + groupedDigits(fileSize) +
                                     " bytes instead of " + groupedDigits(paddedSize(end))};
        }
    }

    std::istream& file;
    std::int64_t fileSize;
    std::int64_t place = 0;
    std::int64_t recordCount = 0;
    std::vector<std::int64_t> lengths; ///< of the dimensions
    std::vector<PlacedVariable> variables;
};

} // namespace

std::string layoutProblem(std::istream& file, std::int64_t size) try {
    Walk{file, size}.run();
    return {};
} catch (const std::runtime_error& error) {
    return error.what();
}

} // namespace korlit::host
