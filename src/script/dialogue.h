#pragma once
#include "core/game_state.h"

/// Plays talking scripts. None can be started yet, so it is never active.
class cDialogue {
public:
    static cDialogue& instance();

    bool isActive() const { return false; }
    void advance(uint32_t, GameState* state) { *state = STATE_GAME; }
    void close() {}
    void moveChoice(int) {}
};
