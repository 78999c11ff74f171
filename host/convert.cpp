#include "host/convert.h"

#include "api/exports.h"
#include "host/recognise.h"

#include <algorithm>
#include <iostream>
#include <string_view>

namespace korlit::host {

namespace {

using Conversion = int32_t (*)(char* path, char* message);

Conversion conversionOf(FileKind kind) {
    switch (kind) {
    case FileKind::SliceFile:
        return Merivolta2Andi;
    case FileKind::Run:
        return Dunvale2Andi;
    case FileKind::Andi:
        break;
    }
    return Andi2Merivolta;
}

/// The library has no words for a run that was converted.
std::string runText(const std::string& file, int channelCount) {
    const std::string stem = file.substr(0, file.rfind('.'));
    std::string text = "Dunvale File converted to ";
    for (int channel = 1; channel <= channelCount; ++channel) {
        text += stem + std::to_string(channel) + ".cdf" + (channel < channelCount ? ", " : ".");
    }
    return text;
}

/// A text of several lines as one.
std::string oneLine(std::string_view text) {
    std::string line;
    for (const char character : text) {
        if (character != '\r' && character != '\n') {
            line += character;
        } else if (!line.empty() && line.back() != ' ') {
            line += ' ';
        }
    }
    return line;
}

bool convertFile(const std::string& file) {
    std::string path = file;
    path.resize(file.size() + KORLIT_PATH_ROOM);
    std::string message(
        std::max<std::size_t>(file.size() + KORLIT_MESSAGE_ROOM, KORLIT_MESSAGE_MINIMUM), '\0');
    const auto [kind, channelCount] = recognise(file);
    const bool isConverted = conversionOf(kind)(path.data(), message.data()) == 1;

    std::string text = oneLine(message.c_str());
    if (isConverted && kind == FileKind::Run) {
        text = runText(file, channelCount);
    } else if (text.empty()) {
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
