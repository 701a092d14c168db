#include "support/game_run.h"

#include "core/name_hash.h"
#include "platform/clock.h"
#include "platform/random.h"
#include "render/renderer.h"
#include "script/cml_object.h"
#include "script/dialogue.h"
#include "world/object_mgr.h"

#include <SDL.h>
#include <gtest/gtest.h>

GameRun::GameRun(RunOptions options) : GameRun(std::move(options), std::make_shared<TempGame>(GAME_DATA)) {}

GameRun::GameRun(RunOptions options, std::shared_ptr<TempGame> files)
    : app([&] {
          options.fast = true;
          return options;
      }()),
      files_(std::move(files)) {
    platform::useFixedStep(16);
    platform::lockRandomSeed(1);
    started = app.start() && cRenderer::instance().hasScreen();
    EXPECT_TRUE(started) << "a display is needed";
}

GameRun::~GameRun() {
    for (const std::string& row : TempGame::errors()) ADD_FAILURE() << row;
    app.shutdown();
    platform::useFixedStep(0);
}

RunOptions GameRun::at(const char* spawn, const char* level) {
    RunOptions options;
    options.level = level;
    options.spawn = spawn;
    return options;
}

void GameRun::frames(int count) {
    for (int i = 0; i < count; ++i) {
        begun_ |= app.state() != STATE_INTRO && app.state() != STATE_MENU;
        switch (app.state()) {
        case STATE_QUIT:
            return;
        case STATE_INTRO:
            app.introFrame();
            if (app.state() != STATE_INTRO) app.afterIntro();
            break;
        case STATE_MENU:
            begun_ ? app.gameFrame() : app.menuFrame();
            break;
        default:
            app.gameFrame();
            break;
        }
    }
}

bool GameRun::walkTo(float x, float z, int mostFrames) {
    for (int i = 0; i < mostFrames; ++i) {
        if (player.walkTowards({x, 0, z})) return true;
        frames(1);
    }
    player.release(CMD_FORWARD);
    return false;
}

bool GameRun::follow(std::initializer_list<std::pair<float, float>> places, int mostFrames) {
    for (const auto& [x, z] : places) {
        if (walkTo(x, z, mostFrames)) continue;
        ADD_FAILURE() << "stuck at " << hero().x << ", " << hero().z << " on the way to " << x << ", " << z;
        return false;
    }
    return true;
}

void GameRun::face(float x, float z) {
    for (int i = 0; i < 120 && !player.turnTowards({x, 0, z}); ++i) frames(1);
}

void GameRun::hold(int command, int count) {
    player.press(command);
    frames(count);
    player.release(command);
}

void GameRun::runAndJump(int runUp, int flight) {
    hold(CMD_FORWARD, runUp);
    player.press(CMD_FORWARD);
    hold(CMD_JUMP, 10);
    frames(flight);
    player.release(CMD_FORWARD);
}

void GameRun::tapKey(int sdlKey) {
    for (const bool down : {true, false}) {
        player.setKey(sdlKey, down);
        frames(1);
    }
}

void GameRun::use() {
    constexpr int kRepeat = 25; ///< frames; a key held for a page is not asked again for 250 ms
    hold(CMD_USE, 2);
    frames(kRepeat);
}

void GameRun::talkToTheEnd() {
    for (int i = 0; i < 12 && app.state() == STATE_DIALOGUE; ++i) use();
}

void GameRun::type(const std::string& text) {
    for (const char c : text) {
        player.type(c);
        frames(1);
    }
}

void GameRun::skipIntro() {
    tapKey(SDLK_SPACE);
    frames(30);
}

void GameRun::startNewGame(const std::string& name) {
    tapKey(SDLK_RETURN);
    type(name);
    tapKey(SDLK_RETURN);
    tapKey(SDLK_UP); // the last entry makes new settings
    tapKey(SDLK_RETURN);
    type("test");
    tapKey(SDLK_RETURN);
    frames(3);
}

Picture GameRun::picture() {
    const std::string path = files_->dir() + "/picture.png";
    cRenderer::instance().requestScreenshot(path);
    frames(1);
    Picture read = Picture::read(path);
    EXPECT_FALSE(read.rgb.empty()) << "the frame wrote no picture";
    return read;
}

cVector3 GameRun::hero() const {
    const cObject* object = cObjectMgr::instance().hero();
    return object ? object->getPosition() : cVector3(0, -1e9f, 0);
}

namespace inhabitants {
cCmlObject& script(const char* name) {
    return *static_cast<cCmlObject*>(cObjectMgr::instance().findCmlObject(nameHash(name)));
}

std::string action(const char* name) {
    return script(name).getCurrentAction()->getAttribute("name");
}

cVector3 place(const char* name) {
    return script(name).getOwner()->getPosition();
}

std::string page() {
    std::string all;
    for (const auto& word : cDialogue::instance().layOutPage()) all += word.text;
    return all;
}
} // namespace inhabitants
