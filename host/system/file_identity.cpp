#include "host/system/file_identity.h"

#include <sys/stat.h>

namespace korlit::host {

std::optional<FileIdentity> identityOf(const std::filesystem::path& path) {
    struct stat status {};
    if (stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return FileIdentity{.device = status.st_dev, .inode = status.st_ino};
}

} // namespace korlit::host
