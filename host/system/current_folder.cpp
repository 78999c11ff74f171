#include "host/system/current_folder.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace korlit::host {

namespace {

void makeAbsolute(const char* setting) {
    const char* path = std::getenv(setting);
    if (path != nullptr && *path != '\0' && *path != '/') {
        setenv(setting, std::filesystem::absolute(path).c_str(), 1);
    }
}

/// The folder in which the process was started.
int startFolder() {
    static const int folder = [] {
        makeAbsolute("KORLIT_PROFILE");
        return open(".", O_PATH | O_DIRECTORY | O_CLOEXEC);
    }();
    return folder;
}

} // namespace

CurrentFolder::CurrentFolder(const std::filesystem::path& folder) {
    if (startFolder() < 0 || chdir(folder.c_str()) != 0) {
        failure = {errno, std::generic_category()};
    }
}

CurrentFolder::~CurrentFolder() {
    if (!failure && fchdir(startFolder()) != 0) {
        // All that follows would go to a wrong place.
        std::abort();
    }
}

} // namespace korlit::host
