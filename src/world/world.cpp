#include "world/world.h"

#include "core/config_mgr.h"
#include "core/name_hash.h"
#include "platform/clock.h"
#include "platform/random.h"
#include "render/renderer.h"
#include "script/dialogue.h"
#include "world/model_objects.h"
#include "world/object_mgr.h"

#include <algorithm>

namespace {
cWorld* g_instance = nullptr;

cCharacterPose* heroPose() {
    cObject* hero = cObjectMgr::instance().hero();
    const bool animated = hero && hero->getVisualKind() == cObject::kAnimated;
    return animated ? &static_cast<cAnimatedObject*>(hero)->pose() : nullptr;
}

void playOnce(const char* animation) {
    cCharacterPose* pose = heroPose();
    if (!pose) return;
    pose->setAnimationByHash(nameHash(animation), nameHash(animation));
    pose->setPlaying(true);
    pose->setLooping(false);
}
} // namespace

cWorld& cWorld::instance() {
    if (!g_instance) g_instance = new cWorld;
    return *g_instance;
}

void cWorld::destroy() {
    delete g_instance;
    g_instance = nullptr;
}

cWorld::cWorld() : maxHealth(cConfigMgr::instance().getInt("MAX_HP", "character")), health(maxHealth) {
    cObjectMgr::instance().setForgetListener([](const cObject* object) {
        if (g_instance) g_instance->forget(object);
    });
}

void cWorld::forget(const cObject* object) {
    camera.forget(object);
    cDialogue::instance().forget(object);
}

bool cWorld::isGameLoaded() const {
    return heroName != kUnloadedHero;
}

void cWorld::update(uint32_t, GameState* state) {
    if (*state != STATE_GAME && *state != STATE_DIALOGUE && *state != STATE_CINEMATIC) return;
    const uint32_t now = platform::ticks();
    int animated = 0;
    for (size_t i = 0; i < cObjectMgr::instance().count(); ++i) {
        cObject* object = cObjectMgr::instance().get(i);
        if (object->getVisualKind() != cObject::kAnimated) continue;
        static_cast<cAnimatedObject*>(object)->advance(now);
        ++animated;
    }
    cRenderer::instance().addDebugText("%d models animated", animated);
}

void cWorld::updateCameraOrCinematic(uint32_t, GameState* state) {
    if (*state == STATE_CINEMATIC || cinematic.keptState == STATE_CINEMATIC) {
        updateCinematic(state);
    } else {
        // The menu only pauses a cinematic; a conversation within it has ended it, since that leads to the
        // game.
        if (*state != STATE_MENU) giveUpCinematic();
        camera.apply();
    }
}

void cWorld::drawLevel() {
    scenery.draw();
}

ViewInfo cWorld::viewInfo() const {
    return {camera.getEye(), lightPosition, celRamp};
}

bool cWorld::isPlayerVisible() const {
    return !camera.isFirstPerson() || !camera.getTarget() || cinematic.playing;
}

void cWorld::drawEnvironment() {
    environment_.draw();
    const cObject* hero = cObjectMgr::instance().hero();
    if (!hero || !environment_.isLoaded() || !(hero->getPosition().y < environment_.deathHeight())) return;
    if (environment_.hasWater()) {
        damage(cConfigMgr::instance().getInt("MAX_HP", "character"));
    } else if (levelChangePending == 0) {
        levelChangePending = 1;
    }
}

void cWorld::damage(int32_t amount) {
    if (health <= 0) return;
    health = static_cast<int32_t>(
        std::clamp<int64_t>(static_cast<int64_t>(health) - amount, INT32_MIN, maxHealth));
    if (amount <= 0) {
        if (health == maxHealth) hud.showStats();
    } else if (health > 0) {
        playOnce(platform::randomNumber() % 2 == 0 ? "BOTH_BODYHIT1" : "BOTH_BODYHIT2");
    } else {
        health = 0;
        playOnce("BOTH_DEATH1");
    }
}
