// Files of equal number on different devices, which no test can make: as the system tells of them.
// To be included by one file of a program, as its functions stand in front of those of the C
// library.
#pragma once

#include <fcntl.h>
#include <sys/stat.h>

namespace korlit::test {

/// While one of these lives each file is the first on a device of its own.
class OnOwnDevices {
  public:
    OnOwnDevices() { isOn = true; }
    OnOwnDevices(const OnOwnDevices&) = delete;
    OnOwnDevices& operator=(const OnOwnDevices&) = delete;
    ~OnOwnDevices() { isOn = false; }

    static int told(int result, struct stat& status) {
        if (isOn && result == 0) {
            status.st_dev = status.st_ino;
            status.st_ino = 1;
        }
        return result;
    }

  private:
    static inline bool isOn = false;
};

} // namespace korlit::test

#pragma GCC visibility push(default)
extern "C" {
int fstat(int file, struct stat* status) {
    return korlit::test::OnOwnDevices::told(fstatat(file, "", status, AT_EMPTY_PATH), *status);
}
// Under another name here, as there is a record of that name.
int statFile(const char* path, struct stat* status) asm("stat");
int statFile(const char* path, struct stat* status) {
    return korlit::test::OnOwnDevices::told(fstatat(AT_FDCWD, path, status, 0), *status);
}
int lstat(const char* path, struct stat* status) {
    return korlit::test::OnOwnDevices::told(fstatat(AT_FDCWD, path, status, AT_SYMLINK_NOFOLLOW),
                                            *status);
}
}
#pragma GCC visibility pop
