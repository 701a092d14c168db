// What the menu looks like.

#include "core/log_mgr.h"
#include "platform/gl_api.h"
#include "render/renderer.h"
#include "ui/input_mgr.h"
#include "ui/menu.h"
#include "ui/settings_screens.h"
#include "world/world.h"

#include <algorithm>

namespace {
constexpr float kPanelWidth = 675, kPanelHeight = 520;
constexpr int kPointerSide = 32;
constexpr GLenum kWithoutStates[] = {GL_DEPTH_TEST, GL_LIGHTING, GL_FOG, GL_TEXTURE_2D};
constexpr float kPage = 1.0f; ///< text scales
constexpr float kHeading = 1.2f, kSmall = 0.8f;
constexpr int kTextX = 40, kThirdPersonX = 250, kFirstPersonX = 450; ///< of rows
constexpr int kTitleX = 240, kTitleY = 200, kPromptTitleX = 40, kPromptX = 50, kPromptY = 180;
constexpr int kNoticeX = 40, kNoticeY = 26;
constexpr int kRowDescent = 5; ///< from a row's centre down to its letters' cell
constexpr float kImageSide = 1024;
constexpr int kFirstHighlight = 14; ///< pictures from here on are the highlights

/// Credits, and pieces of the menu image from its lower left corner; `drop` is below the page's top.
constexpr struct {
    int drop;
    const char* text;
} kCreditLines[] = {{20, "Quorvane"},
                    {40, "A small island, a wind that no chart knows, and a light on the hill."},
                    {60, "Engine, levels, pictures and sounds were made for this game."},
                    {100, "Built on SDL, OpenGL, OpenAL, libvorbis, PhysicsFS, CLI11 and libpng."},
                    {120, "The code is free under the zlib licence, the content under CC0."}};
constexpr struct {
    int drop, s, t, width, height;
} kCreditPictures[] = {{220, 698, 96, 191, 73}, {300, 684, 26, 303, 61}};

void setColour(int r, int g, int b, int alpha) {
    glColor4ub(static_cast<GLubyte>(r), static_cast<GLubyte>(g), static_cast<GLubyte>(b),
               static_cast<GLubyte>(std::clamp(alpha, 0, 255)));
}

void rectangle(int x0, int y0, int x1, int y1) {
    drawRectangle(static_cast<float>(x0), static_cast<float>(y0), static_cast<float>(x1),
                  static_cast<float>(y1));
}

void write(int x, int y, float scale, const std::string& text) {
    cRenderer::instance().print(x, y, scale, 0, "%s", text.c_str());
}

void bind(int32_t texture) {
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(texture));
}
} // namespace

void cMenu::loadPictures() {
    texture_ = cRenderer::instance().loadTexture("img\\menu.tga");
    if (texture_ < 0) cLogMgr::instance().error("Failed to load menu image!");
    cWorld::instance().menuTexture = texture_;
    pointerTexture_ = cRenderer::instance().loadTexture("IMG/pointer.tga");
}

void cMenu::drawPointer(int x, int y) const {
    if (pointerTexture_ < 0 || !platform::hasGlContext()) return;
    glEnable(GL_BLEND);
    bind(pointerTexture_);
    setColour(255, 255, 255, 255);
    rectangle(x, y - kPointerSide, x + kPointerSide, y);
}

/// Shades with the panel.
void cMenu::setInk(bool chosen) const {
    chosen ? setColour(64, 64, 192, fullAlpha()) : setColour(0, 0, 0, fullAlpha());
}

void cMenu::paint() const {
    if (texture_ < 0) return; // without its picture there is no menu
    cRenderer& renderer = cRenderer::instance();
    glPushAttrib(GL_ENABLE_BIT | GL_STENCIL_BUFFER_BIT);
    renderer.setProjection(true);
    glTranslatef(static_cast<float>(static_cast<int>(renderer.getWidth()) / 2 - kOriginX),
                 static_cast<float>(static_cast<int>(renderer.getHeight()) / 2 - kOriginY), 0);
    for (const GLenum state : kWithoutStates) glDisable(state);
    glEnable(GL_BLEND);
    setColour(255, 255, 255, 5 * slide_);
    drawRectangle(0, 0, kPanelWidth, kPanelHeight);
    paintTitle();
    // Nothing of the page leaves its part of the panel.
    glEnable(GL_STENCIL_TEST);
    glClear(GL_STENCIL_BUFFER_BIT);
    glStencilFunc(GL_ALWAYS, 1, ~0u);
    glStencilOp(GL_REPLACE, GL_REPLACE, GL_REPLACE);
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    rectangle(kPageLeft, kPageFoot, kPageRight, kPageTop);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glStencilFunc(GL_EQUAL, 1, ~0u);
    glStencilOp(GL_KEEP, GL_KEEP, GL_KEEP);
    cInputMgr::instance().promptActive ? paintPrompt() : paintItems();
    glDisable(GL_STENCIL_TEST);
    drawPointer(pointerX(), pointerY());
    renderer.setProjection(false);
    glPopAttrib();
}

void cMenu::paintTitle() const {
    bind(texture_);
    setColour(255, 255, 255, fullAlpha());
    drawTitle(-11, 280, 685, 530);
    glDisable(GL_TEXTURE_2D);
}

void cMenu::drawTitle(float x0, float y0, float x1, float y1) {
    drawRectangle(x0, y0, x1, y1, 4 / kImageSide, 767 / kImageSide, 700 / kImageSide, 1017 / kImageSide);
}

void cMenu::paintPrompt() const {
    setColour(0, 0, 0, 6 * slide_);
    write(kPromptTitleX, kTitleY, kPage, title_);
    setInk(false);
    write(kPromptX, kPromptY, kPage, cInputMgr::instance().promptText);
}

void cMenu::paintItems() const {
    const int32_t atTop = contentHeight_ - kVisibleHeight - scroll_; // 0 when the page's top is shown
    if (list_) {
        setColour(0, 0, 0, 6 * slide_);
        write(kTitleX, kTitleY + atTop, kPage, title_);
        if (listNames_.empty()) write(kTitleX, kPromptY - 18, kSmall, "There is none yet.");
    }
    for (size_t i = 0; i < items_.size(); ++i) {
        const Item& item = items_[i];
        if (item.button != kTextRow) {
            paintButton(item);
        } else if (list_) {
            const int32_t y = item.y - item.halfHeight - scroll_;
            setInk(static_cast<int32_t>(i) == selected_);
            if (y > 0 && y < 300) write(item.x - item.halfWidth, y, kPage, listNames_[i]);
        }
    }
    if (!list_ && page_ == kCreditsPage) paintCredits();
    if (!list_ && settingsScreen(page_)) paintRows();
    if (contentHeight_ > kVisibleHeight) paintScrollBar();
    if (notice_.empty()) return;
    setColour(160, 32, 32, fullAlpha());
    write(kNoticeX, kNoticeY, kSmall, notice_);
}

void cMenu::paintPicture(const Picture& picture, int x, int y, int alpha) const {
    setColour(255, 255, 255, alpha);
    const auto left = static_cast<float>(x - picture.halfWidth),
               foot = static_cast<float>(y - picture.halfHeight);
    drawRectangle(left, foot, left + static_cast<float>(2 * picture.halfWidth),
                  foot + static_cast<float>(2 * picture.halfHeight), picture.s0, picture.t0, picture.s1,
                  picture.t1);
}

/// The highlight lies below the button's own picture, which fades out above it.
void cMenu::paintButton(const Item& item) const {
    bind(texture_);
    const auto button = static_cast<size_t>(item.button);
    const int32_t level = item.highlight, y = item.y - scroll_;
    if (level > 0) {
        paintPicture(pictures_[button + kFirstHighlight], item.x, y, (16 * level - 1) * 8 * slide_ / 256);
    }
    paintPicture(pictures_[button], item.x, y, (256 - 16 * level) * 8 * slide_ / 256);
    glDisable(GL_TEXTURE_2D);
}

void cMenu::paintScrollBar() const {
    setColour(64, 64, 96, 2 * slide_);
    rectangle(kBarLeft, kPageFoot, kBarRight, kPageTop);
    setColour(64, 64, 192, 6 * slide_);
    rectangle(kBarLeft + 2, thumbFoot(), kBarRight - 2, thumbFoot() + thumbHeight());
    glBegin(GL_TRIANGLES);
    for (const auto& [tip, base] : {std::pair{287, 273}, {23, 37}}) {
        const int sign = tip > base ? 1 : -1; // counter-clockwise either way
        glVertex2i(643, tip);
        glVertex2i(643 - 8 * sign, base);
        glVertex2i(643 + 8 * sign, base);
    }
    glEnd();
}

void cMenu::paintCredits() const {
    setInk(false);
    const int top = contentHeight_ - scroll_;
    for (const auto& line : kCreditLines) write(kTextX, top - line.drop, kPage, line.text);
    bind(texture_);
    setColour(255, 255, 255, fullAlpha());
    for (const auto& p : kCreditPictures) {
        const auto x = static_cast<float>(kTextX), y = static_cast<float>(top - p.drop);
        drawRectangle(x, y, x + static_cast<float>(p.width), y + static_cast<float>(p.height),
                      static_cast<float>(p.s) / kImageSide, static_cast<float>(p.t) / kImageSide,
                      static_cast<float>(p.s + p.width) / kImageSide,
                      static_cast<float>(p.t + p.height) / kImageSide);
    }
    glDisable(GL_TEXTURE_2D);
}

void cMenu::paintRows() const {
    const SettingsScreen& screen = *settingsScreen(page_);
    if (screen.keyRows > 0) {
        setInk(false);
        const int y = screen.firstKeyY + 14 - scroll_;
        write(kTextX, y, kHeading, "Command");
        write(240, y, kHeading, "3rd person");
        write(440, y, kHeading, "1st person");
    }
    for (size_t row = 0; row < screen.rowCount(); ++row) paintRow(row, items_[row].y - scroll_ - kRowDescent);
    if (page_ == kVideoPage) paintCrosshair();
}

void cMenu::paintRow(size_t row, int y) const {
    const SettingsScreen& screen = *settingsScreen(page_);
    if (y < 0 || y > 300) return;
    setInk(static_cast<int32_t>(row) == selected_);
    if (static_cast<int>(row) < screen.keyRows) {
        paintKeys(row, y);
        return;
    }
    const cInputSettings& edit = cInputMgr::instance().editSettings;
    const SettingsRow& r = screen.rows[row - static_cast<size_t>(screen.keyRows)];
    write(kTextX, y, kSmall, r.text(edit));
    if (r.change) return;
    const int centre = y + kRowDescent;
    const int knob = r.slider.left + static_cast<int>(static_cast<float>(r.slider.right - r.slider.left) *
                                                      std::clamp(r.slider.fraction(edit), 0.0f, 1.0f));
    rectangle(r.slider.left, centre - 1, r.slider.right, centre + 1);
    rectangle(knob - 3, centre - 7, knob + 3, centre + 7);
}

/// The chosen columns of the selected row are lit.
void cMenu::paintKeys(size_t command, int y) const {
    const cInputMgr& input = cInputMgr::instance();
    const bool chosen = static_cast<int32_t>(command) == selected_;
    write(kTextX, y, kSmall, input.names.commands[command]);
    const struct {
        int x, key;
        Columns other;
        bool hasKey;
    } kCells[] = {{kThirdPersonX, input.editSettings.keysThirdPerson[command], kFirstPerson, true},
                  {kFirstPersonX, input.editSettings.keysFirstPerson[command], kThirdPerson,
                   command != CMD_ZOOM_IN && command != CMD_ZOOM_OUT}};
    for (const auto& cell : kCells) {
        const bool lit = chosen && columns_ != cell.other;
        setInk(lit);
        const bool awaited = lit && capture_ != kNoCapture;
        write(cell.x, y, kSmall, !cell.hasKey ? "-" : awaited ? "???" : input.names.shown(cell.key));
    }
}

/// On a dark ground: most crosshairs are light.
void cMenu::paintCrosshair() const {
    constexpr int kLeft = 578, kFoot = 218, kSide = 48;
    const cInputSettings& edit = cInputMgr::instance().editSettings;
    const int32_t texture = cWorld::instance().hud.crosshairTexture;
    setColour(40, 48, 64, 6 * slide_);
    rectangle(kLeft - 4, kFoot - 4, kLeft + kSide + 4, kFoot + kSide + 4);
    if (texture < 0) return;
    bind(texture);
    setColour(edit.crosshairColour[0], edit.crosshairColour[1], edit.crosshairColour[2],
              edit.crosshairColour[3]);
    const float s = edit.crosshairType & 1 ? 0.5f : 0, t = edit.crosshairType & 2 ? 0.5f : 0;
    drawRectangle(kLeft, kFoot, kLeft + kSide, kFoot + kSide, s, t, s + 0.5f, t + 0.5f);
    glDisable(GL_TEXTURE_2D);
}
