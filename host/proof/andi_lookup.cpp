#include "host/proof/andi_lookup.h"

#include "andi/value_lookup.h"

#include <algorithm>

namespace korlit::host {

namespace {

/// A name as the comparison wants it.
std::string keyOf(std::string_view name) {
    std::string key{name};
    std::erase(key, '_');
    return key;
}

/// How a number reads depends on its type, which the values that were read of it don't have.
std::optional<std::string> storedText(const AndiImage& image, std::string key, std::int32_t room) {
    std::string text(static_cast<std::size_t>(room), '\0');
    AndiVariable* unused = nullptr;
    // The lookup reads only, but may hand out what can be changed.
    auto* file = const_cast<AndiFile*>(&image.file);
    return FindAndiValue(file, key.data(), text.data(), room, &unused) == 1
               ? std::optional{std::string{text.c_str()}}
               : std::nullopt;
}

/// Of the template, which has no numbers but floats and lengths of dimensions.
std::string templateText(const Entry& entry) {
    const auto* number = std::get_if<double>(&entry.value);
    if (number == nullptr) {
        return std::get<std::string>(entry.value);
    }
    return entry.key.part == parts::dimensions
               ? std::to_string(static_cast<std::int32_t>(*number))
               : std::string{FormatAndiValue(AndiType::Double, number, 0).data()} + ' ';
}

} // namespace

AndiLookup::AndiLookup(const Reading& andi) : image{andi.image}, entries{andi.entries} {
    for (const Entry& entry : entries) {
        if (entry.key.peak <= 1 && entry.key.part != parts::records) {
            const bool isAttribute = entry.key.part == parts::texts;
            const std::size_t colon =
                isAttribute ? entry.key.name.rfind(':') : std::string_view::npos;
            const std::size_t start = colon == std::string_view::npos ? 0 : colon + 1;
            heads.push_back({.entry = &entry, .name = entry.key.name.data() + start});
            if (entry.key.part == parts::peaks) {
                columns.push_back(heads.back());
            }
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

std::optional<std::string> AndiLookup::text(std::string_view name, std::int32_t room) const {
    if (image != nullptr) {
        return storedText(*image, keyOf(name), room);
    }
    const Entry* entry = find(name);
    return entry == nullptr
               ? std::nullopt
               : std::optional{templateText(*entry).substr(0, static_cast<std::size_t>(room))};
}

std::span<const Entry> AndiLookup::column(std::string_view name) const {
    const std::string key = keyOf(name);
    const auto found =
        std::ranges::find_if(columns, [&](const Head& head) { return head.isOf(key); });
    if (found == columns.end()) {
        return {};
    }
    const auto rest = entries.subspan(static_cast<std::size_t>(found->entry - entries.data()));
    const auto end = std::ranges::find_if(rest, [&](const Entry& entry) {
        return entry.key.part != parts::peaks || entry.key.name != found->entry->key.name;
    });
    return rest.first(static_cast<std::size_t>(end - rest.begin()));
}

} // namespace korlit::host
