// Part of every program of a sanitizer build.
#include <unistd.h>

// The leak checker needs /proc and ends the program without it; its options come from there as well, so the
// environment cannot switch it off.
extern "C" int __lsan_is_turned_off();
extern "C" int __lsan_is_turned_off() { return access("/proc/self/task", R_OK) != 0; }

// It names what it finds at the end of the process; a driver that was unloaded by then has no name and cannot be told
// from the game. Nothing is unloaded.
extern "C" int dlclose(void*);
extern "C" int dlclose(void*) { return 0; }
