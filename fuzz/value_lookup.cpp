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
constexpr std::uint8_t placeCount = 5;

/// An entry of the file, as the target knows it.
struct Entry {
    Place place;
    std::string name;
    AndiType type;
    std::vector<char> elements;
    std::int32_t count; ///< of the elements, or the length of the dimension
};

Entry takeEntry(Input& input) {
    Entry entry{.place =
                    Place{static_cast<std::uint8_t>(input.number<std::uint8_t>() % placeCount)},
                .name = input.name(),
                .type = AndiType{input.number<std::uint8_t>() % 6 + 1},
                .elements = {},
                .count = 0};
    const auto size = static_cast<std::size_t>(elementSize(entry.type));
    const std::string bytes = input.text();
    entry.elements.assign(bytes.begin(), bytes.end() - static_cast<long>(bytes.size() % size));
    entry.count = static_cast<std::int32_t>(bytes.size() / size);
    return entry;
}

bool isVariable(const Entry& entry) {
    return entry.place == Place::Variable || entry.place == Place::RecordVariable;
}

AndiVariable* addVariable(AndiFile& file, const Entry& entry) {
    const std::int32_t dimension = AddAndiDimension(&file, "", entry.count);
    AndiVariable* variable = AddAndiVector(&file, entry.name.c_str(), entry.type, dimension);
    require(variable != nullptr, "a small variable is added");
    std::ranges::copy(entry.elements, static_cast<char*>(variable->Data));
    variable->IsRecord = entry.place == Place::RecordVariable ? 1 : 0;
    return variable;
}

/// Puts the entry into the file; an attribute of no variable becomes a global one.
void add(AndiFile& file, Entry& entry, AndiVariable*& lastVariable) {
    if (isVariable(entry)) {
        lastVariable = addVariable(file, entry);
    } else if (entry.place == Place::Dimension) {
        require(AddAndiDimension(&file, entry.name.c_str(), entry.count) >= 0,
                "a dimension is added");
    } else {
        const bool isOfVariable =
            entry.place == Place::VariableAttribute && lastVariable != nullptr;
        entry.place = isOfVariable ? Place::VariableAttribute : Place::Global;
        auto* list = isOfVariable ? &lastVariable->Attributes : &file.GlobalAttributes;
        // The elements of an empty value may not be null.
        const void* elements = entry.elements.empty() ? "" : entry.elements.data();
        require(AddAndiAttribute(list, entry.name.c_str(), entry.type, entry.count, elements) >= 0,
                "an attribute is added");
    }
}

/// Whether the key finds the name: its characters in turn, each behind at most one separator.
bool finds(std::string_view key, std::string_view name) {
    for (const char character : key) {
        if (name.starts_with('_') || name.starts_with('-')) {
            name.remove_prefix(1);
        }
        if (!name.starts_with(character)) {
            return false;
        }
        name.remove_prefix(1);
    }
    return !key.empty() && name.empty();
}

/// An element as the C runtime prints it, and the blank behind a number.
std::string printed(const Entry& entry, std::int32_t index) {
    std::array<char, 64> text{};
    const char* element = entry.elements.data() + std::ptrdiff_t{index} * elementSize(entry.type);
    const auto print = [&]<typename Number>(Number number, const char* format) {
        std::memcpy(&number, element, sizeof number);
        std::snprintf(text.data(), text.size(), format, number);
    };
    switch (entry.type) {
    case AndiType::Byte:
        print(std::uint8_t{}, "%hhu");
        break;
    case AndiType::Short:
        print(std::int16_t{}, "%hd ");
        break;
    case AndiType::Integer:
        print(std::int32_t{}, "%d ");
        break;
    case AndiType::Float:
        print(0.0F, "%8G ");
        break;
    case AndiType::Double:
        print(0.0, "%8G ");
        break;
    default:
        text[0] = *element == '\0' ? ' ' : *element;
        break;
    }
    return text.data();
}

/// What the text of an entry must be in a buffer of `length` characters that held `before`.
std::string delivered(const Entry& entry, std::size_t length, std::string before) {
    std::string text;
    if (entry.place == Place::Dimension) {
        text = std::to_string(entry.count);
    } else if (entry.type == AndiType::Char) {
        text.assign(entry.elements.begin(), std::ranges::find(entry.elements, '\0'));
        text.resize(length);
        return text;
    } else if (entry.count == 0) {
        return before;
    }
    for (std::int32_t i = 0; entry.place != Place::Dimension && i < entry.count; ++i) {
        text += printed(entry, i);
    }
    text.resize(std::min(text.size(), length - 1));
    return text;
}

/// The entry that the search comes to first; null for none.
const Entry* firstFound(const std::vector<Entry>& entries, std::string_view key, bool isText) {
    const auto search = [&](auto isSearched) -> const Entry* {
        const auto found = std::ranges::find_if(entries, [&](const Entry& entry) {
            return isSearched(entry.place) && finds(key, entry.name);
        });
        return found == entries.end() ? nullptr : &*found;
    };
    const auto isGlobal = [](Place place) { return place == Place::Global; };
    const auto isDimension = [](Place place) { return place == Place::Dimension; };
    const auto isAtVariable = [&](Place place) {
        return place == Place::Variable || (isText && place == Place::VariableAttribute);
    };
    const Entry* global = isText ? search(isGlobal) : nullptr;
    const Entry* atVariable = global == nullptr ? search(isAtVariable) : global;
    return atVariable == nullptr && isText ? search(isDimension) : atVariable;
}

void lookUpText(AndiFile& file, const Entry* expected, std::string key, std::size_t length) {
    // A block of exactly that length, so that a sanitizer sees what is written behind it.
    std::vector<char> out(length, '~');
    AndiVariable* variable = nullptr;
    const int found =
        FindAndiValue(&file, key.data(), out.data(), static_cast<std::int32_t>(length), &variable);
    require(found == (expected == nullptr ? 0 : 1), "a name is found where it is");
    const std::string before(length, '~');
    const std::string text = expected == nullptr ? before : delivered(*expected, length, before);
    require(std::equal(text.begin(), text.end(), out.begin()), "a text is that of its value");
    const bool isOwnName = expected != nullptr && isVariable(*expected);
    require((variable != nullptr) == isOwnName, "a variable is told where its own name was hit");
}

/// The same for one entry, whose block holds the elements and nothing behind them.
void matchOne(const Entry& entry, const std::string& key, std::size_t length) {
    const std::string before(length, '~');
    std::vector<char> out(length, '~');
    Entry value = entry;
    value.place = Place::Variable;
    const int found =
        MatchAndiName(key.c_str(), value.name.c_str(), value.type, value.count,
                      value.elements.data(), out.data(), static_cast<std::int32_t>(length));
    require(found == (finds(key, value.name) ? 1 : 0), "a key finds the names that it fits");
    const std::string text = found == 1 ? delivered(value, length, before) : before;
    require(std::equal(text.begin(), text.end(), out.begin()), "a text is that of its value");
    for (std::int32_t i = 0; found == 1 && i < value.count; ++i) {
        const std::string shown = FormatAndiValue(value.type, value.elements.data(), i).data();
        require(shown + (elementSize(value.type) > 1 ? " " : "") == printed(value, i),
                "an element has its text");
    }
}

void lookUpPointer(AndiFile& file, const Entry* expected, std::string key) {
    AndiVariable* variable = nullptr;
    void* data = nullptr;
    const int found = FindAndiValue(&file, key.data(), &data, pointerMode, &variable);
    require(found == (expected == nullptr ? 0 : 1), "a variable is found where it is");
    require(found == 0 || data == variable->Data, "the pointer is that of the data");
    require(found == 0 ||
                std::ranges::equal(expected->elements, std::span{static_cast<const char*>(data),
                                                                 expected->elements.size()}),
            "the data are those of the variable");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    Input input{data, size};
    const std::size_t length = input.number<std::uint16_t>() % 512;
    const std::string key = input.name();
    AndiFile file{};
    std::vector<Entry> entries;
    AndiVariable* lastVariable = nullptr;
    while (!input.isEmpty() && entries.size() < 64) {
        add(file, entries.emplace_back(takeEntry(input)), lastVariable);
    }
    requireSound(file);
    std::string lowerKey = key;
    std::ranges::transform(key, lowerKey.begin(), [](char each) {
        return each >= 'A' && each <= 'Z' ? static_cast<char>(each - 'A' + 'a') : each;
    });
    const Entry* expected = firstFound(entries, lowerKey, length > 0);
    if (length > 0) {
        lookUpText(file, expected, key, length);
        for (const Entry& entry : entries) {
            matchOne(entry, lowerKey, length);
        }
    } else {
        lookUpPointer(file, expected, key);
    }
    FreeAndiFile(&file);
    requireNothingHeld();
    return 0;
}
