// `korlit report`: a page of what manifests hold.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace korlit::host {

struct PageOptions {
    std::vector<std::string> manifests;
    std::filesystem::path output;
};

/// Writes the page. Answers 0, or 2 where a manifest can't be read. Throws WrongUse where the page
/// would be one of them or replace data, and a runtime_error where it can't be written.
int reportManifests(const PageOptions& options);

} // namespace korlit::host
