// A level document as the game takes it: objects are made, their scripts run, and a player uses what he
// touches, turns pages, fires and walks for some frames.
#include "core/application.h"
#include "game/item_def.h"
#include "game/physics_world.h"
#include "platform/clock.h"
#include "platform/random.h"
#include "render/renderer.h"
#include "script/dialogue.h"
#include "script/event_mgr.h"
#include "support.h"
#include "ui/input_mgr.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <array>

namespace {
constexpr const char* kItems =
    "<items><item name=\"gun\" different_subobjects=\"1\" allow_grouping=\"1\"><image />"
    "<weapon type=\"ballistic\" range=\"20\" damage=\"20\" /><animation length=\"2\" action=\"1\" /></item>"
    "<item name=\"bomb\" allow_grouping=\"1\"><image /><weapon type=\"projectile\">"
    "<physics radius=\"0.15\" gravity=\"0,-0.006,0\" max_speed=\"0.3\" charge=\"1\" />"
    "<damage radius=\"1\" falloff=\"2\" amount=\"40\" /></weapon><animation length=\"2\" action=\"1\" "
    "/></item>"
    "<item name=\"club\"><image /><weapon type=\"close\" damage=\"15\" offset=\"0,0,-1\" radius=\"0.8\" />"
    "<animation length=\"2\" action=\"1\" /></item></items>";

constexpr int kFrames = 28;
constexpr uint32_t kFrameMs = 64; ///< long, so that timers and held-off keys come round
constexpr int kFirstKey = 10;     ///< key of command 0; the others follow

/// What the player does, for ever: in each `every` frames the key is down once.
constexpr struct {
    int command, every;
} kPlay[] = {{CMD_USE, 5},  {CMD_FORWARD, 2},   {CMD_BACK, 7},
             {CMD_FIRE, 3}, {CMD_NEXT_ITEM, 6}, {CMD_JUMP, 23}};

void pressKeys(std::array<uint8_t, kKeyCount>& keys, int frame) {
    for (const auto& row : kPlay)
        keys[static_cast<size_t>(kFirstKey + row.command)] = frame % row.every == row.every - 1;
}

/// What cApplication::gameFrame does, without a window.
void gameFrame(GameState& state) {
    cWorld& world = cWorld::instance();
    world.update(kFrameMs, &state);
    cObjectMgr::instance().update(kFrameMs, &state);
    cPhysicsWorld::instance().step(kFrameMs, state);
    cEventMgr::instance().process(kFrameMs, &state);
    world.updateCameraOrCinematic(kFrameMs, &state);
    cObjectMgr::instance().draw(true, world.viewInfo());
    if (cDialogue::instance().isVisible() && world.levelChangePending <= 0) cDialogue::instance().draw();
    if (world.levelChangePending > 0) world.levelChangePending += 240; // the fade is the same in every frame
    world.drawOverlays();
    cInputMgr::instance().bindings.countDown(kFrameMs);
    cRenderer::instance().endFrame();
    platform::framePresented();
}
} // namespace

FUZZ_TARGET(level) {
    // The queue of a frame's events, and its half while it grows.
    fuzz::allowMemory(cEventMgr::kMostEvents * sizeof(cEvent) * 3 / 2);
    const fuzz::Tetrahedron& thing = fuzz::tetrahedron();
    fuzz::putFile("in.xml", fuzz::text(data, size));
    fuzz::putFile("thing.cpm", thing.model);
    fuzz::putFile("level.oct", thing.octree);
    fuzz::putFile("objects.xml", kItems);
    fuzz::putFile("movement.cfg",
                  "GRAVITY 0.01\nFRICTION 0.5\nSNAP_GROUND 0.06\nWALK_SPEED 0.05\nRUN_SPEED 0.1\n");
    fuzz::putFile("character.cfg", "MAX_HP 100\nREGENTIME 1000\n");
    fuzz::putFile("messages.cfg", "X_POSITION 0\nY_POSITION 210\nHEIGHT 120\n");
    cApplication::destroyGame(); // another target may have begun one, without these files
    platform::useFixedStep(kFrameMs);
    cRenderer::instance(); // collects texts without a window, and outlives the run; it seeds the random
                           // generator
    platform::seedRandom(1);
    GameState state = STATE_GAME;
    std::array<uint8_t, kKeyCount> keys{};
    cInputMgr& input = cInputMgr::instance();
    input.saveOnExit = false;
    input.bindings.setKeyState(keys.data());
    for (int c = 0; c < kCommandCount; ++c)
        input.bindings.settings.keysThirdPerson[static_cast<size_t>(c)] = kFirstKey + c;
    cItemDefs::instance().loadItemDefs();
    cWorld& world = cWorld::instance();
    world.attachState(&state);
    world.heroName = "Ann";
    fuzz::cDigest digest;
    const int result = world.loadLevel("in.xml");
    for (int frame = 0; frame < kFrames && state != STATE_QUIT; ++frame) {
        pressKeys(keys, frame);
        gameFrame(state);
        digest.addValue(state).addValue(cObjectMgr::instance().count());
    }
    for (size_t i = 0; i < cObjectMgr::instance().count(); ++i)
        digest.addValue(cObjectMgr::instance().get(i)->getPosition());
    digest.addValue(world.health)
        .addValue(world.inventory.entries().size())
        .addValue(world.levelChangePending);
    cApplication::destroyGame();
    return result == 0 ? digest.value() : 0;
}
