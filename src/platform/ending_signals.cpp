#include "platform/ending_signals.h"

#include <csignal>
#include <initializer_list>

namespace platform {
namespace {
volatile std::sig_atomic_t g_asked = 0;
} // namespace

void catchEndingSignals() {
    struct sigaction action = {};
    action.sa_handler = [](int) { g_asked = 1; };
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction old = {};
        sigaction(signal, nullptr, &old);
        if (old.sa_handler != SIG_IGN) sigaction(signal, &action, nullptr); // whoever ignores one goes on to
    }
}

bool isEndingAsked() {
    return g_asked != 0;
}
} // namespace platform
