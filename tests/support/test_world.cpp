#include "support/test_world.h"

#include "core/application.h"
#include "core/frustum.h"
#include "core/name_hash.h"
#include "data/binary_reader.h"
#include "game/physics_world.h"
#include "game/player.h"
#include "models/character_model.h"
#include "platform/random.h"
#include "render/particles.h"
#include "render/renderer.h"
#include "render/texture_cache.h"
#include "script/event_mgr.h"
#include "ui/input_mgr.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <gtest/gtest.h>

namespace {
constexpr struct {
    const char *file, *text;
} kConfigs[] = {
    {"movement.cfg",
     "GRAVITY 0.01\nWALK_SPEED 0.05\nRUN_SPEED 0.1\nJUMP_SPEED 0.5\nFRICTION 0.5\nSNAP_GROUND 0.06\n"
     "SLOPE_BOUNCE 0.1\nZOOM_SPEED 0.5\n"},
    {"camera.cfg", "FREE_SPEED 0.5\nMIN_DISTANCE 1.5\nMAX_DISTANCE 8.0\n"},
    {"character.cfg", "MAX_HP 100\nREGENTIME 1000\n"},
    {"input.cfg",
     "CONSOLE_HEIGHT 16\nCONSOLE_SCROLL_SPEED 6\nCMD_SHOWCONSOLE 96\nCMD_SCROLLUP 280\nCMD_SCROLLDOWN 281\n"
     "MAX_HOLD 1200\n"},
    {"inventory.cfg", "SHOW_TIME 200\nSHOW_INFO 180\nWIDTH 327\n"},
    {"window.cfg", "WINDOW_HEIGHT 600\n"},
    {"messages.cfg", "X_POSITION 100\nY_POSITION 210\nHEIGHT 120\n"},
};
cModelObject tetrahedron(float size) {
    cModelObject o;
    o.positions = {{0, 0, 0}, {size, 0, 0}, {0, size, 0}, {0, 0, size}};
    o.faces = {{0, 2, 1}, {0, 1, 3}, {0, 3, 2}, {1, 2, 3}};
    return o;
}

cAnimModel characterPart(const char* tagName) {
    cAnimModel p;
    cAnimMesh mesh;
    mesh.verticesPerFrame = 3;
    mesh.positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}};
    mesh.frameNormals.assign(6, {0, 0, 1});
    mesh.texCoords = {{0, 0}, {1, 0}, {0, 1}};
    mesh.faces = {{0, 1, 2}};
    p.meshes = {mesh};
    p.meshTextures = {{"body", ""}};
    p.frameCount = 2;
    p.tagCount = 1;
    cTag tag;
    std::strncpy(tag.name.data(), tagName, tag.name.size() - 1);
    p.tags = {tag, tag};
    p.tagBlockSize = 2 * kTagBytes;
    p.attachments = {cAnimModel::kNothing};
    for (const char* name : {"FIRST", "SECOND", "BOTH_DEATH1", "BOTH_BODYHIT1", "BOTH_BODYHIT2"}) {
        p.animations.push_back({name, 0, 2, 0, 20});
    }
    for (const char* name : cPlayer::kAnimationKeys)
        p.animations.push_back({std::string("BOTH_") + name, 0, 2, 0, 20});
    return p;
}
} // namespace

TestWorld::TestWorld() {
    setenv("SDL_VIDEODRIVER", "dummy", 1); // whatever else SDL would find to draw on
    for (const auto& config : kConfigs) game.write(config.file, config.text);
    std::string animations;
    for (const char* key : cPlayer::kAnimationKeys) animations += std::string(key) + " BOTH_" + key + "\n";
    game.write("animation.cfg", animations);
    platform::seedRandom(1);
    cInputMgr::instance().saveOnExit = false;
    cInputMgr::instance().bindings.setKeyState(keys.data());
    cWorld::instance().attachState(&state);
    TempGame::clearErrors();
}

TestWorld::~TestWorld() {
    cApplication::destroyManagers();
    cTextureCache::instance().releaseAll();
}

void TestWorld::setGeometry(const std::vector<cModelObject>& parts) const {
    cModel model;
    for (const cModelObject& part : parts) model.add(part);
    cPhysicsWorld::instance().setGeometry(model, 10, 6);
}

void TestWorld::setFloor(float y) const {
    setGeometry({floorMesh(y, 50)});
}

void TestWorld::writeCpm(const std::string& name, float size) const {
    cModel model;
    model.add(tetrahedron(size));
    model.saveCpm(name);
}

void TestWorld::writeOctree(const std::string& name, const cModelObject& part) const {
    cModel model;
    model.add(part);
    cMaterialList materials;
    materials.addFrom(model);
    cOctree octree;
    octree.build(model, 10, 4, true);
    cBinaryWriter out;
    materials.write(out);
    octree.write(out, materials);
    out.save(name);
}

void TestWorld::writeCharacter(const std::string& baseName) const {
    cCharacterModel model;
    model.parts[kLowerPart] = characterPart("tag_torso");
    model.parts[kUpperPart] = characterPart("tag_head");
    model.parts[kHeadPart] = characterPart("tag_hat");
    model.writeCff(baseName);
}

void TestWorld::writeEnvironment(const std::string& name, float deathHeight, bool water,
                                 const cVector3& light) const {
    cModel model;
    model.add(tetrahedron(1));
    cMaterialList materials;
    materials.addFrom(model);
    cBinaryWriter out;
    out.vector3(light);
    out.f32(0);
    out.f32(deathHeight);
    out.u8(water);
    out.f32(1);
    out.f32(0);
    out.u8(10);
    materials.write(out);
    for (int i = 0; i < (water ? 3 : 2); ++i) model.writeObjects(out, materials);
    out.save(name);
}

void TestWorld::writeLevel(const std::string& elements, const std::string& fileName) const {
    std::string document = "<level name='l'>" + elements + "</level>";
    std::replace(document.begin(), document.end(), '\'', '"');
    game.write(fileName, document);
}

int TestWorld::load(const std::string& elements, const std::string& fileName) const {
    writeLevel(elements, fileName);
    return cWorld::instance().loadLevel(fileName);
}

void TestWorld::writeModels() const {
    writeCpm("thing.cpm");
    writeCharacter("maincharfinal\\mainchar_noweapon");
    cWorld::instance().spawnPoint = "hut";
}

void TestWorld::frame() {
    cObjectMgr::instance().update(16, &state);
    cPhysicsWorld::instance().step(16, state);
    cEventMgr::instance().process(16, &state);
    cInputMgr::instance().bindings.countDown(16);
}

cObject* TestWorld::object(const std::string& name) {
    const cController* found = cObjectMgr::instance().findCmlObject(nameHash(name));
    return found ? found->getOwner() : nullptr;
}

cCmlObject& TestWorld::script(const std::string& name) {
    return *static_cast<cCmlObject*>(object(name)->getController());
}

int32_t TestWorld::local(const std::string& objectName, const std::string& variable) {
    const cCmlObject& self = script(objectName);
    const auto it = self.getElement()->localNames.find(variable);
    EXPECT_NE(it, self.getElement()->localNames.end()) << variable;
    return it == self.getElement()->localNames.end() ? -999999 : self.getLocal(it->second);
}

std::string objectElement(const std::string& name, const std::string& attributes, const std::string& inside,
                          const std::string& physics) {
    return "<object name=\"" + name + "\" " + attributes +
           "><appearance type=\"static\"><model file=\"thing.cpm\" /></appearance>" +
           (physics.find('<') == std::string::npos ? "<physics " + physics + " />" : physics) + inside +
           "</object>";
}

std::string spawnElement(const std::string& position, const std::string& direction) {
    return "<player spawnpoint=\"hut\"><physics position=\"" + position + "\" direction=\"" + direction +
           "\" up=\"0,1,0\" /><camera firstperson=\"0\" offset=\"0,0,0\" position=\"0,0,4\" /></player>";
}

cModelObject floorMesh(float y, float half) {
    cModelObject o;
    o.positions = {{-half, y, -half}, {-half, y, half}, {half, y, half}, {half, y, -half}};
    o.faces = {{0, 1, 2}, {0, 2, 3}};
    return o;
}

cModelObject wallMesh(float x, float half) {
    cModelObject o;
    o.positions = {{x, -half, -half}, {x, -half, half}, {x, half, half}, {x, half, -half}};
    o.faces = {{0, 1, 2}, {0, 2, 3}};
    return o;
}
