// Reads the expected bytes of a file from a listing: its first line names the size, each further
// one an offset and the bytes there, in hexadecimal or as a quoted text. The rest is zero, and what
// stands behind two blanks is a remark.
#pragma once

#include <fstream>
#include <sstream>
#include <string>

namespace korlit::test {

inline std::string readImage(const std::string& listing) {
    std::ifstream in{listing};
    std::size_t size = 0;
    std::string line;
    in >> size;
    std::getline(in, line);
    std::string image(size, '\0');
    for (std::size_t offset = 0; in >> offset >> std::ws && std::getline(in, line);) {
        std::string bytes = line.substr(1, line.rfind('\'') - 1);
        if (line.front() != '\'') {
            bytes.clear();
            std::istringstream numbers{line.substr(0, line.find("  "))};
            for (int byte = 0; numbers >> std::hex >> byte;) {
                bytes += static_cast<char>(byte);
            }
        }
        image.replace(offset, bytes.size(), bytes);
    }
    return image;
}

} // namespace korlit::test
