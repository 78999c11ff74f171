// What the system says of a file or folder that can't be used.
#pragma once

#include <filesystem>
#include <string>

namespace korlit::host {

/// Why a file can't be opened for reading, in the system's words; the empty text if it can.
std::string openProblem(const std::filesystem::path& file);

} // namespace korlit::host
