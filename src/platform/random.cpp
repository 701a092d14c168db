#include "platform/random.h"

namespace platform {
namespace {
uint32_t g_state = 1;
bool g_locked = false;
} // namespace

int32_t randomNumber() {
    // Linear congruential generator of Numerical Recipes (Knuth/Lewis constants); the high bits are the good
    // ones.
    g_state = g_state * 1664525u + 1013904223u;
    return static_cast<int32_t>(g_state >> 17);
}

float randomSigned() {
    const int32_t first = randomNumber();
    const int32_t second = randomNumber();
    return static_cast<float>(first - second) / 32767.0f;
}

void seedRandom(uint32_t seed) {
    if (!g_locked) g_state = seed;
}

void lockRandomSeed(uint32_t seed) {
    g_state = seed;
    g_locked = true;
}
} // namespace platform
