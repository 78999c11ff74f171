// Bytes from one file to another.
#pragma once

#include <cstdint>
#include <filesystem>
#include <system_error>

namespace korlit::host {

/// Appends to `target` what `source` has from `place` on.
std::error_code appendFrom(const std::filesystem::path& source, std::int64_t place,
                           const std::filesystem::path& target);

} // namespace korlit::host
