#include "ui/console.h"

#include "core/config_mgr.h"
#include "platform/gl_api.h"
#include "render/renderer.h"

#include <algorithm>
#include <cstdio>

namespace {
constexpr char kBackspace = 8;
constexpr int kLineStep = 12; ///< pixels
constexpr int kInputBand = 18;
constexpr float kTextScale = 0.7f;
constexpr uint8_t kFixedGlyphs = 1;
bool g_terminal = false;

char withShift(char c) {
    static constexpr struct {
        char plain, shifted;
    } kTable[] = {{'0', '='}, {'1', '!'}, {'2', '"'}, {'3', '#'}, {'4', '4'},  {'5', '%'},
                  {'6', '&'}, {'7', '/'}, {'8', '('}, {'9', ')'}, {'\'', '*'}, {'+', '?'},
                  {',', ';'}, {'-', '_'}, {'.', ':'}, {'<', '>'}};
    if (c >= 'a' && c <= 'z') return static_cast<char>(c - 'a' + 'A');
    for (const auto& row : kTable) {
        if (row.plain == c) return row.shifted;
    }
    return c;
}
} // namespace

void cConsole::useTerminal(bool on) {
    g_terminal = on;
}

void cConsole::scrollUp(int32_t height, int32_t speed) {
    const auto n = static_cast<int32_t>(lines.size());
    if ((scrollOffset + kLineStep * height) / kLineStep < n) {
        scrollOffset += speed;
    } else {
        scrollOffset = (n - height) * kLineStep;
    }
}

void cConsole::scrollDown(int32_t speed) {
    scrollOffset = std::max(0, scrollOffset - speed);
}

void cConsole::draw() const {
    if (!visible || !platform::hasGlContext()) return;
    cRenderer& renderer = cRenderer::instance();
    const auto w = static_cast<float>(renderer.getWidth()), h = static_cast<float>(renderer.getHeight());
    const int height = cConfigMgr::instance().getInt("CONSOLE_HEIGHT", "input");
    const int bandTop = static_cast<int>(renderer.getHeight()) - kLineStep * height;
    glPushAttrib(GL_ENABLE_BIT | GL_STENCIL_BUFFER_BIT);
    glDisable(GL_LIGHTING);
    glDisable(GL_DEPTH_TEST);
    glEnable(GL_STENCIL_TEST);
    glClear(GL_STENCIL_BUFFER_BIT);
    renderer.setProjection(true);
    glEnable(GL_BLEND);
    glDisable(GL_TEXTURE_2D);
    glColor4ub(192, 192, 255, 192);
    glStencilFunc(GL_ALWAYS, 1, ~0u);
    glStencilOp(GL_REPLACE, GL_REPLACE, GL_REPLACE);
    drawRectangle(0, static_cast<float>(bandTop - kInputBand), w, h);
    glStencilOp(GL_KEEP, GL_KEEP, GL_INCR);
    drawRectangle(0, static_cast<float>(bandTop - kInputBand), w, static_cast<float>(bandTop));
    glStencilFunc(GL_EQUAL, 1, 1);
    glStencilOp(GL_KEEP, GL_KEEP, GL_KEEP);
    glColor4ub(0, 0, 0, 255);
    // Lines that are scrolled out below are passed over at once, however many were printed.
    const int below = std::max(0, (scrollOffset - kLineStep - 2) / kLineStep);
    int y = bandTop - scrollOffset + 2 + below * kLineStep;
    for (size_t i = lines.size() - std::min(lines.size(), static_cast<size_t>(below));
         i-- > 0 && y < static_cast<int>(h); y += kLineStep)
        renderer.print(4, y, kTextScale, kFixedGlyphs, "%s", lines[i].c_str());
    glDisable(GL_STENCIL_TEST);
    renderer.print(4, bandTop - 14, kTextScale, kFixedGlyphs, ">%s_", line.c_str());
    renderer.setProjection(false);
    glPopAttrib();
}

void cConsole::print(const std::string& text) {
    if (g_terminal) std::printf("%s\n", text.c_str());
    size_t at = 0;
    do {
        lines.push_back(text.substr(at, kLineLength));
        at += kLineLength;
    } while (at < text.size());
}

void typeCharacter(std::string& text, int limit, char character, bool shift) {
    if (character == kBackspace) {
        if (!text.empty()) text.pop_back();
        return;
    }
    const size_t n = std::min(text.size() + 1, static_cast<size_t>(limit - 1));
    text.resize(n - 1);
    // A key without a character ends the text where it would have stood.
    if (character != 0) text += shift ? withShift(character) : character;
}
