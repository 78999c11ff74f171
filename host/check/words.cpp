#include "host/check/words.h"

namespace korlit::host {

std::string counted(std::size_t count, const char* thing) {
    return std::to_string(count) + " " + thing + (count == 1 ? "" : "s");
}

std::string inQuotes(const std::string& text) {
    return '"' + text + '"';
}

std::string listed(std::span<const std::string> names) {
    std::string list;
    for (const std::string& name : names) {
        list += (list.empty() ? "" : ", ") + name;
    }
    return list;
}

} // namespace korlit::host
