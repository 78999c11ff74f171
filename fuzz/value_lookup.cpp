// Values of all types looked up in a file by name, as text of any length and as pointers. The input
// is the length of the text in two bytes, the key, and the entries of the file.
#include "andi/value_lookup.h"

#include "fuzz/input.h"
#include "fuzz/promises.h"

#include <array>
#include <cstdio>
#include <string_view>
#include <vector>

using namespace korlit;
using namespace korlit::fuzz;

namespace {

enum class Place : std::uint8_t { Global, Variable, RecordVariable, VariableAttribute, Dimension };

/// An entry of the file, as the target knows it.
struct Entry {
    Place place;
    std::string name;
    AndiType type;
    std::vector<char> elements{};
    std::int32_t count = 0; ///< of the elements, or the length of the dimension
};

/// The next text up to its first zero byte.
std::string takeName(Input& input) {
    const std::string text = input.text();
    return text.substr(0, text.find('\0'));
}

Entry takeEntry(Input& input) {
    Entry entry{.place = Place{static_cast<std::uint8_t>(input.number<std::uint8_t>() % 5)},
                .name = takeName(input),
                .type = AndiType{input.number<std::uint8_t>() % 6 + 1}};
    const std::string bytes = input.text();
    entry.count = static_cast<std::int32_t>(std::ssize(bytes) / elementSize(entry.type));
    entry.elements.assign(bytes.begin(), bytes.begin() + entry.count * elementSize(entry.type));
    return entry;
}

/// Puts the entry into the file; an attribute of no variable becomes a global one.
void add(AndiFile& file, Entry& entry, AndiVariable*& variable) {
    const char* name = entry.name.c_str();
    if (entry.place == Place::Dimension) {
        require(AddAndiDimension(&file, name, entry.count) >= 0, "a dimension is added");
    } else if (entry.place == Place::Variable || entry.place == Place::RecordVariable) {
        const std::int32_t dimension = AddAndiDimension(&file, "", entry.count);
        variable = AddAndiVector(&file, name, entry.type, dimension);
        require(variable != nullptr, "a small variable is added");
        std::ranges::copy(entry.elements, static_cast<char*>(variable->Data));
        variable->IsRecord = entry.place == Place::RecordVariable ? 1 : 0;
    } else {
        entry.place = variable == nullptr ? Place::Global : entry.place;
        auto* list = entry.place == Place::Global ? &file.GlobalAttributes : &variable->Attributes;
        // The elements of an empty value may not be null.
        const void* elements = entry.count == 0 ? "" : entry.elements.data();
        require(AddAndiAttribute(list, name, entry.type, entry.count, elements) >= 0,
                "an attribute is added");
    }
}

/// Whether the key finds the name: its characters in turn, each behind at most one separator.
bool finds(std::string_view key, std::string_view name) {
    for (const char character : key) {
        name.remove_prefix(name.starts_with('_') || name.starts_with('-') ? 1 : 0);
        if (!name.starts_with(character)) {
            return false;
        }
        name.remove_prefix(1);
    }
    return !key.empty() && name.empty();
}

/// The entry that the search comes to first; null for none. Each round looks at these places.
const Entry* firstFound(const std::vector<Entry>& entries, std::string_view key, bool isText) {
    using Round = std::vector<Place>;
    static const std::vector<Round> textRounds{
        {Place::Global}, {Place::Variable, Place::VariableAttribute}, {Place::Dimension}};
    static const std::vector<Round> pointerRounds{{Place::Variable}};
    for (const Round& round : isText ? textRounds : pointerRounds) {
        for (const Entry& entry : entries) {
            if (std::ranges::count(round, entry.place) > 0 && finds(key, entry.name)) {
                return &entry;
            }
        }
    }
    return nullptr;
}

/// A number as the C runtime prints it, and the blank behind it.
std::string printed(const Entry& entry, std::int32_t index) {
    const auto print = [&]<typename Number>(Number number, const char* format) {
        std::array<char, 64> text{};
        std::memcpy(&number, entry.elements.data() + index * std::ptrdiff_t{sizeof number},
                    sizeof number);
        std::snprintf(text.data(), text.size(), format, number);
        return std::string{text.data()};
    };
    switch (entry.type) {
    case AndiType::Byte:
        return print(std::uint8_t{}, "%hhu");
    case AndiType::Short:
        return print(std::int16_t{}, "%hd ");
    case AndiType::Integer:
        return print(std::int32_t{}, "%d ");
    case AndiType::Float:
        return print(0.0F, "%8G ");
    default:
        return print(0.0, "%8G ");
    }
}

/// What the entry must put at the start of a buffer of `length` characters.
std::string delivered(const Entry& entry, std::size_t length) {
    const bool isDimension = entry.place == Place::Dimension;
    std::string text = isDimension ? std::to_string(entry.count) : "";
    if (!isDimension && entry.type == AndiType::Char) {
        text.assign(entry.elements.begin(), std::ranges::find(entry.elements, '\0'));
        text.resize(length);
        return text;
    }
    for (std::int32_t i = 0; !isDimension && i < entry.count; ++i) {
        text += printed(entry, i);
    }
    // No numbers write nothing, not even the terminator.
    text.resize(std::min(text.size(), length - 1));
    return isDimension || entry.count > 0 ? text + '\0' : text;
}

/// Requires of a lookup into a buffer of exactly `length` characters, so that a sanitizer sees what
/// is written behind it, that it finds what is expected and delivers that, or else nothing.
template <typename LookUp>
void requireText(const Entry* expected, std::size_t length, LookUp lookUp) {
    std::vector<char> out(length, '~');
    require(lookUp(out.data(), static_cast<std::int32_t>(length)) == (expected == nullptr ? 0 : 1),
            "a name is found where it is");
    const std::string text = expected == nullptr ? "" : delivered(*expected, length);
    require(std::string_view{out.data(), length}.starts_with(text), "a text is that of its value");
    require(!text.empty() || out == std::vector<char>(length, '~'), "no value leaves the buffer");
}

void lookUpText(AndiFile& file, const Entry* expected, std::string key, std::size_t length) {
    AndiVariable* variable = nullptr;
    requireText(expected, length, [&](char* out, std::int32_t size) {
        return FindAndiValue(&file, key.data(), out, size, &variable);
    });
    const bool isOwnName = expected != nullptr && expected->place == Place::Variable;
    require((variable != nullptr) == isOwnName, "a variable is told where its own name was hit");
}

/// The same for one entry, whose block holds the elements and nothing behind them but a text's end.
void matchOne(Entry entry, const std::string& key, std::size_t length) {
    entry.place = Place::Variable;
    entry.elements.resize(entry.elements.size() + (entry.type == AndiType::Char ? 1 : 0));
    requireText(finds(key, entry.name) ? &entry : nullptr, length,
                [&](char* out, std::int32_t size) {
                    return MatchAndiName(key.c_str(), entry.name.c_str(), entry.type, entry.count,
                                         entry.elements.data(), out, size);
                });
}

void lookUpPointer(AndiFile& file, const Entry* expected, std::string key) {
    AndiVariable* variable = nullptr;
    void* data = nullptr;
    const int found = FindAndiValue(&file, key.data(), &data, pointerMode, &variable);
    require(found == (expected == nullptr ? 0 : 1), "a variable is found where it is");
    require(found == 0 ||
                (data == variable->Data &&
                 std::ranges::equal(expected->elements, std::span{static_cast<const char*>(data),
                                                                  expected->elements.size()})),
            "the pointer is that of the variable's data");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input{data, size};
    const std::size_t length = input.number<std::uint16_t>() % 512;
    const std::string key = takeName(input);
    AndiFile file{};
    std::vector<Entry> entries;
    AndiVariable* lastVariable = nullptr;
    while (!input.isEmpty() && entries.size() < 64) {
        add(file, entries.emplace_back(takeEntry(input)), lastVariable);
    }
    contentOf(file);
    std::string lowerKey = key;
    std::ranges::transform(key, lowerKey.begin(), [](char each) {
        return each >= 'A' && each <= 'Z' ? static_cast<char>(each - 'A' + 'a') : each;
    });
    const Entry* expected = firstFound(entries, lowerKey, length > 0);
    if (length == 0) {
        lookUpPointer(file, expected, key);
    } else {
        lookUpText(file, expected, key, length);
        for (const Entry& entry : entries) {
            matchOne(entry, lowerKey, length);
        }
    }
    FreeAndiFile(&file);
    requireNothingHeld();
    return 0;
}
