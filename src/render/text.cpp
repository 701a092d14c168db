#include "render/text.h"

#include "platform/gl_api.h"
#include "render/texture_cache.h"

namespace {
constexpr int kGlyphs = 256;
constexpr int kGlyphsPerSet = 128;
constexpr int kFirstChar = 32;
constexpr int kProportionalChars = 95;
constexpr int kFixedAdvance = 12; ///< also the line step of wrapped text
constexpr int kSpacing = 2;
constexpr int kMeasuredSpace = 8; ///< a blank measures wider than it draws
constexpr float kCell = 1.0f / 16;
constexpr float kSampled = 0.06f; ///< a little less than a cell, so that neighbours do not bleed in

/// Characters 32 to 126.
constexpr uint8_t kWidths[kProportionalChars] = {
    4,  3,  6, 14, 10, 13, 10, 3,  6,  6,  7,  9,  3,  6, 3,  9,  9, 6,  9, 10, 10, 10, 10, 10,
    10, 9,  3, 3,  10, 9,  10, 7,  12, 11, 7,  10, 11, 7, 7,  11, 8, 3,  6, 10, 8,  13, 8,  13,
    7,  13, 8, 7,  10, 9,  10, 14, 10, 10, 10, 5,  9,  5, 11, 7,  4, 8,  8, 7,  7,  8,  7,  7,
    7,  2,  3, 8,  2,  13, 7,  8,  8,  7,  5,  6,  7,  7, 10, 13, 9, 10, 6, 6,  0,  6,  9};

int measure(uint8_t glyphSet, char c) {
    if (glyphSet == 1) return kFixedAdvance;
    const int index = static_cast<unsigned char>(c) - kFirstChar;
    if (index == 0) return kMeasuredSpace + kSpacing;
    return index > 0 && index < kProportionalChars ? kWidths[index] + kSpacing : kFixedAdvance;
}

void compileGlyph(int k, GLuint list) {
    const float s = static_cast<float>(k % 16) * kCell, t = 1 - static_cast<float>(k / 16) * kCell;
    glNewList(list, GL_COMPILE);
    glBegin(GL_QUADS);
    glTexCoord2f(s + kSampled, t - kSampled);
    glVertex2i(16, 0);
    glTexCoord2f(s + kSampled, t);
    glVertex2i(16, 16);
    glTexCoord2f(s, t);
    glVertex2i(0, 16);
    glTexCoord2f(s, t - kSampled);
    glVertex2i(0, 0);
    glEnd();
    glTranslatef(static_cast<float>(k < kProportionalChars ? kWidths[k] + kSpacing : kFixedAdvance), 0, 0);
    glEndList();
}
} // namespace

int cTextFont::width(uint8_t glyphSet, float scale, const std::string& text) {
    int sum = 0;
    for (const char c : text) sum += measure(glyphSet, c);
    return static_cast<int>(static_cast<float>(sum) * scale);
}

bool cTextFont::build() {
    texture_ = cTextureCache::instance().load("IMG\\alpha.tga");
    if (texture_ < 0) return false;
    listBase_ = static_cast<int32_t>(glGenLists(kGlyphs));
    for (int k = 0; k < kGlyphs; ++k) compileGlyph(k, static_cast<GLuint>(listBase_ + k));
    return true;
}

void cTextFont::release() {
    if (listBase_ > 0 && platform::hasGlContext()) glDeleteLists(static_cast<GLuint>(listBase_), kGlyphs);
    listBase_ = texture_ = -1;
}

void cTextFont::draw(int x, int y, float scale, uint8_t glyphSet, const std::string& text) {
    if (!platform::hasGlContext() || (listBase_ < 0 && !build())) return;
    // Other lists follow ours: a character outside of the 256 glyphs must not reach them.
    std::string glyphs;
    const int offset = kGlyphsPerSet * glyphSet - kFirstChar;
    for (const char c : text) {
        const int index = static_cast<unsigned char>(c) + offset;
        if (index >= 0 && index < kGlyphs) glyphs += static_cast<char>(index);
    }
    glPushAttrib(GL_ENABLE_BIT | GL_LIST_BIT);
    glPushMatrix();
    glEnable(GL_TEXTURE_2D);
    glEnable(GL_BLEND);
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_LIGHTING);
    glTranslated(x, y, 0);
    glScalef(scale, scale, 1);
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(texture_));
    glListBase(static_cast<GLuint>(listBase_));
    glCallLists(static_cast<GLsizei>(glyphs.size()), GL_UNSIGNED_BYTE, glyphs.data());
    glPopMatrix();
    glPopAttrib();
}

void cTextFont::drawWrapped(int x, int y, float scale, uint8_t glyphSet, int maxWidth,
                            const std::string& text) {
    std::string line, word;
    for (const char c : text) {
        if (c != ' ') {
            word += c;
            continue;
        }
        if (width(glyphSet, scale, line) + width(glyphSet, scale, word) + kFixedAdvance > maxWidth) {
            draw(x, y, scale, glyphSet, line);
            y -= kFixedAdvance;
            line.clear();
        }
        line += word + ' ';
        word.clear();
    }
    draw(x, y, scale, glyphSet, line + word);
}
