// Words put together.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace korlit::host {

/// The words that aren't empty, with a separator between each two.
std::string joined(const std::vector<std::string>& words, std::string_view separator);

} // namespace korlit::host
