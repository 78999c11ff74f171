/* In front of the C library: a system without what $MISSING names, where the first file that is to
   come to the place $NO_PLACE does not, where only one process can be started if "fork" is missing,
   where $SWAP takes the place of run.dat when a conversion begins, and that kills the process group
   at the $KILL_AT-th call that writes to a file or changes which names there are. */
#define _GNU_SOURCE
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/syscall.h>
#include <unistd.h>

static int lacks(const char* call, int error) {
    const char* missing = getenv("MISSING");
    errno = error;
    return missing != NULL && strstr(missing, call) != NULL;
}

static void mayBeKilled(void) {
    static long calls = 0;
    const char* last = getenv("KILL_AT");
    if (last != NULL && ++calls == atol(last)) {
        kill(0, SIGKILL);
    }
}

int unlinkat(int folder, const char* path, int flags) {
    mayBeKilled();
    return (int)syscall(SYS_unlinkat, folder, path, flags);
}
int unlink(const char* path) {
    return unlinkat(AT_FDCWD, path, 0);
}
int rmdir(const char* path) {
    return unlinkat(AT_FDCWD, path, AT_REMOVEDIR);
}
int remove(const char* path) {
    const int result = unlink(path);
    return result == 0 || errno != EISDIR ? result : rmdir(path);
}
int ftruncate(int file, off_t length) {
    mayBeKilled();
    return (int)syscall(SYS_ftruncate, file, length);
}
ssize_t pwrite(int file, const void* bytes, size_t count, off_t place) {
    mayBeKilled();
    return syscall(SYS_pwrite64, file, bytes, count, place);
}
int link(const char* from, const char* to) {
    mayBeKilled();
    return lacks("hardlink", EPERM) ? -1
                                    : (int)syscall(SYS_linkat, AT_FDCWD, from, AT_FDCWD, to, 0);
}
int symlink(const char* from, const char* to) {
    if (getenv("SWAP") != NULL) {
        syscall(SYS_renameat2, AT_FDCWD, getenv("SWAP"), AT_FDCWD, "run.dat", 0);
    }
    return lacks("symlink", EPERM) ? -1 : (int)syscall(SYS_symlinkat, from, AT_FDCWD, to);
}
int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) {
    const char* place = getenv("NO_PLACE");
    mayBeKilled();
    if (flags != 0 && lacks("renameat2", EINVAL)) {
        return -1;
    }
    static int refusals = 0;
    errno = ENOSPC;
    return place != NULL && strcmp(to, place) == 0 && ++refusals == 1
               ? -1
               : (int)syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags);
}
int rename(const char* from, const char* to) {
    return renameat2(AT_FDCWD, from, AT_FDCWD, to, 0);
}
pid_t fork(void) {
    static int forks = 0;
    return ++forks > 1 && lacks("fork", EAGAIN) ? -1 : _Fork();
}
