#include "host/check/phrases.h"

namespace korlit::host {

std::string counted(std::size_t count, const char* thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

std::string inQuotes(const std::string& text) {
    return '"' + text + '"';
}

} // namespace korlit::host
