#include "forge/canvas.h"
#include "forge/noise.h"
#include "forge/recipes.h"

#include <cmath>

using namespace forge;

// Pictures of the things one can carry: 64 × 64 each, in the order of objects.xml, row by row.
namespace {
const Colour kRim = rgb(0x1d2736), kSteel = rgb(0x9aa7b5), kWood = rgb(0x9a6534), kGold = rgb(0xe8bd4e);

void rimmed(Canvas& c, const Shape& shape, const Colour& colour) {
    c.fill(grown(shape, 2), kRim);
    c.fill(shape, [&](float, float y) {
        return shaded(colour, 1.15f - 0.35f * (y - shape.top) / (shape.bottom - shape.top));
    });
}

void drawPistol(Canvas& c, float x, float y) {
    rimmed(c, polygon({{x + 10, y + 32}, {x + 24, y + 32}, {x + 19, y + 54}, {x + 7, y + 54}}), kWood);
    rimmed(c, rectangle(x + 8, y + 18, 48, 12, 4), kSteel);
    rimmed(c, rectangle(x + 6, y + 24, 24, 10, 3), kWood);
    c.fill(outline(disc(x + 29, y + 36, 6), 3), kSteel);
    c.fill(stroke(x + 12, y + 18, x + 9, y + 12, 4), kSteel);
}

void drawGrenade(Canvas& c, float x, float y) {
    rimmed(c, ellipse(x + 32, y + 38, 17, 19), rgb(0x55733f));
    for (float k : {-8.0f, 0.0f, 8.0f})
        c.fill(stroke(x + 32 + k, y + 22, x + 32 + k, y + 54, 1.4f), rgb(0x33482a));
    for (float k : {30.0f, 38.0f, 46.0f}) c.fill(stroke(x + 17, y + k, x + 47, y + k, 1.4f), rgb(0x33482a));
    rimmed(c, rectangle(x + 25, y + 10, 14, 10, 2), kSteel);
    c.fill(outline(disc(x + 46, y + 14, 6), 2.4f), kGold);
}

void drawStick(Canvas& c, float x, float y) {
    rimmed(c, polyline({{x + 12, y + 53}, {x + 28, y + 35}, {x + 34, y + 31}, {x + 52, y + 11}}, 8), kWood);
    c.fill(stroke(x + 30, y + 34, x + 42, y + 36, 4), shaded(kWood, 0.8f));
    c.fill(disc(x + 22, y + 42, 2), shaded(kWood, 0.6f));
}

void drawKey(Canvas& c, float x, float y) {
    const Shape ring = outline(disc(x + 20, y + 22, 10), 6);
    rimmed(c, ring, kGold);
    rimmed(c, stroke(x + 27, y + 29, x + 50, y + 52, 6), kGold);
    rimmed(c, stroke(x + 44, y + 46, x + 51, y + 39, 5), kGold);
    rimmed(c, stroke(x + 50, y + 52, x + 56, y + 46, 5), kGold);
}

void drawApple(Canvas& c, float x, float y) {
    const Shape left = ellipse(x + 26, y + 38, 14, 16), right = ellipse(x + 38, y + 38, 14, 16);
    c.fill(grown(left, 2), kRim);
    c.fill(grown(right, 2), kRim);
    c.fill(left, rgb(0xcf3438));
    c.fill(right, rgb(0xcf3438));
    c.fill(ellipse(x + 23, y + 33, 4, 6), rgb(0xf6a59a, 0.8f));
    c.fill(polyline({{x + 32, y + 26}, {x + 33, y + 18}, {x + 37, y + 12}}, 3), rgb(0x5d3b1d));
    rimmed(c, ellipse(x + 43, y + 17, 8, 4), rgb(0x62a542));
}

void drawRounds(Canvas& c, float x, float y) {
    for (int i = 0; i < 3; ++i) {
        const float px = x + 12 + 15 * static_cast<float>(i);
        rimmed(c, rectangle(px, y + 26, 10, 26, 2), kGold);
        rimmed(c, ellipse(px + 5, y + 22, 5, 10), rgb(0xb77a4a));
    }
}

void drawLetter(Canvas& c, float x, float y) {
    rimmed(c, rectangle(x + 8, y + 17, 48, 32, 2), rgb(0xf2e7c9));
    c.fill(polyline({{x + 9, y + 19}, {x + 32, y + 36}, {x + 55, y + 19}}, 2), rgb(0x9c8a60));
    c.fill(disc(x + 32, y + 36, 6), rgb(0xb23a3f));
}

void drawHighlight(Canvas& c, float x, float y) {
    c.fill(rectangle(x + 2, y + 2, 60, 60, 9), rgb(0xffd76a, 0.28f));
    c.fill(outline(rectangle(x + 4, y + 4, 56, 56, 8), 4), rgb(0xffd76a, 0.95f));
}

using Draw = void (*)(Canvas&, float, float);
constexpr Draw kCells[16] = {drawPistol, drawGrenade, drawStick, drawKey,      drawApple, drawRounds,
                             drawLetter, nullptr,     nullptr,   nullptr,      nullptr,   nullptr,
                             nullptr,    nullptr,     nullptr,   drawHighlight};
} // namespace

FORGE_RECIPE(picture_items) {
    Canvas c(256, 256);
    for (int i = 0; i < 16; ++i)
        if (kCells[i]) kCells[i](c, static_cast<float>(i % 4 * 64), static_cast<float>(i / 4 * 64));
    out.put("img/objects.tga", c.tga(32));
}
