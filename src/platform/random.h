#pragma once
#include <cstdint>

namespace platform {
/// The program's one random generator: 0 … 32767.
int32_t randomNumber();
/// (r − r') / 32767, in −1 … 1.
float randomSigned();
/// Restarts the sequence; without effect once lockRandomSeed was called.
void seedRandom(uint32_t seed);
/// Fixes the seed for the whole run, so that runs repeat.
void lockRandomSeed(uint32_t seed);
} // namespace platform
