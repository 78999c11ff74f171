#include "host/files/standard_input.h"

#include <fstream>
#include <iostream>
#include <stdexcept>

namespace korlit::host {

std::string shownName(const std::string& file) {
    return file == standardInputWord ? "standard input" : file;
}

StandardInputCopy::StandardInputCopy() {
    std::ofstream copy{path(), std::ios::binary};
    // To write nothing of an empty input counts as a failure of the stream.
    if (std::cin.peek() != std::istream::traits_type::eof()) {
        copy << std::cin.rdbuf();
    }
    copy.close();
    if (!copy || std::cin.bad()) {
        throw std::runtime_error{"standard input could not be read"};
    }
}

std::string StandardInputCopy::withoutCopy(std::string words) const {
    if (const std::size_t place = words.find(path()); place != std::string::npos) {
        words.replace(place, path().size(), shownName(standardInputWord));
    }
    return words;
}

} // namespace korlit::host
