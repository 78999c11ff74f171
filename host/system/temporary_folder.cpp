#include "host/system/temporary_folder.h"

#include <cerrno>
#include <cstdlib>

namespace korlit::host {

namespace {

std::filesystem::path usualPlace() {
    std::error_code error;
    const std::filesystem::path place = std::filesystem::temp_directory_path(error);
    return error ? "/tmp" : place;
}

} // namespace

TemporaryFolder::TemporaryFolder() : TemporaryFolder{usualPlace()} {}

TemporaryFolder::TemporaryFolder(const std::filesystem::path& parent, const std::string& prefix) {
    std::string pattern = (parent / (prefix + "XXXXXX")).string();
    if (mkdtemp(pattern.data()) == nullptr) {
        throw std::filesystem::filesystem_error{"no temporary folder", parent,
                                                std::error_code{errno, std::generic_category()}};
    }
    path_ = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

} // namespace korlit::host
