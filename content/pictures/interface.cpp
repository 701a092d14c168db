#include "forge/canvas.h"
#include "forge/lettering.h"
#include "forge/noise.h"
#include "forge/recipes.h"

#include <cmath>

using namespace forge;

namespace {
const Colour kInk = rgb(0x1d2736), kGold = rgb(0xe6b84c), kSea = rgb(0x2d6f8e), kIvory = rgb(0xf6edd6);

/// Eight-pointed wind rose, the sign of Quorvane.
void drawRose(Canvas& c, float x, float y, float radius, const Colour& light, const Colour& dark) {
    for (int i = 0; i < 8; ++i) {
        const float angle = static_cast<float>(i) * 0.785398f, reach = radius * (i % 2 == 0 ? 1.0f : 0.6f);
        const float tx = x + std::sin(angle) * reach, ty = y - std::cos(angle) * reach, base = radius * 0.2f;
        for (int side = -1; side <= 1; side += 2) {
            const float a = angle + 0.785398f * static_cast<float>(side);
            const float bx = x + std::sin(a) * base, by = y - std::cos(a) * base;
            c.fill(polygon({{x, y}, {tx, ty}, {bx, by}}), side > 0 ? light : dark);
        }
    }
    c.fill(outline(disc(x, y, radius * 0.72f), radius * 0.05f), light);
    c.fill(disc(x, y, radius * 0.09f), dark);
}
} // namespace

// Small 128 × 128 sheet: only the lower 40 rows are shown while loading.
FORGE_RECIPE(picture_loading) {
    Canvas c(128, 128, {0, 0, 0, 1});
    TextStyle style{0, 95, 15, 2.3f, 0.26f, 0};
    drawText(c, "Loading", centred("Loading", style, 64), kIvory);
    for (int i = 0; i < 5; ++i)
        c.fill(disc(44 + 10 * static_cast<float>(i), 118, 2.2f), mix(kSea, kGold, static_cast<float>(i) / 4));
    out.put("img/loading.bmp", c.bmp24());
}

// The statistics panel: the upper 96 rows; the item's slot and the trough of the health bar.
FORGE_RECIPE(picture_interface) {
    Canvas c(128, 128);
    const Shape panel = rectangle(1, 1, 126, 94, 10);
    c.fill(panel, [](float, float y) { return mix(rgb(0x2b3a52, 0.86f), rgb(0x18202f, 0.9f), y / 96); });
    c.fill(outline(rectangle(2.5f, 2.5f, 123, 91, 9), 2), kGold);
    const Shape slot = rectangle(7, 3.5f, 66, 65, 6);
    c.fill(slot, rgb(0x0d131d, 0.75f));
    c.fill(outline(slot, 1.5f), rgb(0x8b97ab, 0.9f));
    const Shape trough = rectangle(7, 71, 98, 12, 4);
    c.fill(trough, rgb(0x0d131d, 0.9f));
    c.fill(outline(trough, 1.5f), rgb(0x8b97ab, 0.9f));
    drawRose(c, 98, 36, 21, rgb(0xe6b84c, 0.85f), rgb(0x8a6a24, 0.85f));
    // A heart at the right end of the trough.
    c.fill(disc(111.5f, 75, 3.6f), rgb(0xd8434e));
    c.fill(disc(117.5f, 75, 3.6f), rgb(0xd8434e));
    c.fill(polygon({{108.2f, 76.6f}, {120.8f, 76.6f}, {114.5f, 84}}), rgb(0xd8434e));
    out.put("img/interface.tga", c.tga(32));
}

// Four white shapes of 64 × 64.
FORGE_RECIPE(picture_crosshair) {
    Canvas c(128, 128, {1, 1, 1, 0});
    // White takes the player's colour; the rim keeps it apart from the sky.
    const auto mark = [&](const Shape& shape) {
        c.fill(grown(shape, 1.5f), Colour{0.05f, 0.06f, 0.08f, 0.55f});
        c.fill(shape, Colour{1, 1, 1, 1});
    };
    // Upper left: a cross with a gap.
    for (float d : {-1.0f, 1.0f}) {
        mark(stroke(32 + d * 8, 32, 32 + d * 24, 32, 3.2f));
        mark(stroke(32, 32 + d * 8, 32, 32 + d * 24, 3.2f));
    }
    // Upper right: a ring and a dot.
    mark(outline(disc(96, 32, 18), 3));
    mark(disc(96, 32, 3));
    // Lower left: a dot alone.
    mark(disc(32, 96, 5));
    // Lower right: four corner brackets and a dot.
    for (float sx : {-1.0f, 1.0f})
        for (float sy : {-1.0f, 1.0f})
            mark(polyline(
                {{96 + sx * 20, 96 + sy * 10}, {96 + sx * 20, 96 + sy * 20}, {96 + sx * 10, 96 + sy * 20}},
                3));
    mark(disc(96, 96, 2.5f));
    out.put("img/crosshair.tga", c.tga(32));
}

FORGE_RECIPE(picture_pointer) {
    Canvas c(32, 32);
    const std::vector<std::pair<float, float>> arrow = {{1.5f, 1.5f}, {1.5f, 24},  {7.2f, 18.6f}, {11.4f, 28},
                                                        {15.6f, 26},  {11.5f, 17}, {19, 16.4f}};
    c.fill(grown(polygon(arrow), 1.3f), kInk);
    c.fill(polygon(arrow), [](float, float y) { return mix(kIvory, kGold, y / 30); });
    out.put("img/pointer.tga", c.tga(32));
}

FORGE_RECIPE(picture_icon) {
    Canvas c(32, 32);
    c.fill(disc(16, 16, 15.4f), rgb(0x336699));
    drawRose(c, 16, 16, 14.5f, rgb(0xffcc66), rgb(0x996633));
    out.put("img/icon.bmp", c.bmp8(rgb(0xff00ff)));
}

FORGE_RECIPE(picture_particles) {
    // The game draws its clouds many units wide and thirty, or a hundred, over one another: the pictures
    // leave their margin empty and are faint, so that the sum has a shape and a colour.
    Canvas smoke(64, 64, {0.7f, 0.7f, 0.7f, 0});
    smoke.cover([](float x, float y) {
        const float puff = fractalNoise(x / 9, y / 9, 81, 3);
        const float r = std::hypot(x - 32, y - 32) / 31 + 0.34f * (puff - 0.5f);
        const float v = 0.5f + 0.4f * fractalNoise(x / 7, y / 7, 82, 3) + 0.12f * (32 - y) / 32;
        return Colour{v, v, v, smoothStep(0.62f, 0.18f, r) * 0.3f};
    });
    out.put("particles/smoke04.tga", smoke.tga(32));
    Canvas fire(32, 32);
    fire.cover([](float x, float y) {
        const float lick = fractalNoise(x / 5, y / 5, 91, 3);
        const float r = std::hypot(x - 16, y - 16) / 15.5f + 0.4f * (lick - 0.5f);
        const float heat = smoothStep(0.75f, 0.05f, r) * (0.6f + 0.6f * lick);
        return Colour{0.17f * heat, 0.085f * heat * heat, 0.05f * heat * heat * heat, 1};
    });
    out.put("particles/explo32x32.tga", fire.tga(24));
}

namespace {
struct Button {
    const char* text;
    int row; // as menu.cfg has them
};
// "SAVE" shows the picture that loads settings, and the other way round: the menu's flows are wired so.
constexpr Button kButtons[] = {{"Return to game", 0},
                               {"New game", 1},
                               {"Load game", 2},
                               {"Settings", 3},
                               {"Credits", 4},
                               {"Quit", 5},
                               {"Audio settings", 6},
                               {"Video settings", 7},
                               {"Input settings", 8},
                               {"Default settings", 9},
                               {"Load settings", 10},
                               {"Save settings", 11},
                               {"OK", 12},
                               {"Cancel", 13}};

/// A dry brush's stroke: ragged at its ends, streaked along its way.
Shape brushStroke(float left, float top, float width, float height, int seed) {
    Shape shape = rectangle(left, top, width, height, height * 0.45f);
    shape.distance = [=](float x, float y) {
        const float across = (y - top) / height - 0.5f, sag = 1.6f * std::sin((x - left) / width * 3.1f);
        const float ragged = 9 * fractalNoise(y * 0.55f, static_cast<float>(seed), 17, 2);
        const float ends = std::max(left + ragged - x, x - (left + width - ragged));
        const float edge = std::fabs(y - top - height / 2 + sag) - height / 2 +
                           2.4f * fractalNoise(x * 0.06f, across + static_cast<float>(seed), 23, 3) + 0.6f;
        return std::max(ends, edge);
    };
    return shape;
}

void drawButton(Canvas& c, const Button& button, float x, float y, bool lit) {
    TextStyle style{0, y + 4.4f, 15.5f, 2.7f, 0.17f, 0.06f};
    style = centred(button.text, style, x + 149);
    if (lit) {
        const float width = std::min(292.0f, textWidth(button.text, style) + 66);
        const Shape stroke = brushStroke(x + 150 - width / 2, y + 1.8f, width, 25, button.row);
        c.fill(stroke, [&](float px, float py) {
            const float streak = fractalNoise(px * 0.015f, py * 0.9f, 31, 2);
            return mix(rgb(0xf3cf5f), rgb(0xdf9f34), clamp01(1.3f * streak - 0.1f));
        });
        drawText(c, button.text, style, rgb(0x8c2f22));
    } else {
        drawRimmedText(c, button.text, style, rgb(0x1b3a5c), rgb(0xfffbee, 0.75f), 1.5f);
    }
}

/// Sky, sea and the island with its lighthouse, as seen from a boat; 0 at the left and top, 1 at the right
/// and the bottom.
Colour seascape(float u, float v) {
    constexpr float kHorizon = 0.62f;
    if (v > kHorizon) {
        const float deep = (v - kHorizon) / (1 - kHorizon);
        const float wave = fractalNoise(u * 46, v * 60 + 3 * std::sin(u * 21), 41, 2);
        return mix(mix(rgb(0x3aa6bd), rgb(0x1f6f92), deep), rgb(0xbfe6e2),
                   smoothStep(0.70f, 0.78f, wave) * 0.55f);
    }
    Colour sky = mix(rgb(0x2f78c4), rgb(0xe9f3ea), smoothStep(0.0f, kHorizon, v));
    const float cloud = fractalNoise(u * 7, v * 11, 43, 4);
    sky = mix(sky, rgb(0xfffdf4), smoothStep(0.54f, 0.70f, cloud) * smoothStep(0.02f, 0.3f, v) * 0.85f);
    const float hill = kHorizon - 0.17f * std::exp(-std::pow((u - 0.945f) / 0.06f, 2.0f)) -
                       0.07f * std::exp(-std::pow((u - 0.84f) / 0.07f, 2.0f)) -
                       0.06f * std::exp(-std::pow((u - 0.10f) / 0.06f, 2.0f)) +
                       0.012f * fractalNoise(u * 40, 1, 47, 2);
    if (v > hill + 0.008f) return mix(rgb(0x8fbb54), rgb(0x3f7d34), (v - hill) / 0.16f);
    return sky;
}

void drawLighthouse(Canvas& c, float x, float foot) {
    c.fill(polygon({{x - 6, foot}, {x + 6, foot}, {x + 3.6f, foot - 34}, {x - 3.6f, foot - 34}}),
           rgb(0xf3e6c8));
    c.fill(
        polygon({{x - 5.2f, foot - 9}, {x + 5.2f, foot - 9}, {x + 4.6f, foot - 18}, {x - 4.6f, foot - 18}}),
        rgb(0xc4473d));
    c.fill(rectangle(x - 6, foot - 37, 12, 3.4f), rgb(0x8a5c34));
    c.fill(rectangle(x - 3.2f, foot - 44, 6.4f, 8), rgb(0xffe9a0));
    c.glow(disc(x, foot - 40, 3), rgb(0xfff2b0, 0.7f), 9);
    c.fill(polygon({{x - 5, foot - 43}, {x + 5, foot - 43}, {x, foot - 51}}), rgb(0xc4473d));
}

void drawBoat(Canvas& c, float x, float y) {
    c.fill(polygon({{x - 15, y}, {x + 15, y}, {x + 10, y + 7}, {x - 10, y + 7}}), rgb(0x8a5c34));
    c.fill(polygon({{x + 1, y - 3}, {x + 1, y - 36}, {x + 17, y - 3}}), rgb(0xf3e6c8));
    c.fill(polygon({{x - 1.5f, y - 3}, {x - 1.5f, y - 30}, {x - 13, y - 3}}), rgb(0xe6b84c));
}

/// From a wooden peg down to the ring of a board.
void drawRope(Canvas& c, float x, float peg, float ring) {
    c.fill(stroke(x, peg, x, ring, 6), rgb(0xcaa66a));
    for (float y = peg + 6; y < ring - 4; y += 5)
        c.fill(stroke(x - 2, y + 2, x + 2, y - 1, 1), rgb(0x97713c));
    c.fill(outline(disc(x, ring, 8), 4), rgb(0xb98a48));
    c.fill(disc(x, peg, 10), rgb(0x8a5c34));
    c.fill(disc(x - 2, peg - 2, 4.5f), rgb(0xb07c48));
    c.fill(outline(disc(x, peg, 10), 2.5f), rgb(0x4c3322));
}

/// A painted board on two ropes; the name stands before the view from the sea.
void drawTitle(Canvas& c) {
    const Shape board = rectangle(14, 40, 676, 190, 34), view = rectangle(27, 53, 650, 164, 24);
    c.fill(board, [](float x, float y) {
        const float grain = fractalNoise(x * 0.02f, y * 0.35f, 51, 4);
        return mix(rgb(0x8a5c34), rgb(0xc08a52), grain);
    });
    c.fill(outline(board, 2.5f), rgb(0x4c3322));
    c.fill(view, [](float x, float y) { return seascape((x - 27) / 650, (y - 53) / 164); });
    c.fill(outline(view, 3), rgb(0x4c3322));
    drawLighthouse(c, 642, 131);
    drawBoat(c, 60, 178);
    for (const float x : {60.0f, 644.0f}) drawRope(c, x, 20, 44);
    TextStyle style{0, 96, 76, 12.4f, 0.11f, 0.05f};
    style = centred("Quorvane", style, 350);
    const std::vector<Shape> letters = textShapes("Quorvane", style);
    for (const Shape& s : letters) c.glow(s, rgb(0x0f2236, 0.55f), 12);
    for (const Shape& s : letters) c.fill(grown(s, 4.5f), rgb(0x1b2d44));
    for (const Shape& s : letters)
        c.fill(s, [](float, float y) { return mix(rgb(0xfffae8), rgb(0xeab24a), smoothStep(92, 178, y)); });
}
} // namespace

// Title, buttons and the pictures of the credits page and the end.
FORGE_RECIPE(picture_menu) {
    Canvas c(1024, 1024);
    drawTitle(c);
    for (const Button& button : kButtons) {
        const float y = 277 + 40 * static_cast<float>(button.row);
        drawButton(c, button, 8, y, false);
        drawButton(c, button, 348, y, true);
    }
    // The end: 481 × 69 at 48, 860; it stands on black.
    TextStyle end{0, 868, 46, 7, 0.22f, 0.06f};
    end = centred("The End", end, 288);
    for (const Shape& s : textShapes("The End", end)) {
        c.fill(grown(s, 3), rgb(0x8c2f22));
        c.fill(s, [](float, float y) { return mix(rgb(0xfffae8), rgb(0xeab24a), smoothStep(868, 914, y)); });
    }
    for (const float side : {-1.0f, 1.0f}) drawRose(c, 288 + side * 196, 893, 26, kGold, rgb(0x8a6a24));
    // Credits page: 191 × 73 at 698, 855 and 303 × 61 at 684, 937.
    c.fill(rectangle(700, 857, 187, 69, 10),
           [](float x, float y) { return seascape((x - 700) / 187, (y - 857) / 69); });
    c.fill(outline(rectangle(701, 858, 185, 67, 9), 2.5f), rgb(0x4c3322));
    TextStyle small{0, 880, 22, 3.7f, 0.12f, 0.05f};
    small = centred("Quorvane", small, 793);
    drawRimmedText(c, "Quorvane", small, rgb(0xfff6d8), rgb(0x1b2d44), 2);
    TextStyle line{0, 952, 15, 2.6f, 0.16f, 0.06f};
    drawText(c, "Thank you for playing!", centred("Thank you for playing!", line, 835), rgb(0x8c2f22));
    c.fill(brushStroke(728, 978, 214, 7, 5), rgb(0xdf9f34));
    out.put("img/menu.tga", c.tga(32));
}

namespace {
struct Caption {
    float left, top, width, height;
    std::vector<const char*> lines;
};
void drawCaption(Canvas& c, const Caption& caption) {
    const auto count = static_cast<float>(caption.lines.size());
    const float pitch = caption.height / count;
    float cap = std::min(pitch * 0.52f, 34.0f);
    for (const char* text : caption.lines) {
        TextStyle probe{0, 0, 10, 1.5f, 0.2f, 0};
        cap = std::min(cap, (caption.width - 16) / textWidth(text, probe) * 10);
    }
    for (size_t i = 0; i < caption.lines.size(); ++i) {
        TextStyle style{
            0, caption.top + pitch * (static_cast<float>(i) + 0.5f) - cap / 2, cap, cap * 0.13f, 0.2f, 0};
        drawRimmedText(c, caption.lines[i],
                       centred(caption.lines[i], style, caption.left + caption.width / 2), kIvory,
                       rgb(0x101820, 0.85f), cap * 0.08f + 1);
    }
}
} // namespace

// The opening: maker's sign, title sign and the captions over the flight.
FORGE_RECIPE(picture_credits) {
    Canvas c(1024, 1024);
    c.fill(rectangle(560, 440, 140, 140, 30), rgb(0x1c4f73, 0.9f));
    drawRose(c, 630, 512, 66, kGold, rgb(0x8a6a24));
    drawCaption(c, {518, 612, 65, 29, {"presents"}});
    drawCaption(c, {514, 668, 169, 61, {"QUORVANE"}});
    drawCaption(c, {39, 23, 318, 132, {"An island", "in an open sea"}});
    drawCaption(c, {39, 171, 318, 135, {"a wind", "that no chart knows"}});
    drawCaption(c, {41, 333, 377, 70, {"and a light on the hill"}});
    drawCaption(c, {41, 412, 295, 107, {"Someone has to", "find out"}});
    drawCaption(c, {43, 528, 297, 109, {"Press any key", "to set out"}});
    drawCaption(c, {42, 654, 209, 231, {"Engine", "Levels", "Pictures", "Sound"}});
    out.put("img/credits.tga", c.tga(32));
}
