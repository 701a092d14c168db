#pragma once
#include "core/game_state.h"
#include "core/vector3.h"
#include "support/temp_game.h"

#include <cstdint>
#include <initializer_list>
#include <string>

constexpr uint32_t kFrameMs = 16;

/// The managers on files of their own: a level without a window.
struct BareGame {
    struct File {
        const char* name;
        const char* text;
    };
    TempGame files;
    GameState state = STATE_GAME;

    /// With these files beside movement.cfg and the objects' model.
    explicit BareGame(std::initializer_list<File> texts);
    ~BareGame();

    /// An object element, "o" and its number; `inside` stands in it, action "a" is its first.
    static std::string object(int64_t number, const cVector3& at, const cVector3& direction,
                              const std::string& inside, bool body = true);
    void load(const std::string& objects);
    void frame();
};
