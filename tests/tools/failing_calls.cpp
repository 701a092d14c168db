// A library to load before the C library (LD_PRELOAD): the first FAIL_TIMES calls of FAIL_CALL (stat, open,
// fsync, rename) fail as a broken disk would whose path contains FAIL_PATH.

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {
bool fails(const char* call, const char* path) {
    static int left = std::getenv("FAIL_TIMES") ? std::atoi(std::getenv("FAIL_TIMES")) : 0;
    const char *wantedCall = std::getenv("FAIL_CALL"), *wantedPath = std::getenv("FAIL_PATH");
    if (left <= 0 || !wantedCall || !wantedPath || !path) return false;
    if (std::strcmp(call, wantedCall) != 0 || !std::strstr(path, wantedPath)) return false;
    --left;
    errno = EIO;
    return true;
}

template <typename Function> Function next(const char* name) {
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}
using StatFunction = int (*)(const char*, struct stat*);
} // namespace

extern "C" {
int stat(const char* path, struct stat* out) noexcept {
    return fails("stat", path) ? -1 : next<StatFunction>("stat")(path, out);
}
int lstat(const char* path, struct stat* out) noexcept {
    return fails("stat", path) ? -1 : next<StatFunction>("lstat")(path, out);
}
int open(const char* path, int flags, ...) {
    std::va_list rest;
    va_start(rest, flags);
    const mode_t mode = (flags & O_CREAT) ? va_arg(rest, mode_t) : 0;
    va_end(rest);
    return fails("open", path) ? -1 : next<int (*)(const char*, int, ...)>("open")(path, flags, mode);
}
FILE* fopen(const char* path, const char* mode) {
    return fails("open", path) ? nullptr : next<FILE* (*)(const char*, const char*)>("fopen")(path, mode);
}
int rename(const char* from, const char* to) noexcept {
    return fails("rename", from) ? -1 : next<int (*)(const char*, const char*)>("rename")(from, to);
}
int fsync(int descriptor) {
    char path[4096] = {};
    const std::string link = "/proc/self/fd/" + std::to_string(descriptor);
    if (readlink(link.c_str(), path, sizeof path - 1) > 0 && fails("fsync", path)) return -1;
    return next<int (*)(int)>("fsync")(descriptor);
}
}
