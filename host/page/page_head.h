// What a page says of all files together.
#pragma once

#include "host/manifest/manifest.h"

#include <string>
#include <vector>

namespace korlit::host {

/// Totals, batches and what is missing.
std::string pageHead(const Manifest& manifest, const std::vector<const FileRecord*>& rows);

/// The search field and the filters, hidden from those without scripts.
std::string pageTools(const std::vector<const FileRecord*>& rows);

} // namespace korlit::host
