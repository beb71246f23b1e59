// Loaded before a program that is looked at: files whose path holds "dead-share" answer after
// KIVO_SHARE_SECONDS (15 where nothing is said), with an error, as those of a network folder that is gone.

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdarg>
#include <cstdlib>
#include <cstring>

namespace {

bool IsDead(const char* path) {
    return path != nullptr && std::strstr(path, "dead-share") != nullptr;
}

int Fail() {
    const char* const seconds = std::getenv("KIVO_SHARE_SECONDS");
    sleep(seconds != nullptr ? unsigned(std::atoi(seconds)) : 15U);
    errno = EHOSTDOWN;
    return -1;
}

template <typename Function>
Function Next(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" {

int open64(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = va_arg(arguments, mode_t);
    va_end(arguments);
    return IsDead(path) ? Fail() : Next<int (*)(const char*, int, ...)>("open64")(path, flags, mode);
}

int statx(int folder, const char* path, int flags, unsigned mask, struct statx* answer) {
    return IsDead(path) ? Fail()
                        : Next<int (*)(int, const char*, int, unsigned, struct statx*)>("statx")(
                              folder, path, flags, mask, answer);
}

int stat64(const char* path, struct stat64* answer) {
    return IsDead(path) ? Fail() : Next<int (*)(const char*, struct stat64*)>("stat64")(path, answer);
}

int lstat64(const char* path, struct stat64* answer) {
    return IsDead(path) ? Fail() : Next<int (*)(const char*, struct stat64*)>("lstat64")(path, answer);
}

int access(const char* path, int mode) {
    return IsDead(path) ? Fail() : Next<int (*)(const char*, int)>("access")(path, mode);
}
}
