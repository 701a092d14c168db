#include "forge/lettering.h"
#include "forge/recipes.h"

#include <algorithm>

using namespace forge;

namespace {
constexpr float kCell = 16;     // pixels
constexpr float kInkTop = 0.6f; // of the capitals, below the cell's top edge
constexpr float kCapHeight = 10.9f;
constexpr float kWeight = 1.75f;
constexpr float kFixedInk = 10; // widest ink of the fixed font, whose letters stand 12 apart

/// Ink flush left; the proportional set fills exactly the width that text drawing advances by.
void drawGlyph(Canvas& picture, const Glyph& glyph, float cellX, float cellY, bool fixedPitch) {
    const auto tableWidth = static_cast<float>(std::max(glyph.width, 1));
    const float ink = fixedPitch ? std::min(tableWidth, kFixedInk) : tableWidth;
    TextStyle style{cellX, cellY + kInkTop, kCapHeight, fixedPitch ? kWeight : std::min(kWeight, ink), 0, 0};
    if (fixedPitch) style.left += (kFixedInk - ink) / 2;
    const float right = cellX + (fixedPitch ? kFixedInk : ink), bottom = cellY + kCell - 1;
    const Shape cell{[](float, float) { return -1.0f; }, cellX, cellY, right, bottom};
    for (const auto& path : glyphPaths(glyph, style, ink)) {
        Shape s = polyline(path, style.weight);
        s.bottom = std::min(s.bottom, bottom - 1);
        // The picture is white throughout: the letters are in its alpha alone.
        for (int y = static_cast<int>(cell.top); y < static_cast<int>(cell.bottom); ++y)
            for (int x = static_cast<int>(cell.left); x < static_cast<int>(cell.right + 0.5f); ++x) {
                const float d = s.distance(static_cast<float>(x) + 0.5f, static_cast<float>(y) + 0.5f);
                float& alpha = picture.at(x, y).a;
                alpha = std::max(alpha, std::clamp(0.5f - d, 0.0f, 1.0f));
            }
    }
}
} // namespace

// The text font: 16 × 16 cells, the upper half proportional, the lower half of fixed pitch.
FORGE_RECIPE(picture_font) {
    Canvas picture(256, 256, {1, 1, 1, 0});
    for (int i = 0; i < 95; ++i) {
        const float x = static_cast<float>(i % 16) * kCell, y = static_cast<float>(i / 16) * kCell;
        drawGlyph(picture, kGlyphs[i], x, y, false);
        drawGlyph(picture, kGlyphs[i], x, y + 8 * kCell, true);
    }
    out.put("img/alpha.tga", picture.tga(32));
}
