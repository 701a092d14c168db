#include "platform/progress.h"

#include "platform/clock.h"
#include "platform/console_streams.h"

#include <algorithm>

namespace platform {
namespace {
constexpr uint32_t kQuietMs = 1000;
}

cProgress::cProgress(std::string tool) : tool_(std::move(tool)), start_(ticks()) {}

void cProgress::stage(const std::string& what) {
    stage_ = what;
    if (ticks() - start_ >= kQuietMs) tell(what);
}

void cProgress::done(double share) {
    const uint32_t now = ticks();
    if (now - start_ < kQuietMs || (lastLine_ != 0 && now - lastLine_ < kQuietMs)) return;
    tell(stage_ + ", " + std::to_string(static_cast<int>(std::clamp(share, 0.0, 1.0) * 100)) + " %");
}

void cProgress::tell(const std::string& sentence) {
    lastLine_ = ticks();
    tellTerminal(tool_ + ": " + sentence);
}
} // namespace platform
