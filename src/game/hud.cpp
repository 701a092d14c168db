#include "game/hud.h"

#include "core/config_mgr.h"
#include "game/item_def.h"
#include "platform/gl_api.h"
#include "render/renderer.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace {
constexpr int kCrosshairHalf = 24;   ///< pixels
constexpr size_t kMostMessages = 64; ///< older ones give way
constexpr size_t kMessageBuffer = 1024;
constexpr int kFirstMessage = 36, kMessageLine = 16, kFadeFrames = 32;
constexpr float kMessageScale = 0.7f;
constexpr int kPanelAlpha = 150, kPanelFade = 30, kPanelFadeStep = 5;
constexpr int kBarStart = 9, kBarLength = 93; ///< pixels

int32_t loadOrFail(const char* fileName) {
    const int32_t texture = cRenderer::instance().loadTexture(fileName);
    return texture < 0 ? kTextureFailed : texture;
}
} // namespace

void cHud::loadHud() {
    cItemDefs::instance().loadAtlas();
    interfaceTexture = loadOrFail("img\\interface.tga");
    crosshairTexture = loadOrFail("img\\crosshair.tga");
}

void cHud::showStats() {
    statsTimer = cConfigMgr::instance().getInt("SHOW_TIME", "inventory");
}

void cHud::message(int32_t frames, const char* format, ...) {
    if (frames <= 0) return;
    char buffer[kMessageBuffer];
    va_list args;
    va_start(args, format);
    std::vsnprintf(buffer, sizeof buffer, format, args);
    va_end(args);
    if (messages.size() >= kMostMessages) messages.erase(messages.begin());
    messages.push_back({buffer, frames});
}

int32_t cHud::statsAlpha() const {
    return statsFading && statsTimer < kPanelFade ? statsTimer * kPanelFadeStep : kPanelAlpha;
}

int32_t cHud::healthBarEnd(int32_t health, int32_t maxHealth) {
    if (maxHealth == 0) return kBarStart;
    return static_cast<int32_t>(static_cast<int64_t>(health) * kBarLength / maxHealth) + kBarStart;
}

void cHud::drawMessages(int height) {
    int y = height - kFirstMessage;
    cRenderer& renderer = cRenderer::instance();
    const bool drawn = platform::hasGlContext();
    if (drawn) glEnable(GL_BLEND);
    for (Message& m : messages) {
        const bool fading = m.framesLeft < kFadeFrames;
        const int black = fading ? m.framesLeft * 4 : 128, white = fading ? m.framesLeft * 5 : 192;
        if (drawn) {
            glColor4ub(0, 0, 0, static_cast<GLubyte>(black));
            renderer.print(20, y, kMessageScale, 0, "%s", m.text.c_str());
            glColor4ub(255, 255, 255, static_cast<GLubyte>(white));
            renderer.print(19, y - 1, kMessageScale, 0, "%s", m.text.c_str());
        }
        y -= fading ? m.framesLeft / 2 : kMessageLine;
        --m.framesLeft;
    }
    std::erase_if(messages, [](const Message& m) { return m.framesLeft <= 0; });
}

void cHud::apply(const cInputSettings& settings) {
    crosshairOn = (settings.options & kOptionCrosshair) != 0;
    statsFading = (settings.options & kOptionStatFading) != 0;
    crosshairStyle = settings.crosshairType;
    crosshairColour = settings.crosshairColour;
}

void cHud::drawCrosshair(int width, int height) const {
    if (crosshairTexture < 0 || !platform::hasGlContext()) return;
    const float s = crosshairStyle & 1 ? 0.5f : 0, t = crosshairStyle & 2 ? 0.5f : 0;
    const auto cx = static_cast<float>(width / 2), cy = static_cast<float>(height / 2);
    glEnable(GL_BLEND);
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(crosshairTexture));
    glColor4ubv(crosshairColour.data());
    drawRectangle(cx - kCrosshairHalf, cy - kCrosshairHalf, cx + kCrosshairHalf, cy + kCrosshairHalf, s, t,
                  s + 0.5f, t + 0.5f);
}
