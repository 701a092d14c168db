#pragma once
#include "core/game_state.h"
#include "support/temp_game.h"
#include "support/test_level.h"
#include "ui/input_settings.h"

#include <array>
#include <map>
#include <string>
#include <vector>

/// The hero of a shipped level without window, pictures and sound: his keys, his controller and the physics,
/// 16 ms a frame. Everybody else stands where the level puts him.
class LoneHero {
public:
    struct Level {
        const char *file, *spawn;
        float reach;                       ///< half width
        std::vector<cVector3> alsoFrom;    ///< above ground that is reached in ways that are not tried here
        bool seaNorth, seaSouth, seaSides; ///< else rock, which nobody passes
    };
    static const std::vector<Level> kLevels;

    explicit LoneHero(const Level& level);
    ~LoneHero();

    void hold(int command, bool on) { keys_[static_cast<size_t>(10 + command)] = on; }
    void releaseAll() { keys_.fill(0); }
    void face(float degrees); ///< clockwise from north (−z)
    void faceTo(float x, float z);
    void frame();

    bool put(const cVector3& place);   ///< false when something solid is there
    bool stand(const cVector3& above); ///< on the ground below a point; false as above
    /// Somewhere where he has stood before, or where the level says; each call may find another.
    void standAgain();
    const std::vector<cVector3>& places() const { return places_; }
    void
    takeAway(const char* object) const; ///< its body, as an opened door's; nothing without such an object

    cVector3 place() const;
    bool airborne() const;
    bool isDead() const; ///< below the height at which he dies
    /// For two seconds in the air without getting half a unit away.
    bool hangs() const { return inAir_ >= kHanging; }
    std::string describe() const;

    TestRandom random;

private:
    static constexpr int kHanging = 120;
    void remember();

    TempGame files_;
    GameState state_ = STATE_GAME;
    std::array<uint8_t, kKeyCount> keys_{};
    float deathHeight_ = 0;
    int inAir_ = 0; ///< frames since he left `anchor_` or the ground
    cVector3 anchor_;
    std::vector<cVector3> places_;
    std::map<std::array<int, 3>, bool> known_; ///< cells of `places_`
};
