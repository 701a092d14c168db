#include "game/hud.h"

#include "core/config_mgr.h"
#include "platform/gl_api.h"
#include "render/renderer.h"

namespace {
constexpr int kCrosshairHalf = 24; ///< pixels

int32_t loadOrFail(const char* fileName) {
    const int32_t texture = cRenderer::instance().loadTexture(fileName);
    return texture < 0 ? -2 : texture;
}
} // namespace

void cHud::loadHud() {
    interfaceTexture = loadOrFail("img\\interface.tga");
    crosshairTexture = loadOrFail("img\\crosshair.tga");
}

void cHud::showStats() {
    statsTimer = cConfigMgr::instance().getInt("SHOW_TIME", "inventory");
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
