// Phrases of which findings are made.
#pragma once

#include <cstddef>
#include <string>

namespace korlit::host {

/// "1 peak", "2 peaks".
std::string counted(std::size_t count, const char* thing);

std::string inQuotes(const std::string& text);

} // namespace korlit::host
