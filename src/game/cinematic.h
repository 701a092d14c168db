#pragma once
#include "core/game_state.h"
#include "core/vector3.h"

#include <cstdint>

class cCmlElement;

/// What the cinematic player keeps between frames. Time is counted in frames.
struct cCinematic {
    struct Colour {
        float r = 0, g = 0, b = 0, a = 0;
    };

    uint32_t frame = 0;
    const cCmlElement* element = nullptr;
    int32_t length = 0;
    const cCmlElement* cameraTrack = nullptr;
    const cCmlElement* heroTrack = nullptr;
    int32_t keyA = 0, keyB = 0;     ///< positions among the camera track's frames
    int32_t frameA = 0, frameB = 0; ///< their frame numbers
    int32_t heroKey = 0, heroKeyFrame = 0;
    const cCmlElement* filter = nullptr; ///< being approached
    int32_t filterFrame = 0, fadeFromFrame = 0;
    Colour fadeFrom, fade;
    GameState keptState = STATE_GAME; ///< to return to; STATE_CINEMATIC until the first step has kept it
    bool playing = false;             ///< started and not yet ended
};
