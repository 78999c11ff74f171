// A page of what was converted, which needs nothing else: neither scripts nor a network.
#pragma once

#include "host/manifest/manifest.h"

#include <filesystem>

namespace korlit::host {

/// Writes the page, in the place of what has its name and with `most` as its permissions at most.
/// Throws a runtime_error with words for the user where that can't be done.
void writePage(const std::filesystem::path& file, const Manifest& manifest,
               std::filesystem::perms most);

} // namespace korlit::host
