#include "platform/console_streams.h"

#include "platform/folder_lock.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace platform {
namespace {
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kSanitized = true;
#else
constexpr bool kSanitized = false;
#endif

int g_terminal = STDERR_FILENO; ///< standard error as it was at the start

void redirect(int descriptor, const char* name) {
    std::string path;
    const int file = openRunFile(name, path);
    if (file < 0) return;
    dup2(file, descriptor);
    close(file);
}
} // namespace

void redirectConsoleStreams() {
    if (kSanitized) return;
    std::fflush(nullptr);
    g_terminal = fcntl(STDERR_FILENO, F_DUPFD_CLOEXEC, 0);
    redirect(STDOUT_FILENO, "stdout.txt");
    redirect(STDERR_FILENO, "stderr.txt");
}

void tellTerminal(const std::string& sentence) {
    dprintf(g_terminal, "%s\n", sentence.c_str());
}
} // namespace platform
