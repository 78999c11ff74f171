#include "host/share/completions.h"

namespace korlit::host {

ValueKind valueKindOf(const OptionInfo& option) {
    if (!option.choices.empty()) {
        return ValueKind::Choice;
    }
    if (option.names.empty() || option.value == "FILE" || option.value == "LIST") {
        return ValueKind::File;
    }
    return option.value.empty()    ? ValueKind::None
           : option.value == "DIR" ? ValueKind::Folder
                                   : ValueKind::Other;
}

std::string inOneLine(const std::vector<std::string>& words, const std::string& between) {
    std::string line;
    for (const std::string& word : words) {
        line += (line.empty() ? "" : between) + word;
    }
    return line;
}

} // namespace korlit::host
