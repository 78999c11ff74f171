#include "host/files/file_start.h"

#include <fstream>

namespace korlit::host {

FileStart startOf(const std::filesystem::path& file) {
    FileStart start;
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) {
        return start;
    }
    start.fileSize = static_cast<std::int64_t>(std::filesystem::file_size(file, error));
    std::ifstream in{file, std::ios::binary};
    in.read(start.bytes.data(), start.bytes.size());
    start.length = in.gcount();
    return start;
}

} // namespace korlit::host
