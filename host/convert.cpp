#include "host/convert.h"

#include "api/exports.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <iostream>

namespace korlit::host {

namespace {

bool isSliceFile(const std::string& file) {
    std::string extension = std::filesystem::path{file}.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(),
                   [](unsigned char letter) { return std::tolower(letter); });
    return extension == ".sli";
}

bool convertFile(const std::string& file) {
    std::string path = file;
    path.resize(file.size() + KORLIT_PATH_ROOM);
    std::string message(
        std::max<std::size_t>(file.size() + KORLIT_MESSAGE_ROOM, KORLIT_MESSAGE_MINIMUM), '\0');
    const auto conversion = isSliceFile(file) ? Merivolta2Andi : Andi2Merivolta;
    const bool isConverted = conversion(path.data(), message.data()) == 1;

    std::string_view text = message.c_str();
    if (text.empty()) {
        text = "Not converted; what reason there is stands on standard error";
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
