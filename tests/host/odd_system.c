/* In front of the C library: a system without what $MISSING names, where the first file that is to
   come to the place $NO_PLACE does not, or the first $REFUSALS, where another process comes first
   to the place $TAKEN, where only one process can be started if "fork" is missing, where $SWAP
   takes the place of run.dat when a conversion begins, where $COMING isn't there when it is opened
   first, and $GOING no longer is, that lists in $SYNCED what it is asked to have on the disk, and
   that kills the process group, or with $KILL_WORKER a process other than the first, at its
   $KILL_AT-th call that writes to a file or changes which names there are. */
#define _GNU_SOURCE
#include <dlfcn.h>
#include <errno.h>
#include <fcntl.h>
#include <signal.h>
#include <stdarg.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

static int lacks(const char* call, int error) {
    const char* missing = getenv("MISSING");
    const int isMissing = missing != NULL && strstr(missing, call) != NULL;
    errno = isMissing ? error : errno;
    return isMissing;
}

static void mayBeKilled(void) {
    static long calls = 0;
    const char* last = getenv("KILL_AT");
    const int isOfWorker = getenv("KILL_WORKER") != NULL;
    if (last != NULL && ++calls == atol(last) && !(isOfWorker && getpid() == getsid(0))) {
        kill(isOfWorker ? getpid() : 0, SIGKILL);
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
    return lacks("space", ENOSPC) ? -1 : syscall(SYS_pwrite64, file, bytes, count, place);
}
int open(const char* path, int flags, ...) {
    static int lookups = 0;
    const char* coming = getenv("COMING");
    if (coming != NULL && strcmp(path, coming) == 0 && lookups++ == 0) {
        errno = ENOENT;
        return -1;
    }
    if (getenv("GOING") != NULL && strcmp(path, getenv("GOING")) == 0) {
        syscall(SYS_unlinkat, AT_FDCWD, path, 0);
    }
    va_list more;
    va_start(more, flags);
    const int mode = (flags & O_CREAT) != 0 ? va_arg(more, int) : 0;
    va_end(more);
    return (int)syscall(SYS_openat, AT_FDCWD, path, flags, mode);
}
static int note(long call, int file) {
    char link[64], path[4096];
    snprintf(link, sizeof link, "/proc/self/fd/%d", file);
    const ssize_t length = readlink(link, path, sizeof path - 1);
    FILE* list = getenv("SYNCED") == NULL || length < 0 ? NULL : fopen(getenv("SYNCED"), "a");
    if (list != NULL) {
        path[length] = '\0';
        fprintf(list, "%s\n", strrchr(path, '/') + 1);
        fclose(list);
    }
    return (int)syscall(call, file);
}
int fsync(int file) {
    return note(SYS_fsync, file);
}
int fdatasync(int file) {
    return note(SYS_fdatasync, file);
}
/* A file system without permissions shows the same for all. */
char* mkdtemp(char* pattern) {
    char* (*made)(char*) = (char* (*)(char*))dlsym(RTLD_NEXT, "mkdtemp");
    char* folder = made(pattern);
    if (folder != NULL && lacks("permissions", 0)) {
        chmod(folder, 0777);
    }
    return folder;
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
    const char* taken = getenv("TAKEN");
    const int most = getenv("REFUSALS") == NULL ? 1 : atoi(getenv("REFUSALS"));
    mayBeKilled();
    if (taken != NULL && strcmp(to, taken) == 0) {
        close(open(to, O_CREAT | O_WRONLY, 0600));
    }
    if (flags != 0 && lacks("renameat2", EINVAL)) {
        return -1;
    }
    static int refusals = 0;
    errno = ENOSPC;
    return place != NULL && strcmp(to, place) == 0 && ++refusals <= most
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
