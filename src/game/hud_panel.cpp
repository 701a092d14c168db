// The statistics panel of cHud: what it shows lies with the hero and the inventory.

#include "core/config_mgr.h"
#include "game/hud.h"
#include "game/inventory.h"
#include "platform/gl_api.h"
#include "render/renderer.h"

namespace {
constexpr int kPanelWidth = 128, kPanelHeight = 96;
constexpr int kItemX = 8, kItemY = 28;
constexpr int kBarX = 9, kBarLow = 15, kBarHigh = 23;
} // namespace

void cHud::drawStats(const cInventory& inventory, int32_t health, int32_t maxHealth) {
    if (interfaceTexture < 0) return;
    if (statsFading) --statsTimer;
    if (!platform::hasGlContext()) return;
    const int x = cConfigMgr::instance().getInt("STATS_X", "inventory"),
              y = cConfigMgr::instance().getInt("STATS_Y", "inventory");
    const auto alpha = static_cast<uint8_t>(statsAlpha());
    const auto fx = static_cast<float>(x), fy = static_cast<float>(y);
    glEnable(GL_BLEND);
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(interfaceTexture));
    glColor4ub(255, 255, 255, alpha);
    drawRectangle(fx, fy, fx + kPanelWidth, fy + kPanelHeight, 0, 0.25f, 1, 1);
    if (!inventory.entries().empty())
        inventory.drawEntry(static_cast<size_t>(inventory.getSelected()), x + kItemX, y + kItemY, alpha);
    glDisable(GL_TEXTURE_2D);
    const float left = fx + kBarX, right = fx + static_cast<float>(healthBarEnd(health, maxHealth));
    glBegin(GL_QUADS);
    glColor4ub(0, 192, 0, alpha);
    glVertex2f(left, fy + kBarLow);
    glVertex2f(right, fy + kBarLow);
    glColor4ub(0, 128, 0, alpha);
    glVertex2f(right, fy + kBarHigh);
    glVertex2f(left, fy + kBarHigh);
    glEnd();
    glColor4ub(255, 255, 255, 255);
}
