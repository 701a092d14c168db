#include "bare_game.h"

#include "core/application.h"
#include "game/physics_world.h"
#include "inputs.h"
#include "platform/random.h"
#include "render/renderer.h"
#include "script/event_mgr.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <cstdlib>

namespace {
std::string text(const cVector3& v) {
    return std::to_string(v.x) + "," + std::to_string(v.y) + "," + std::to_string(v.z);
}
} // namespace

BareGame::BareGame(std::initializer_list<File> texts) {
    setenv("SDL_VIDEODRIVER", "dummy", 1);
    for (const File& file : texts) files.write(file.name, file.text);
    files.write("movement.cfg", "SNAP_GROUND 0.06\n");
    cModel thing;
    thing.add(inputs::surface(20));
    thing.saveCpm("thing.cpm");
    cWorld::instance().attachState(&state);
    platform::seedRandom(1);
}

BareGame::~BareGame() {
    cApplication::destroyManagers();
}

std::string BareGame::object(int64_t number, const cVector3& at, const cVector3& direction,
                             const std::string& inside, bool body) {
    return "<object name=\"o" + std::to_string(number) +
           "\" default_action=\"a\"><appearance type=\"static\"><model file=\"thing.cpm\" /></appearance>"
           "<physics position=\"" +
           text(at) + "\" direction=\"" + text(direction) + "\" up=\"0,1,0\">" +
           (body ? "<boundingvolume radius=\"0.5\" solid=\"1\" />" : "") + "</physics>" + inside +
           "</object>\n";
}

void BareGame::load(const std::string& objects) {
    files.write("level.xml", "<level name=\"l\">\n" + objects + "</level>");
    cWorld::instance().loadLevel("level.xml");
}

void BareGame::frame() {
    cObjectMgr::instance().update(kFrameMs, &state);
    cPhysicsWorld::instance().step(kFrameMs, state);
    cEventMgr::instance().process(kFrameMs, &state);
    cRenderer::instance().endFrame();
}
