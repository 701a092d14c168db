#pragma once
#include <cstdint>

/// What runs in a frame. Held by the application and handed to whoever may change it. The value 2 is not
/// used.
enum GameState : int32_t {
    STATE_GAME = 0,
    STATE_QUIT = 1,
    STATE_INVENTORY = 3,
    STATE_DIALOGUE = 4,
    STATE_MENU = 5,
    STATE_CINEMATIC = 6,
    STATE_INTRO = 7,
    STATE_LOADING = 8, ///< only ever a state to return to, never the current one
};
