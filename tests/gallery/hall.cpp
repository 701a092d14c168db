#include "gallery/hall.h"

#include "audio/tones.h"
#include "game/player.h"
#include "platform/clock.h"
#include "platform/random.h"
#include "ui/input_mgr.h"

#include <cstdlib>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>

namespace {
RunOptions options() {
    RunOptions o;
    o.level = "gallery.xml";
    o.spawn = "hall";
    o.width = 800;
    o.height = 600;
    return o;
}
} // namespace

Hall::Hall() : app(options()) {
    setenv("ALSOFT_DRIVERS", "null", 1);
    for (const char* file : {"gallery.xml", "annex.xml", "objects.xml", "hierarchy.cfl"}) {
        std::ostringstream text;
        text << std::ifstream(std::string(GALLERY_DIR "/") + file).rdbuf();
        t.game.write(file, text.str());
    }
    t.game.write("sound.cfg", "MASTER_DISTANCE_MOD 1.0\n");
    for (const char* sound : {"bell.wav", "sounds/hopp.wav", "sounds/landa.wav"})
        platform::writeFile(sound, wav(0.5, 440));
    for (const char* music : {"waltz.ogg", "sounds/action.ogg"}) platform::writeFile(music, ogg(6));
    const std::string onePixel("\0\0\2\0\0\0\0\0\0\0\0\0\1\0\1\0\30\0abc", 21);
    for (const char* picture : {"explo32x32", "smoke04"})
        t.game.write("particles/" + std::string(picture) + ".tga", onePixel);
    t.writeCpm("thing.cpm");
    t.writeCharacter("maincharfinal\\mainchar_noweapon");
    t.writeCharacter("figure\\figure");
    t.writeOctree("gallery.oct", floorMesh(0, 300));
    platform::useFixedStep(16);
    started = app.start();
    platform::seedRandom(1);
    cInputMgr::instance().bindings.settings.repeatIntervals.fill(0);
    frames(2);
    if (started) TempGame::clearErrors();
}

Hall::~Hall() {
    app.shutdown();
    platform::useFixedStep(0);
}

void Hall::frames(int count) {
    for (int i = 0; i < count; ++i) app.gameFrame();
}

void Hall::hold(int command, int count) {
    keys.press(command);
    frames(count);
    keys.release(command);
    frames(1);
}

void Hall::press(int command, int after) {
    hold(command, 1);
    frames(after);
}

void Hall::load(const std::string& level) {
    world.spawnPoint = "hall";
    ASSERT_EQ(world.loadLevel(level), 0);
    world.inventory.clear();
    world.health = world.maxHealth;
}

void Hall::enter(const std::string& exhibit) {
    load("gallery.xml");
    recorder.attach(world.document);
    stand(exhibit);
    frames(2);
}

void Hall::stand(const std::string& exhibit, float distance) {
    hero()->setPosition(at(exhibit) + cVector3(0, 1.25f - at(exhibit).y, distance));
    hero()->setDirection({0, 0, -1});
}

void Hall::arm(int32_t item, int32_t count) {
    world.inventory.clear();
    world.inventory.give(item, count);
}

void Hall::attack(int32_t item) {
    arm(item);
    press(CMD_FIRE);
}
