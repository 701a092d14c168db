#include "platform/clock.h"

#include <SDL.h>
#include <ctime>

namespace platform {
namespace {
uint32_t g_step = 0;
uint32_t g_virtualTicks = 0;

std::string format(const char* pattern) {
    std::time_t now = isFixedStep() ? 0 : std::time(nullptr);
    std::tm parts{};
    if (isFixedStep()) {
        gmtime_r(&now, &parts);
    } else {
        localtime_r(&now, &parts);
    }
    char text[32];
    const size_t n = std::strftime(text, sizeof text, pattern, &parts);
    return {text, n};
}
} // namespace

uint32_t ticks() {
    return g_step ? g_virtualTicks : SDL_GetTicks();
}

void sleepMs(uint32_t ms) {
    if (!g_step) SDL_Delay(ms);
}

void useFixedStep(uint32_t ms) {
    g_step = ms;
    g_virtualTicks = 0;
}

bool isFixedStep() {
    return g_step != 0;
}
void framePresented() {
    g_virtualTicks += g_step;
}
std::string timeOfDay() {
    return format("%H:%M:%S");
}
std::string monthDayYear() {
    return format("%m/%d/%y");
}
} // namespace platform
