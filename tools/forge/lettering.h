#pragma once
#include "forge/canvas.h"

#include <string>
#include <string_view>
#include <vector>

namespace forge {
/// Our own letters, drawn as strokes. A glyph's strokes stand in a small notation, separated by ";": points
/// "x,y" separated by blanks, x 0..10 across the glyph's ink, y 0 at the top of the capitals, 10 on the base
/// line, about 13 at the lowest descender. A stroke that starts with "~" is a smooth curve through its
/// points, with "@" a closed one. The table itself is content (content/pictures/glyphs.cpp).
struct Glyph {
    char character;
    int width; ///< ink width in pixels of a 16-pixel cell
    const char* strokes;
};
extern const Glyph kGlyphs[95];

using StrokePath = std::vector<std::pair<float, float>>;

/// Where and how large text is drawn.
struct TextStyle {
    float left = 0;       ///< left edge of the ink
    float capTop = 0;     ///< top edge of the capitals' ink
    float capHeight = 10; ///< height of the capitals' ink in pixels
    float weight = 1.7f;  ///< stroke thickness in pixels
    float spacing = 0.2f; ///< gap between letters, in cap heights
    float slant = 0;      ///< shift to the right per pixel upwards
};

/// One glyph squeezed so that its ink is `inkWidth` wide.
std::vector<StrokePath> glyphPaths(const Glyph& glyph, const TextStyle& style, float inkWidth);
const Glyph& glyphOf(char character);
float textWidth(std::string_view text, const TextStyle& style);
/// The text as one shape per letter.
std::vector<Shape> textShapes(std::string_view text, const TextStyle& style);
void drawText(Canvas& canvas, std::string_view text, const TextStyle& style, const Paint& paint);
void drawText(Canvas& canvas, std::string_view text, const TextStyle& style, const Colour& colour);
/// With a dark rim `rim` pixels wide.
void drawRimmedText(Canvas& canvas, std::string_view text, const TextStyle& style, const Colour& colour,
                    const Colour& rimColour, float rim);
TextStyle centred(std::string_view text, TextStyle style, float centreX);
} // namespace forge
