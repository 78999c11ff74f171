#include "host/text/words.h"

namespace korlit::host {

std::string joined(const std::vector<std::string>& words, std::string_view separator) {
    std::string all;
    for (const std::string& word : words) {
        all += word.empty() || all.empty() ? "" : separator;
        all += word;
    }
    return all;
}

} // namespace korlit::host
