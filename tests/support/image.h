// Expected bytes of a file, written down as text.
#pragma once

#include <cstddef>
#include <fstream>
#include <sstream>
#include <string>

namespace korlit::test {

/// Bytes in hexadecimal, or a quoted text. What stands behind two blanks is a remark.
inline std::string parseBytes(const std::string& line) {
    if (line.front() == '\'') {
        return line.substr(1, line.rfind('\'') - 1);
    }
    std::string bytes;
    std::istringstream numbers{line.substr(0, line.find("  "))};
    for (int byte = 0; numbers >> std::hex >> byte;) {
        bytes += static_cast<char>(byte);
    }
    return bytes;
}

/// A whole file from a listing: its first line names the size, each further one an offset and the
/// bytes there; the rest is zero.
inline std::string readImage(const std::string& listing) {
    std::ifstream in{listing};
    std::size_t size = 0;
    std::string line;
    in >> size;
    std::getline(in, line);
    std::string image(size, '\0');
    for (std::size_t offset = 0; in >> offset >> std::ws && std::getline(in, line);) {
        const std::string bytes = parseBytes(line);
        image.replace(offset, bytes.size(), bytes);
    }
    return image;
}

} // namespace korlit::test
