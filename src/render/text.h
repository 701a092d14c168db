#pragma once
#include <cstdint>
#include <string>

/// The bitmap font: 256 display lists over a 16 × 16 grid of glyphs. Set 0 is proportional, set 1 fixed at 12
/// units.
class cTextFont {
public:
    /// Draws in the current 2D projection and colour with the lower left corner at (x, y); builds the font
    /// first when needed. Without the font picture nothing is drawn.
    void draw(int x, int y, float scale, uint8_t glyphSet, const std::string& text);
    /// Words wrapped at `maxWidth` pixels, lines 12 pixels apart whatever the scale.
    void drawWrapped(int x, int y, float scale, uint8_t glyphSet, int maxWidth, const std::string& text);
    static int width(uint8_t glyphSet, float scale, const std::string& text);
    /// Deletes the lists; the texture belongs to the cache.
    void release();

private:
    bool build();

    int32_t listBase_ = -1;
    int32_t texture_ = -1;
};
