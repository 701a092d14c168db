// The intro of cWorld: signs, title, and a flight over the first island with captions.

#include "core/frustum.h"
#include "platform/gl_api.h"
#include "render/renderer.h"
#include "script/cml_vocabulary.h"
#include "ui/menu.h"
#include "world/world.h"

namespace {
// The timeline, in ms from the intro's start.
constexpr uint64_t kLoadingEnd = 3000, kCinematicStart = 75500, kCinematicEnd = 152000;
constexpr uint64_t kTitleStart = 23501, kTitleFadeEnd = 24500, kTitleFadeMs = 1000;
constexpr float kPicture = 1024; ///< side of the intro image and the menu image

/// A part of the intro image, in texture pixels from its lower left corner.
struct Piece {
    int s, t, width, height;
};

/// A sign that fades in and out: shown for start ≤ t < end, ms.
struct Sign {
    uint64_t start, end;
    uint64_t fadeInEnd, fadeInMs;     ///< below fadeInEnd
    uint64_t fadeOutStart, fadeOutMs; ///< above fadeOutStart
    Piece piece;
    int dx, dy; ///< lower left corner from the window's centre
};
constexpr Sign kSigns[] = {
    {4001, 14000, 8000, 4000, 11000, 3000, {512, 425, 235, 165}, -117, -82},
    {4001, 14000, 8000, 4000, 11000, 3000, {518, 383, 65, 29}, -32, -110},
    {16001, 22000, 18000, 2000, 20000, 2000, {514, 295, 169, 61}, -84, -30},
};

struct Caption {
    uint64_t start, end;
    Piece piece;
};
constexpr Caption kCaptions[] = {
    {75500, 88249, {39, 869, 318, 132}},   {88250, 100999, {39, 718, 318, 135}},
    {101000, 113749, {41, 621, 377, 70}},  {113750, 126499, {41, 505, 295, 107}},
    {126500, 139249, {43, 387, 297, 109}}, {139250, 151999, {42, 139, 209, 231}},
};

/// Integer divisions, as the timeline is given in whole steps.
int alphaAt(const Sign& sign, uint64_t t) {
    if (t < sign.fadeInEnd) return 255 - static_cast<int>((sign.fadeInEnd - t) * 256 / sign.fadeInMs);
    if (t > sign.fadeOutStart) return 255 - static_cast<int>((t - sign.fadeOutStart) * 256 / sign.fadeOutMs);
    return 255;
}

GLubyte toByte(int alpha) {
    return static_cast<GLubyte>(alpha < 0 ? 0 : alpha > 255 ? 255 : alpha);
}

void drawPiece(int32_t texture, const Piece& p, int x, int y, int alpha) {
    if (texture < 0 || !platform::hasGlContext()) return;
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(texture));
    glColor4ub(255, 255, 255, toByte(alpha));
    const auto fx = static_cast<float>(x), fy = static_cast<float>(y);
    const auto w = static_cast<float>(p.width), h = static_cast<float>(p.height);
    const float s = static_cast<float>(p.s) / kPicture, t = static_cast<float>(p.t) / kPicture;
    drawRectangle(fx, fy, fx + w, fy + h, s, t, s + w / kPicture, t + h / kPicture);
}

void drawTitle(int32_t menuTexture, uint64_t t) {
    if (!platform::hasGlContext()) return;
    cRenderer& renderer = cRenderer::instance();
    const int alpha =
        t < kTitleFadeEnd ? 255 - static_cast<int>((kTitleFadeEnd - t) * 256 / kTitleFadeMs) : 255;
    const auto cx = static_cast<float>(renderer.getWidth() / 2),
               cy = static_cast<float>(renderer.getHeight() / 2);
    glEnable(GL_BLEND);
    glDisable(GL_TEXTURE_2D);
    glColor4ub(255, 255, 255, toByte(alpha));
    drawRectangle(0, 0, static_cast<float>(renderer.getWidth()), static_cast<float>(renderer.getHeight()));
    if (menuTexture < 0) return;
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(menuTexture));
    cMenu::drawTitle(cx - 348, cy - 125, cx + 348, cy + 125);
}
} // namespace

void cWorld::startIntro() {
    introImage_ = cRenderer::instance().loadTexture("img\\credits.tga");
    introClock_ = 0;
    if (loadDocument("intro.xml") != 0) return;
    loadEnvironment();
    loadFog();
    loadScenery();
    const int32_t position = document.childIndex(kCmlCinematic, "name", kIntroCinematic);
    if (position >= 0) startCinematic(position);
}

void cWorld::updateIntro(uint32_t elapsedMs, GameState* state) {
    introClock_ += elapsedMs;
    const uint64_t t = introClock_;
    cRenderer& renderer = cRenderer::instance();
    if (t < kLoadingEnd) {
        renderer.drawLoadingScreen();
        return;
    }
    if (t >= kCinematicEnd) {
        if (*state == STATE_INTRO) *state = STATE_MENU; // a quit may have come with the last frame
        return;
    }
    const bool flight = t >= kCinematicStart;
    if (flight) {
        GameState copy = *state; // the flight may not change the real one
        updateCinematic(&copy);
        cFrustum::instance().update();
        drawLevel();
        drawEnvironment();
    }
    if (!platform::hasGlContext()) return;
    glPushAttrib(GL_ENABLE_BIT);
    renderer.setProjection(true);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_FOG);
    const int cx = static_cast<int>(renderer.getWidth() / 2), cy = static_cast<int>(renderer.getHeight() / 2);
    for (const Sign& sign : kSigns) {
        if (t >= sign.start && t < sign.end)
            drawPiece(introImage_, sign.piece, cx + sign.dx, cy + sign.dy, alphaAt(sign, t));
    }
    if (t >= kTitleStart && !flight) drawTitle(menuTexture, t);
    for (const Caption& caption : kCaptions) {
        if (t >= caption.start && t < caption.end) drawPiece(introImage_, caption.piece, 10, 10, 255);
    }
    if (flight && cinematic.fade.a > 0) {
        drawOverWindow(cinematic.fade.r, cinematic.fade.g, cinematic.fade.b, cinematic.fade.a);
    }
    renderer.setProjection(false);
    glPopAttrib();
}
