// What names of files end in.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace korlit::host {

/// Whether a name ends in an extension such as ".sli", in capitals or not.
bool hasExtension(const std::string& file, std::string_view extension);

/// The file beside another that is named like it but for its extension, which may be in capitals or
/// not; with the extension as it is given where there is no such file.
std::filesystem::path besideWith(const std::filesystem::path& file, std::string_view extension);

} // namespace korlit::host
