// What a target makes of its input: numbers and texts in the order in which it asks for them, and
// files.
#pragma once

#include "host/system/temporary_folder.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <span>
#include <string>

/// Runs one input; the fuzzer and the replay call it over and over. Answers 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace korlit::fuzz {

class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size)
        : bytes{reinterpret_cast<const char*>(data), size} {}

    bool isEmpty() const { return bytes.empty(); }

    /// The next `size` bytes, or what is left.
    std::span<const char> take(std::size_t size) {
        const std::span<const char> part = bytes.first(std::min(size, bytes.size()));
        bytes = bytes.subspan(part.size());
        return part;
    }
    std::span<const char> rest() { return take(bytes.size()); }

    /// The next number; what the input no longer holds of it is zero.
    template <typename Number>
    Number number() {
        const std::span<const char> part = take(sizeof(Number));
        Number value{};
        std::memcpy(&value, part.data(), part.size());
        return value;
    }

    /// The next text: its length in a byte, and so many bytes.
    std::string text() {
        const std::span<const char> part = take(number<std::uint8_t>());
        return {part.begin(), part.end()};
    }

  private:
    std::span<const char> bytes;
};

inline std::string readAll(const std::filesystem::path& path) {
    std::ifstream in{path, std::ios::binary};
    return {std::istreambuf_iterator<char>{in}, {}};
}

/// A path in a folder of this process, which goes with it.
inline std::string scratchPath(const char* name) {
    static const host::TemporaryFolder folder{std::filesystem::temp_directory_path(),
                                              "korlit-fuzz-"};
    return (folder.path() / name).string();
}

/// A file at such a path with this content; answers the path.
inline std::string scratchFile(const char* name, std::span<const char> content) {
    const std::string path = scratchPath(name);
    std::ofstream{path, std::ios::binary}.write(content.data(), std::ssize(content));
    return path;
}

} // namespace korlit::fuzz
