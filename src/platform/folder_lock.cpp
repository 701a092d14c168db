#include "platform/folder_lock.h"

#include "platform/files.h"
#include "platform/user_files.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <fcntl.h>
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
} // namespace

cFolderLock::cFolderLock() : file_(open(userPath(kLockFile).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666)) {
    // Without a lock file the save goes on unlocked: links may lead to where it can be written all the same.
    if (file_ < 0) return;
    for (int i = 0; i < kTries; ++i) {
        if (flock(file_, LOCK_EX | LOCK_NB) == 0 || (errno != EWOULDBLOCK && errno != EINTR)) return;
        std::this_thread::sleep_for(kPause);
    }
    reportFileProblem(std::string("Another program holds ") + kLockFile + ": going on without it");
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
