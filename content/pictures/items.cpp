#include "forge/canvas.h"
#include "forge/noise.h"
#include "forge/recipes.h"

#include <algorithm>
#include <iterator>

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

void drawCoin(Canvas& c, float x, float y) {
    for (const auto& [px, py] : {std::pair{24.0f, 42.0f}, {42.0f, 38.0f}, {31.0f, 22.0f}}) {
        rimmed(c, ellipse(x + px, y + py, 13, 12), kGold);
        c.fill(outline(ellipse(x + px, y + py, 9, 8), 1.6f), shaded(kGold, 0.72f));
        c.fill(stroke(x + px, y + py - 4, x + px, y + py + 4, 2), shaded(kGold, 0.65f));
    }
}

void drawSabre(Canvas& c, float x, float y) {
    rimmed(c, polyline({{x + 19, y + 44}, {x + 33, y + 33}, {x + 45, y + 20}, {x + 53, y + 7}}, 7), kSteel);
    c.fill(polyline({{x + 21, y + 42}, {x + 34, y + 31}, {x + 45, y + 19}}, 1.6f), rgb(0xe9eef2));
    rimmed(c, stroke(x + 10, y + 55, x + 18, y + 46, 7), kWood);
    c.fill(outline(ellipse(x + 17, y + 49, 9, 7), 3.4f), kGold);
    rimmed(c, stroke(x + 12, y + 38, x + 25, y + 51, 4), kGold);
}

void drawCrossbow(Canvas& c, float x, float y) {
    rimmed(c, stroke(x + 14, y + 52, x + 44, y + 20, 8), kWood);
    rimmed(c, polyline({{x + 24, y + 8}, {x + 40, y + 12}, {x + 50, y + 22}, {x + 56, y + 40}}, 5),
           shaded(kWood, 0.75f));
    c.fill(polyline({{x + 25, y + 9}, {x + 31, y + 34}, {x + 55, y + 39}}, 1.6f), rgb(0xe8dfc8));
    c.fill(stroke(x + 28, y + 37, x + 53, y + 10, 2.6f), kSteel);
    rimmed(c, polygon({{x + 58, y + 5}, {x + 49, y + 9}, {x + 54, y + 14}}), kSteel);
}

void drawRifle(Canvas& c, float x, float y) {
    rimmed(c, polygon({{x + 4, y + 44}, {x + 16, y + 36}, {x + 22, y + 42}, {x + 9, y + 57}}), kWood);
    rimmed(c, stroke(x + 17, y + 41, x + 34, y + 28, 7), kWood);
    rimmed(c, stroke(x + 24, y + 34, x + 59, y + 7, 4.4f), kSteel);
    rimmed(c, stroke(x + 25, y + 24, x + 41, y + 12, 6), shaded(kGold, 0.9f));
    c.fill(outline(disc(x + 27, y + 43, 5), 2.4f), kSteel);
}

void drawRock(Canvas& c, float x, float y) {
    rimmed(c,
           polygon({{x + 10, y + 42},
                    {x + 16, y + 22},
                    {x + 34, y + 12},
                    {x + 51, y + 24},
                    {x + 55, y + 44},
                    {x + 36, y + 54},
                    {x + 18, y + 52}}),
           rgb(0x8f9196));
    c.fill(polygon({{x + 17, y + 24}, {x + 34, y + 14}, {x + 40, y + 26}, {x + 26, y + 34}}), rgb(0xb9bbbd));
    c.fill(polyline({{x + 26, y + 34}, {x + 31, y + 50}}, 2), rgb(0x6c6e74));
    c.fill(polyline({{x + 40, y + 26}, {x + 53, y + 38}}, 2), rgb(0x6c6e74));
}

void drawDraught(Canvas& c, float x, float y) {
    rimmed(c, ellipse(x + 32, y + 40, 16, 16), rgb(0xa8ccd2));
    rimmed(c, rectangle(x + 26, y + 14, 12, 14, 2), rgb(0xa8ccd2));
    c.fill(both(ellipse(x + 32, y + 40, 14, 14), rectangle(x + 10, y + 36, 44, 24)), rgb(0xd0414f));
    c.fill(ellipse(x + 25, y + 36, 3, 6), rgb(0xffffff, 0.75f));
    rimmed(c, rectangle(x + 27, y + 7, 10, 8, 2), kWood);
}

void drawFlint(Canvas& c, float x, float y) {
    rimmed(c, outline(polyline({{x + 16, y + 20}, {x + 16, y + 46}, {x + 30, y + 52}}, 10), 4), kSteel);
    rimmed(
        c,
        polygon({{x + 30, y + 40}, {x + 38, y + 22}, {x + 54, y + 28}, {x + 52, y + 46}, {x + 38, y + 52}}),
        rgb(0x5a5560));
    for (const auto& [px, py] : {std::pair{30.0f, 12.0f}, {42.0f, 10.0f}, {24.0f, 24.0f}})
        c.fill(stroke(x + px, y + py - 4, x + px, y + py + 4, 2.4f), rgb(0xffd76a));
}

void drawTusk(Canvas& c, float x, float y) {
    rimmed(c, polyline({{x + 14, y + 50}, {x + 30, y + 48}, {x + 44, y + 36}, {x + 50, y + 14}}, 10),
           rgb(0xf2e7c9));
    c.fill(polyline({{x + 16, y + 48}, {x + 30, y + 45}, {x + 42, y + 34}}, 2), rgb(0xffffff, 0.8f));
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

/// Where the screen writes how many there are: in the lower left corner of what can be more than one.
void drawCountPlate(Canvas& c, float x, float y) {
    c.fill(rectangle(x + 1, y + 47, 22, 16, 5), rgb(0x10151d, 0.72f));
}

using Draw = void (*)(Canvas&, float, float);
constexpr Draw kCells[16] = {drawPistol, drawGrenade, drawStick,    drawKey,      drawApple, drawCoin,
                             drawLetter, drawSabre,   drawCrossbow, drawRifle,    drawRock,  drawDraught,
                             drawFlint,  drawTusk,    nullptr,      drawHighlight};
constexpr Draw kUncounted[] = {drawStick, drawSabre, nullptr, drawHighlight};
} // namespace

FORGE_RECIPE(picture_items) {
    Canvas c(256, 256);
    for (int i = 0; i < 16; ++i) {
        const auto x = static_cast<float>(i % 4 * 64), y = static_cast<float>(i / 4 * 64);
        if (kCells[i]) kCells[i](c, x, y);
        if (std::find(std::begin(kUncounted), std::end(kUncounted), kCells[i]) == std::end(kUncounted))
            drawCountPlate(c, x, y);
    }
    out.put("img/objects.tga", c.tga(32));
}
