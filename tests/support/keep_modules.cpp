// The leak checker names what it finds at the end of the process; a driver that was unloaded by then has no
// name and cannot be told from the game. Under the sanitizer nothing is unloaded.
#if defined(__SANITIZE_ADDRESS__)
extern "C" int dlclose(void*) {
    return 0;
}
#endif
