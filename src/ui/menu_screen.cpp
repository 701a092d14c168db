// What the menu shows and does.

#include "audio/audio_mgr.h"
#include "core/log_mgr.h"
#include "platform/gl_api.h"
#include "render/renderer.h"
#include "ui/input_mgr.h"
#include "ui/menu.h"
#include "world/world.h"

#include <SDL.h>

namespace {
constexpr const char* kFirstHero = "Quorvane";
} // namespace

void cMenu::loadPictures() {
    texture_ = cRenderer::instance().loadTexture("img\\menu.tga");
    if (texture_ < 0) cLogMgr::instance().error("Failed to load menu image!");
    cWorld::instance().menuTexture = texture_;
    pointerTexture_ = cRenderer::instance().loadTexture("IMG/pointer.tga");
}

void cMenu::drawPointer(int x, int y) const {
    constexpr float kSize = 32;
    if (pointerTexture_ < 0 || !platform::hasGlContext()) return;
    const auto left = static_cast<float>(x), top = static_cast<float>(y);
    glEnable(GL_BLEND);
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(pointerTexture_));
    glColor4ub(255, 255, 255, 255);
    drawRectangle(left, top - kSize, left + kSize, top, 0, 0, 1, 1);
}

void cMenu::beginGame() {
    cAudioMgr::instance().stopMusic();
    cRenderer::instance().drawLoadingScreen();
    if (!cWorld::instance().startNewGame(kFirstHero)) {
        notice_ = "The first level cannot be loaded. quorvane.html says why.";
        return;
    }
    cInputMgr::instance().returnState = STATE_LOADING;
    close();
    pushResumeEvent();
}

void cMenu::readKeys() {
    const cBindings& keys = cInputMgr::instance().bindings;
    const bool goOn = keys.isKeyDown(SDLK_RETURN), quit = keys.isKeyDown(SDLK_q);
    if (keysHeld_) {
        keysHeld_ = goOn || quit;
        return;
    }
    if (quit) pushQuitEvent();
    if (!goOn || !cWorld::instance().isGameLoaded()) return;
    close();
    pushResumeEvent();
}

void cMenu::draw() {
    if (!visible_) return;
    if (!cWorld::instance().isGameLoaded() && notice_.empty()) {
        beginGame();
        return;
    }
    readKeys();
    if (!platform::hasGlContext()) return;
    cRenderer& renderer = cRenderer::instance();
    const int w = static_cast<int>(renderer.getWidth()), h = static_cast<int>(renderer.getHeight());
    glPushAttrib(GL_ENABLE_BIT);
    renderer.setProjection(true);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    glColor4ub(0, 0, 0, 128);
    drawRectangle(0, 0, static_cast<float>(w), static_cast<float>(h));
    glColor4ub(255, 255, 255, 255);
    const std::string text = notice_.empty() ? "Paused: Return goes on, Q quits" : notice_ + " Q quits.";
    renderer.print((w - renderer.textWidth(0, 1, text)) / 2, h / 2, 1, 0, "%s", text.c_str());
    renderer.setProjection(false);
    glPopAttrib();
}
