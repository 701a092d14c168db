#pragma once
#include <cstdint>
#include <string>

namespace platform {
/// Milliseconds since the program's start (SDL's tick counter); with a fixed step, frames presented × step.
uint32_t ticks();
/// Suspends the thread; returns at once with a fixed step.
void sleepMs(uint32_t ms);
/// Makes time virtual: ticks advance by `ms` at each framePresented, dates are fixed. 0 returns to real time.
void useFixedStep(uint32_t ms);
bool isFixedStep();
void framePresented();
/// "hh:mm:ss", 24 hours, local time.
std::string timeOfDay();
/// "mm/dd/yy", local date.
std::string monthDayYear();
} // namespace platform
