#include "host/proof/andi_lookup.h"

#include "andi/value_lookup.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace korlit::host {

namespace {

/// A name as the comparison wants it.
std::string keyOf(std::string_view name) {
    std::string key{name};
    std::erase(key, '_');
    return key;
}

std::string textOf(double number) {
    using Limits = std::numeric_limits<std::int32_t>;
    const bool isWhole =
        number == std::trunc(number) && number >= Limits::min() && number <= Limits::max();
    return (isWhole ? std::to_string(static_cast<std::int32_t>(number))
                    : FormatAndiValue(AndiType::Double, &number, 0).data()) +
           ' ';
}

} // namespace

AndiLookup::AndiLookup(const Reading& andi) : entries{andi.entries} {
    for (const Entry& entry : entries) {
        if (entry.key.peak <= 1 && entry.key.part != parts::records) {
            const std::size_t colon = entry.key.name.find(':');
            heads.push_back({.entry = &entry,
                             .name = entry.key.name.data() +
                                     (colon == std::string_view::npos ? 0 : colon + 1)});
        }
    }
}

bool AndiLookup::Head::isOf(const std::string& key) const {
    void* unused = nullptr;
    return MatchAndiName(key.c_str(), name, AndiType::None, 0, nullptr, static_cast<void*>(&unused),
                         pointerMode) == 1;
}

const Entry* AndiLookup::find(std::string_view name) const {
    const std::string key = keyOf(name);
    const auto found =
        std::ranges::find_if(heads, [&](const Head& head) { return head.isOf(key); });
    return found == heads.end() ? nullptr : found->entry;
}

std::span<const Entry> AndiLookup::column(std::string_view name) const {
    const std::string key = keyOf(name);
    const auto found = std::ranges::find_if(heads, [&](const Head& head) {
        return head.entry->key.part == parts::peaks && head.isOf(key);
    });
    if (found == heads.end()) {
        return {};
    }
    const auto rest = entries.subspan(static_cast<std::size_t>(found->entry - entries.data()));
    const auto end = std::ranges::find_if(rest, [&](const Entry& entry) {
        return entry.key.part != parts::peaks || entry.key.name != found->entry->key.name;
    });
    return rest.first(static_cast<std::size_t>(end - rest.begin()));
}

std::optional<std::string> textOf(const Entry* entry) {
    if (entry == nullptr) {
        return std::nullopt;
    }
    const auto* number = std::get_if<double>(&entry->value);
    return number == nullptr ? std::get<std::string>(entry->value) : textOf(*number);
}

} // namespace korlit::host
