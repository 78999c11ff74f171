// Which records of a manifest still count.
#pragma once

#include "host/manifest/manifest.h"

#include <vector>

namespace korlit::host {

/// The records in their order, less those that a later one of the same source has overtaken: of
/// failures and skips each, of conversions those with the same outputs. A skip of what was
/// converted overtakes nothing and is left out itself.
std::vector<const FileRecord*> newestOf(const Manifest& manifest);

} // namespace korlit::host
