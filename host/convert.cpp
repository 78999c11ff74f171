#include "host/convert.h"

#include "api/exports.h"

#include <algorithm>
#include <iostream>

namespace korlit::host {

namespace {

bool convertFile(const std::string& file) {
    std::string path = file;
    path.resize(file.size() + KORLIT_PATH_ROOM);
    std::string message(
        std::max<std::size_t>(file.size() + KORLIT_MESSAGE_ROOM, KORLIT_MESSAGE_MINIMUM), '\0');
    const bool isConverted = Andi2Merivolta(path.data(), message.data()) == 1;

    std::string_view text = message.c_str();
    if (text.empty()) {
        text = "Not converted: out of memory";
    }
    std::cout << file << ": " << text << std::endl;
    return isConverted;
}

} // namespace

int convertFiles(const std::vector<std::string>& files) {
    int status = 0;
    for (const std::string& file : files) {
        if (!convertFile(file)) {
            status = 1;
        }
    }
    return status;
}

} // namespace korlit::host
