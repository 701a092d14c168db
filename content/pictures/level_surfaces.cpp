#include "forge/canvas.h"
#include "forge/noise.h"
#include "forge/recipes.h"

#include <algorithm>
#include <cmath>

using namespace forge;

namespace {
constexpr int kSize = 256; // of a tiling surface
constexpr auto kSide = static_cast<float>(kSize);

/// Tiling noise over the picture with `cells` lattice cells a side.
float grain(float x, float y, int cells, uint32_t seed, int octaves) {
    const float scale = static_cast<float>(cells) / kSide;
    return fractalNoise(x * scale, y * scale, seed, octaves, cells);
}

/// Distance to the nearest joint of a wall of bricks or boards laid in courses, in pixels; `id` names the
/// stone.
float courses(float x, float y, float width, float height, float wobble, int& id) {
    const float wy = y + wobble * (grain(x, y, 8, 51, 2) - 0.5f);
    const float row = std::floor(wy / height);
    const float rows = kSide / height;
    const float shift = static_cast<int>(row) % 2 != 0 ? width / 2 : 0;
    const float wx = x + shift + wobble * (grain(x, y, 8, 52, 2) - 0.5f);
    const float column = std::floor(wx / width);
    const int columns = static_cast<int>(kSide / width);
    id = static_cast<int>(std::fmod(row + rows, rows)) * 31 + (static_cast<int>(column) + columns) % columns;
    const float dx = std::min(wx - column * width, (column + 1) * width - wx);
    const float dy = std::min(wy - row * height, (row + 1) * height - wy);
    return std::min(dx, dy);
}

Colour ground(float x, float y) {
    // Nearly white: the colour of the ground comes from the layer above it.
    const float tufts = grain(x, y, 32, 3, 3), patches = grain(x, y, 4, 4, 3);
    const float blades = grain(x * 2, y, 64, 5, 1);
    const float v = 0.80f + 0.13f * smoothStep(0.3f, 0.7f, tufts) + 0.07f * patches + 0.10f * (blades - 0.5f);
    return {v, v, v * 0.98f, 1};
}

Colour plaster(float x, float y) {
    const float v = 0.93f + 0.12f * (grain(x, y, 16, 11, 4) - 0.5f);
    const float stain = smoothStep(0.55f, 0.8f, grain(x, y, 4, 12, 3));
    return shaded(mix(rgb(0xf3e6c8), rgb(0xdcc79c), stain), v);
}

Colour planks(float x, float y) {
    constexpr float kWidth = 42.67f;
    const int board = static_cast<int>(x / kWidth);
    const float within = x - static_cast<float>(board) * kWidth;
    const float joint = std::min(within, kWidth - within);
    const float tone = latticeValue(board, 1, 21);
    const float fibre = grain(x * 3, y * 0.5f + tone * 100, 32, 22, 2);
    const Colour wood = mix(rgb(0xc08a52), rgb(0xa06c3c), tone);
    return shaded(wood, (0.86f + 0.24f * fibre) * (0.55f + 0.45f * smoothStep(0.6f, 2.6f, joint)));
}

Colour beams(float x, float y) {
    const float fibre = grain(x * 0.5f, y * 2, 32, 25, 3);
    return shaded(mix(rgb(0x6b4526), rgb(0x8a5c34), fibre), 0.9f + 0.25f * (fibre - 0.5f));
}

Colour stone(float x, float y) {
    int id = 0;
    const float joint = courses(x, y, 64, 42.67f, 9, id);
    const float tone = latticeValue(id, 3, 31);
    const Colour face = mix(rgb(0xa9a79c), rgb(0x8f9196), tone);
    const Colour warm = mix(face, rgb(0xb8a584), 0.4f * latticeValue(id, 4, 32));
    const float rough = 0.88f + 0.24f * grain(x, y, 16, 33, 4);
    return shaded(mix(rgb(0x6a665f), warm, smoothStep(1.5f, 4.5f, joint)), rough);
}

Colour thatch(float x, float y) {
    const float layer = std::fmod(y, 64.0f) / 64;
    const float straw = grain(x * 2, y * 0.25f, 64, 41, 2);
    const float edge = smoothStep(0.0f, 0.18f, layer + 0.12f * (straw - 0.5f));
    return shaded(mix(rgb(0xc79a4b), rgb(0xe3bd6c), straw), (0.62f + 0.38f * edge) * (0.9f + 0.15f * layer));
}

Colour cloth(float x, float y) {
    const float weave = 0.95f + 0.05f * std::sin(x * 1.57f) * std::sin(y * 1.57f);
    const float fx = std::fabs(x / kSide - 0.5f), fy = std::fabs(y / kSide - 0.5f);
    const float edge = std::max(fx, fy), diamond = std::fmod(fx + fy, 0.25f);
    Colour c = rgb(0xb23a3f);
    if (diamond < 0.05f) c = rgb(0xe8c26a);
    if (edge > 0.4f) c = rgb(0x2f4b7c);
    if (edge > 0.43f && edge < 0.455f) c = rgb(0xe8c26a);
    return shaded(c, weave);
}

Colour rock(float x, float y) {
    const float v = grain(x, y, 4, 61, 5), cracks = std::fabs(grain(x, y, 8, 62, 3) - 0.5f);
    const Colour c = mix(rgb(0x77726c), rgb(0xa8a29a), v);
    return shaded(c, 0.7f + 0.3f * smoothStep(0.0f, 0.05f, cracks));
}

/// Tower of the lighthouse, from the gallery at the top to its foot: bands of red on white.
Colour tower(float x, float y) {
    constexpr int kBands = 5;
    const float wave = 2 * (grain(x, y, 8, 63, 2) - 0.5f);
    const int band = static_cast<int>((y + wave) / kSide * kBands);
    const float peeling = smoothStep(0.60f, 0.68f, grain(x, y, 16, 64, 3));
    Colour c = band % 2 == 0 ? rgb(0xf1ead9) : mix(rgb(0xc4473d), rgb(0xd98a72), 0.7f * peeling);
    const float drop = smoothStep(0.5f, 0.8f, grain(x * 3, y * 0.3f, 16, 65, 2));
    return shaded(c, (0.94f + 0.10f * grain(x, y, 16, 66, 3)) * (1 - 0.08f * drop));
}

/// Foliage: overlapping brush strokes, lighter where they end. 0 … 1 from their shadows to their tips.
float strokes(float x, float y) {
    constexpr int kAcross = 9;
    constexpr float kStroke = kSide / kAcross;
    float best = 0, tone = 0.1f;
    for (int j = -1; j <= 1; ++j)
        for (int i = -1; i <= 1; ++i) {
            const float column = std::floor(x / kStroke) + static_cast<float>(i),
                        row = std::floor(y / kStroke) + static_cast<float>(j);
            const int cx = (static_cast<int>(column) + kAcross) % kAcross,
                      cy = (static_cast<int>(row) + kAcross) % kAcross;
            const float dx = (x - (column + latticeValue(cx, cy, 68)) * kStroke) / (kStroke * 0.62f),
                        dy = (y - (row + latticeValue(cx, cy, 69)) * kStroke) / (kStroke * 0.85f);
            const float inside = 1 - dx * dx - dy * dy, rank = latticeValue(cx, cy, 70);
            if (inside <= 0 || rank < best) continue;
            best = rank;
            tone = 0.40f + 0.35f * rank + 0.45f * dy;
        }
    return clamp01(tone);
}

Colour leaves(float x, float y) {
    return mix(rgb(0x4a8a34), rgb(0x8cc350), strokes(x, y));
}
Colour paleLeaves(float x, float y) {
    return mix(rgb(0x6fae3e), rgb(0xb4d968), strokes(x, y));
}
Colour needles(float x, float y) {
    return mix(rgb(0x2c6a4c), rgb(0x5a9f66), strokes(x, y));
}

struct Surface {
    const char* file;
    Colour (*paint)(float x, float y);
};
constexpr Surface kSurfaces[] = {
    {"src_mdl/ground.tga", ground},   {"src_mdl/plaster.tga", plaster},
    {"src_mdl/planks.tga", planks},   {"src_mdl/mannequin/wood.tga", beams},
    {"src_mdl/beams.tga", beams},     {"src_mdl/stone.tga", stone},
    {"src_mdl/thatch.tga", thatch},   {"src_mdl/cloth.tga", cloth},
    {"src_mdl/rock.tga", rock},       {"src_mdl/tower.tga", tower},

    {"src_mdl/leaves.tga", leaves},   {"src_mdl/leaves_pale.tga", paleLeaves},
    {"src_mdl/needles.tga", needles},
};
} // namespace

FORGE_RECIPE(picture_level_surfaces) {
    for (const Surface& surface : kSurfaces) {
        Canvas picture(kSize, kSize);
        picture.cover(surface.paint);
        out.put(surface.file, picture.tga(24));
    }
}
