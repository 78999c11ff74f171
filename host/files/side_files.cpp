#include "host/files/side_files.h"

#include "host/files/recognise.h"

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

/// Folders are left to the system, which has words for them.
std::string problemOf(const fs::path& file, const std::string& kind) {
    std::error_code ignored;
    const fs::file_status status = fs::status(file, ignored);
    if (fs::exists(status) && !fs::is_regular_file(status) && !fs::is_directory(status)) {
        return file.string() + " is no regular file";
    }
    if (isKnown(recognise(file.string()))) {
        return file.string() + " is there and is no " + kind;
    }
    return hasNameOfData(file) ? file.string() + " is no name for a " + kind : "";
}

} // namespace

std::string SideFiles::add(const fs::path& file, const std::string& kind) {
    const auto other = at(file);
    if (const auto identity = identityOf(file)) {
        present.emplace(*identity, kinds.size());
    }
    places.emplace(filePlaceOf(file), kinds.size());
    kinds.push_back(kind);
    return other ? file.string() + " is the " + kindOf(*other) + " already" : problemOf(file, kind);
}

std::optional<std::size_t> SideFiles::at(const fs::path& file) const {
    const auto identity = identityOf(file);
    const auto known = identity ? present.find(*identity) : present.end();
    if (known != present.end()) {
        return known->second;
    }
    const auto same = places.find(filePlaceOf(file));
    return same != places.end() ? std::optional{same->second} : std::nullopt;
}

} // namespace korlit::host
