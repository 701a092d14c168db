#include "platform/folder_lock.h"

#include "platform/files.h"
#include "platform/user_files.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <filesystem>
#include <set>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace platform {
namespace {
constexpr const char* kLockFile = "quorvane.lock";
constexpr int kTries = 600;
constexpr std::chrono::milliseconds kPause(5);
constexpr int kMostRuns = 9; ///< at a time that have a log of their own

/// "name-2.ext" for the second run.
std::string numbered(const std::string& name, int run) {
    if (run == 1) return name;
    const size_t dot = std::min(name.rfind('.'), name.size());
    return name.substr(0, dot) + "-" + std::to_string(run) + name.substr(dot);
}

/// Where the file really stands: programs of two user directories may share it by links.
std::string lockPath(const std::string& name) {
    const std::string path = userPath(name), target = targetOf(path);
    return (std::filesystem::path(target.empty() ? path : target).parent_path() / kLockFile).string();
}

/// Another user's lock file, or one in a folder that is read-only, can be locked without being written.
int openLock(const std::string& path) {
    const int file = open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666);
    return file >= 0 ? file : open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
}

/// 0, or the error that came.
int lockFile(int file) {
    for (int i = 0; i < kTries; ++i) {
        if (flock(file, LOCK_EX | LOCK_NB) == 0) return 0;
        if (errno != EWOULDBLOCK && errno != EINTR) break;
        std::this_thread::sleep_for(kPause);
    }
    return errno;
}

void tellOnce(const std::string& path) {
    static std::set<std::string> told;
    if (told.insert(path).second)
        reportFileProblem(path + " cannot be locked: what two programs save there at a time may be lost");
}
} // namespace

cFolderLock::cFolderLock(const std::string& name) {
    const std::string path = lockPath(name);
    file_ = openLock(path);
    const int error = file_ < 0 ? errno : lockFile(file_);
    if (error == EWOULDBLOCK) {
        reportFileProblem(std::string("Another program holds ") + kLockFile + ": going on without it");
    } else if (error != 0) {
        tellOnce(path);
    }
}

cFolderLock::~cFolderLock() {
    if (file_ >= 0) close(file_); // which gives the lock back
}

int openRunFile(const std::string& name, std::string& path) {
    for (int run = 1; run <= kMostRuns; ++run) {
        path = userPath(numbered(name, run));
        if (path.empty()) return -1;
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0644);
        if (file < 0) return -1;
        if (flock(file, LOCK_EX | LOCK_NB) == 0 || errno != EWOULDBLOCK) {
            static_cast<void>(ftruncate(file, 0)); // a device has no length
            return file;
        }
        close(file);
    }
    return -1;
}
} // namespace platform
