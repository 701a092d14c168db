#pragma once
#include "forge/output.h"
#include "forge/skeleton.h"
#include "forge/writers.h"

/// People: one body plan, many builds and dresses.
namespace humanoid {
/// Angles in degrees. Everything 0 is standing upright with hanging arms.
struct Arm {
    float forwards = 0; ///< swing at the shoulder
    float out = 6;      ///< away from the body
    float twist = 0;    ///< inwards, brings a bent fore-arm before the chest
    float elbow = 12;   ///< bend
};
struct Leg {
    float forwards = 0; ///< ankle before its place at rest, units
    float up = 0;       ///< ankle above its place at rest
    float out = 0;      ///< ankle outwards
    float toe = 0;      ///< toe up, degrees
};
struct Pose {
    float down = 0, forwards = 0, right = 0; ///< hips moved from their place at rest, units
    float lean = 0, tilt = 0, yaw = 0;       ///< whole body: forwards, to its left, forwards to the left
    bool legsFollowBody = false;             ///< legs are given in the body's space instead of the ground's
    float bend = 0, twist = 0, sway = 0;     ///< back: forwards, to the left, sidewards to the left
    float nod = 0, look = 0;                 ///< head: forwards, to the left
    Leg leg[2];                              ///< right, left
    Arm arm[2];
};

struct Move {
    const char* name;
    int frames, fps;
    bool loops; ///< one-shot moves get one more frame that repeats the last pose
    Pose (*pose)(float t);
};
/// Every move that both halves of every person list.
const std::vector<Move>& moves();

enum class Hair { kShort, kPonytail, kLong, kTousled };
enum class Hat { kNone, kFelt, kSouwester, kScarf };
/// Measures in units from the feet's plane upwards are absolute: the soles lie at −1.25, the crown at 0.75,
/// before everything is multiplied by `scale`.
struct Build {
    float scale = 1; ///< of the whole person
    float girth = 1; ///< of the trunk
    float waist = 1; ///< of its middle alone
    float shoulders = 0.25f;
    float limbs = 1; ///< thickness
    float head = 1;
    float jaw = 1, nose = 1; ///< width of the lower face, size of the nose
    float skirt = 0.22f;     ///< length of the coat below the belt
    Hair hair = Hair::kShort;
    Hat hat = Hat::kNone;
    bool beard = false;
};
/// Colours as 0xRRGGBB.
struct Dress {
    unsigned skin, hair, coat, trim, shirt, trousers, boots, belt, eyes;
    unsigned apron = 0;     ///< 0: none
    bool bareShins = false; ///< short trousers
    bool striped = false;   ///< sleeves and shirt have stripes of the trim's colour
    bool freckled = false;
    float lashes = 1; ///< thickness of the upper lid
};
/// Three files DIRECTORY/NAME_{head,upper,lower}.cff and their pictures. `zUp`: stored as people of the
/// level.
void make(forge::Output& out, const std::string& directory, const std::string& name, const Build& build,
          const Dress& dress, bool zUp);
/// The three pictures of a person.
void paint(forge::Output& out, const std::string& directory, const std::string& name, const Build& build,
           const Dress& dress);
} // namespace humanoid
