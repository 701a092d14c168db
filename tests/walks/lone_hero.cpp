#include "walks/lone_hero.h"

#include "core/application.h"
#include "core/name_hash.h"
#include "game/physics_world.h"
#include "render/texture_cache.h"
#include "script/cml_object.h"
#include "script/event_mgr.h"
#include "ui/input_mgr.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>

const std::vector<LoneHero::Level> LoneHero::kLevels = {
    {"testlevel.xml", "hut", 32, {{0.3f, 3, 25.7f}, {-14.4f, 9, -10.2f}, {9.2f, 6, 6.9f}}, true, true, true},
    {"deepwood.xml", "shore", 40, {{0.1f, 4, -22}}, false, true, false},
    {"summit.xml", "landing", 36, {{0.1f, 17, 6}}, true, true, true}};

namespace {
constexpr float kStanding = 1.31f; ///< his position above the ground, and a little
constexpr float kDegrees = 57.29578f;

cObject& hero() {
    return *cObjectMgr::instance().hero();
}

bool isFree() {
    cPhysicsWorld& physics = cPhysicsWorld::instance();
    const cCapsule& shape = hero().body->shape;
    cOctree::LeafList meshes;
    physics.octree().queryBodies(shape, shape, meshes);
    if (physics.overlaps(shape, meshes)) return false;
    for (const cCollisionBody& other : physics.bodies()) {
        const float radii = shape.radius + other.shape.radius;
        if (other.owner != &hero() && (other.flags & MOVE_SOLID) &&
            segmentDistanceSq(shape, other.shape) < radii * radii)
            return false;
    }
    return true;
}
} // namespace

LoneHero::LoneHero(const Level& level) : files_(GAME_DATA) {
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    cInputMgr& input = cInputMgr::instance();
    input.saveOnExit = false;
    input.bindings.setKeyState(keys_.data());
    cInputSettings& settings = input.bindings.settings;
    for (int c = 0; c < kCommandCount; ++c) settings.keysThirdPerson[static_cast<size_t>(c)] = 10 + c;
    settings.repeatIntervals.fill(0);
    settings.walkIsDefault = 0;
    settings.moveRelativeToCamera = 0;
    cWorld& world = cWorld::instance();
    world.attachState(&state_);
    world.spawnPoint = level.spawn;
    EXPECT_EQ(world.loadLevel(level.file), 0);
    cEnvironment environment;
    EXPECT_TRUE(environment.load(world.environmentFile));
    deathHeight_ = environment.deathHeight();
    places_.push_back(place());
    for (const cVector3& above : level.alsoFrom) {
        EXPECT_TRUE(stand(above)) << above.x << ", " << above.z;
        places_.push_back(place());
    }
    put(places_[0]);
}

LoneHero::~LoneHero() {
    cApplication::destroyManagers();
    cTextureCache::instance().releaseAll();
}

void LoneHero::face(float degrees) {
    const float a = degrees / kDegrees;
    hero().setDirection({std::sin(a), 0, -std::cos(a)});
}

void LoneHero::faceTo(float x, float z) {
    face(std::atan2(x - place().x, place().z - z) * kDegrees);
}

void LoneHero::frame() {
    hero().getController()->update(16, &state_);
    cPhysicsWorld::instance().step(16, state_);
    cEventMgr::instance().clear();
    if (!airborne()) remember();
    constexpr float kAway = 0.5f;
    const bool stays = airborne() && (place() - anchor_).lengthSq() < kAway * kAway;
    inAir_ = stays ? inAir_ + 1 : 0;
    if (!stays) anchor_ = place();
}

void LoneHero::remember() {
    const cVector3 p = place();
    if (isDead()) return;
    bool& known = known_[{static_cast<int>(std::floor(p.x)), static_cast<int>(std::floor(p.y / 2)),
                          static_cast<int>(std::floor(p.z))}];
    if (!known) places_.push_back(p);
    known = true;
}

bool LoneHero::put(const cVector3& place) {
    hero().setPosition(place);
    anchor_ = place;
    inAir_ = 0;
    return isFree();
}

bool LoneHero::stand(const cVector3& above) {
    const cVector3 below = above - cVector3(0, 60, 0);
    const float t = cPhysicsWorld::instance().octree().trace(above, below);
    return t < 1 && put(lerp(above, below, t) + cVector3(0, kStanding, 0));
}

void LoneHero::standAgain() {
    // Half of the time among the newest, so that they lead on.
    constexpr size_t kNewest = 60;
    for (int i = 0; i < 20; ++i) {
        const size_t count = random.index(2) ? places_.size() : std::min(places_.size(), kNewest);
        const auto back = static_cast<size_t>(random.index(static_cast<int>(count)));
        if (put(places_[places_.size() - 1 - back])) return;
    }
    put(places_[0]);
}

void LoneHero::takeAway(const char* object) const {
    cController* found = cObjectMgr::instance().findCmlObject(nameHash(object));
    if (!found) return;
    auto& script = *static_cast<cCmlObject*>(found);
    script.setFlags(MOVE_PASSABLE);
    script.clearFlags(MOVE_SOLID);
}

cVector3 LoneHero::place() const {
    return hero().getPosition();
}
bool LoneHero::airborne() const {
    return hero().body->airborne;
}
bool LoneHero::isDead() const {
    return place().y < deathHeight_;
}

std::string LoneHero::describe() const {
    const cVector3 p = place();
    return "(" + std::to_string(p.x) + ", " + std::to_string(p.y) + ", " + std::to_string(p.z) + ")" +
           (airborne() ? " in the air" : "");
}
