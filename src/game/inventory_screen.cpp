// The inventory as one sees it: the panel, the grid, the description.

#include "game/hud.h"
#include "game/inventory.h"
#include "platform/gl_api.h"
#include "render/renderer.h"
#include "ui/input_mgr.h"

namespace {
constexpr int kBar = 144;                 ///< height of the description's bar
constexpr int kFirstX = 32, kFirstY = 94; ///< lower left corner of the first cell, y from the top
constexpr int kLastY = 480;               ///< no cell is drawn lower
constexpr int kRightMargin = 82;
constexpr int kPicture = 64;
constexpr float kPictureSize = 0.25f;       ///< in the atlas
constexpr float kMarkU = 0.75f, kMarkV = 0; ///< the frame round the selected cell
constexpr uint8_t kItemAlpha = 192;
constexpr float kCountScale = 0.8f, kNameScale = 0.9f, kTextScale = 0.7f;
} // namespace

void cInventory::slideAndDraw() {
    if (!open_ && slide_ == 0) return;
    if (open_ && slide_ < width_) {
        slide_ += kPanelStep;
    } else if (!open_ && slide_ > 0) {
        slide_ -= kPanelStep;
    }
    draw(static_cast<int>(cRenderer::instance().getWidth()) - slide_, 0);
}

void cInventory::quad(float x, float y, float u, float v) {
    drawRectangle(x, y, x + kPicture, y + kPicture, u, v, u + kPictureSize, v + kPictureSize);
}

void cInventory::drawEntry(size_t index, int x, int y, uint8_t alpha) const {
    const Entry& entry = entries_[index];
    const cItemDef* item = cItemDefs::instance().at(entry.id);
    const int32_t atlas = cItemDefs::instance().getAtlas();
    if (!item || atlas < 0 || !platform::hasGlContext()) return;
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(atlas));
    glColor4ub(255, 255, 255, alpha);
    quad(static_cast<float>(x), static_cast<float>(y), item->atlasU, item->atlasV);
    if (item->allowGrouping) cRenderer::instance().print(x + 4, y + 4, kCountScale, 0, "%d", entry.count);
}

void cInventory::draw(int x, int y) {
    hud_.showStats();
    if (!platform::hasGlContext()) return;
    cRenderer& renderer = cRenderer::instance();
    const int height = static_cast<int>(renderer.getHeight());
    const auto width = static_cast<float>(width_);
    glPushMatrix();
    glTranslatef(static_cast<float>(x), static_cast<float>(y), 0);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_LIGHTING);
    glEnable(GL_BLEND);
    glDisable(GL_TEXTURE_2D);
    glColor4ub(0, 0, 0, 128);
    drawRectangle(0, kGridFoot, width, static_cast<float>(height));
    drawRectangle(0, 0, width, kBar);
    drawGrid(height);
    if (const cItemDef* item = selectedItem()) {
        glColor4ub(255, 255, 255, 255);
        renderer.print(7, 124, kNameScale, 0, "%s", item->name.c_str());
        renderer.printWrapped(7, 108, kTextScale, 0, width_ - 14, "%s", item->description.c_str());
    }
    glPopMatrix();
    const cInputMgr& input = cInputMgr::instance();
    if (open_) input.menu.drawPointer(input.mouseX, input.mouseY);
}

void cInventory::drawGrid(int height) const {
    const int32_t atlas = cItemDefs::instance().getAtlas();
    int x = kFirstX, y = kFirstY - firstRow_ * kCell;
    for (size_t i = 0; i < entries_.size() && y <= kLastY; ++i) {
        if (y < 0) {
            // A row above the panel: passed over whole.
            i += static_cast<size_t>(columns_ > 0 ? columns_ : 1) - 1;
            y += kCell;
            continue;
        }
        if (static_cast<int32_t>(i) == selected_ && atlas >= 0) {
            glEnable(GL_TEXTURE_2D);
            glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(atlas));
            glColor4ub(255, 255, 255, kItemAlpha);
            quad(static_cast<float>(x), static_cast<float>(height - y), kMarkU, kMarkV);
        }
        drawEntry(i, x, height - y, kItemAlpha);
        x += kCell;
        if (x <= width_ - kRightMargin) continue;
        x = kFirstX;
        y += kCell;
    }
}
