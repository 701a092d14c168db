// The 2D layer of cWorld at the end of a frame: inventory, crosshair, panel, messages, fades, the action
// music's envelope, the end of a level.

#include "audio/audio_mgr.h"
#include "platform/clock.h"
#include "platform/gl_api.h"
#include "render/renderer.h"
#include "script/cml_vocabulary.h"
#include "ui/input_mgr.h"
#include "world/world.h"

#include <algorithm>

namespace {
constexpr int32_t kLoudest = 200, kRise = 3, kFullVolume = 100;
constexpr int32_t kFadeStep = 4, kFadeEnd = 255;
constexpr uint32_t kEndPictureMs = 3000;

void stepIntensity(cWorld& world) {
    world.intensity += world.intensityRising != 0 ? kRise : -1;
    if (world.intensity > kLoudest) {
        world.intensity = kLoudest;
        world.intensityRising = 0;
    }
    cAudioMgr& audio = cAudioMgr::instance();
    if (world.intensity < 1) {
        audio.stopMusic();
        audio.setMusicVolume(world.playerMusicVolume);
        return;
    }
    audio.setMusicVolume(world.playerMusicVolume *
                         static_cast<float>(std::min(world.intensity, kFullVolume)) / 100.0f);
}

/// The last picture, for three seconds; then the program ends.
void showEnd(const cWorld& world) {
    cRenderer& renderer = cRenderer::instance();
    renderer.beginFrame();
    renderer.setProjection(true);
    if (platform::hasGlContext() && world.menuTexture > 0) {
        const auto w = static_cast<float>(renderer.getWidth() / 2),
                   h = static_cast<float>(renderer.getHeight() / 2);
        glEnable(GL_TEXTURE_2D);
        glEnable(GL_BLEND);
        glDisable(GL_DEPTH_TEST);
        glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(world.menuTexture));
        glColor4ub(255, 255, 255, 255);
        drawRectangle(w - 240, h - 35, w + 241, h + 34, 48 / 1024.0f, 95 / 1024.0f, 529 / 1024.0f,
                      164 / 1024.0f);
    }
    renderer.present();
    platform::sleepMs(kEndPictureMs);
    pushQuitEvent();
}

void stepLevelChange(cWorld& world) {
    drawOverWindow(0, 0, 0, static_cast<float>(world.levelChangePending) / 255.0f);
    cAudioMgr::instance().setMusicVolume(world.playerMusicVolume *
                                         static_cast<float>(256 - world.levelChangePending) / 256.0f);
    world.levelChangePending += kFadeStep;
    if (world.levelChangePending <= kFadeEnd) return;
    world.levelChangePending = 0;
    world.intensity = world.intensityRising = 0;
    if (world.levelFile == kEndOfTheGame) {
        showEnd(world);
        return;
    }
    cRenderer::instance().drawLoadingScreen();
    cAudioMgr::instance().stopMusic();
    cAudioMgr::instance().setMusicVolume(world.playerMusicVolume); // before the level starts its own
    world.returnToCheckpoint();
}
} // namespace

void cWorld::drawOverlays() {
    cRenderer& renderer = cRenderer::instance();
    if (platform::hasGlContext()) glPushAttrib(GL_ENABLE_BIT);
    renderer.setProjection(true);
    if (platform::hasGlContext()) {
        glDisable(GL_DEPTH_TEST);
        glDisable(GL_FOG);
    }
    inventory.slideAndDraw();
    if (hud.crosshairOn && camera.isFirstPerson() && camera.getTarget() && !cinematic.playing) {
        hud.drawCrosshair(static_cast<int>(renderer.getWidth()), static_cast<int>(renderer.getHeight()));
    }
    if (hud.statsTimer > 0 && !cinematic.playing) hud.drawStats(inventory, health, maxHealth);
    if (!hud.messages.empty()) hud.drawMessages(static_cast<int>(renderer.getHeight()));
    if (cinematic.fade.a > 0)
        drawOverWindow(cinematic.fade.r, cinematic.fade.g, cinematic.fade.b, cinematic.fade.a);
    if (intensity > 0) stepIntensity(*this);
    if (levelChangePending > 0) stepLevelChange(*this);
    renderer.setProjection(false);
    if (platform::hasGlContext()) glPopAttrib();
}
