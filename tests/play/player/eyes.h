#pragma once
#include "core/game_state.h"
#include "core/vector3.h"
#include "play/player/sight.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

/// What a person sees of the running game, from where the camera stands. Places are relative to where the
/// hero stood when he first came to the level, which he knows again after a death. World units.
namespace eyes {

/// Length on the level.
inline float flat(const cVector3& v) {
    return std::hypot(v.x, v.z);
}

/// A body or thing within the picture and not hidden by the scenery.
struct Thing {
    uint64_t id;      ///< the same thing as long as the level lasts: what a person knows by following it
    const void* look; ///< things that look alike have the same; says nothing else
    cVector3 place;   ///< of its middle
    cVector3 facing;  ///< level, unit length
    bool alive;       ///< moves its limbs: people and animals
    bool lying;       ///< a body on the ground
    bool flying;      ///< shot or thrown
};

/// A spot of the scenery within the picture.
struct Spot {
    enum Kind { kFloor, kWall, kWater, kThing } kind; ///< kThing: the side of something that may move
    cVector3 place;
};

enum class Hold {
    kNothing,
    kNoWeapon,
    kBlow,
    kShot,
    kThrow,
    kSwing
}; ///< kSwing: thrown farther when held longer

struct View {
    GameState screen = STATE_INTRO;
    bool dark = false;       ///< fading out at the end of a level or a life
    uint64_t level = 0;      ///< another number after each loading screen
    cVector3 hero;           ///< his place
    cVector3 forward, right; ///< of the camera, level, unit length
    float pitch = 0;         ///< of the camera, radians upwards
    bool firstPerson = false;
    bool falling = false; ///< no ground under the hero's feet
    float health = 1;     ///< of the bar, 0 … 1
    Hold hold = Hold::kNothing;
    const void* held = nullptr; ///< the picture of what is in the hand
    int count = 0;              ///< the number beside it
    std::vector<Thing> things;
    std::vector<Spot> spots;           ///< some dozen, others in every view
    std::vector<std::string> messages; ///< lines in the corner
    std::string page;                  ///< words of the conversation
    std::vector<std::string> replies;  ///< to choose from
    size_t highlighted = 0;
};

/// Looks once a frame, after it.
class cEyes {
public:
    View look();

private:
    void lookAtThings(View& view) const;
    void lookAtScenery(View& view);
    void read(View& view);
    void seeSpot(View& view, const cVector3& end, float waterHeight) const;

    cSight sight_;
    std::string levelFile_;

    uint64_t hero_ = 0; ///< the hero's serial
    uint64_t level_ = 0, glance_ = 0;
    cVector3 origin_;
    int talkFrames_ = 0;
};
} // namespace eyes
