// The name of its source that an ANDI file holds.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>

namespace korlit::host {

struct AndiCounts {
    std::int64_t points = 0;
    std::int64_t peaks = 0;
};

/// Makes `source` the source_file_reference of a file that the library has just written, whose data
/// lie together behind its header, and answers what it holds. Throws a system_error where the
/// system fails, and a runtime_error for a file of any other kind.
AndiCounts nameSource(const std::filesystem::path& file, const std::string& source);

} // namespace korlit::host
