#include "pictures/tints.h"

#include "forge/canvas.h"
#include "forge/noise.h"
#include "forge/recipes.h"

#include <cmath>

using namespace forge;

namespace {
constexpr int kSize = 256;
constexpr auto kSide = static_cast<float>(kSize);

/// What the cells of the palette picture hold, row by row; each gets lighter towards its top.
struct TintCell {
    unsigned foot, tip;
};
constexpr TintCell kCells[] = {
    {0xc4c4bc, 0xffffff}, {0x3f7d34, 0x8cc152}, {0xc23a3c, 0xf0705c}, {0xe0962a, 0xffe067},
    {0xdcd6c4, 0xffffff}, {0x6b4fa0, 0xb892e0}, {0x6f7d3a, 0xd9c98a}, {0x3f8a6a, 0x9fd8a4},
    {0x236a78, 0x3f98a0}, {0x9c3a34, 0xc95a48}, {0xd9cba8, 0xf7efd8}, {0xf08a24, 0xfff2a8},
    {0x4c3322, 0x7a5636}, {0x2b303a, 0x4c5462}, {0x9c5434, 0xcf8458}, {0xb98a48, 0xe8c98a},
};

Colour cell(float x, float y) {
    constexpr float kCell = kSide / tints::kAcross;
    const int index = static_cast<int>(y / kCell) * tints::kAcross + static_cast<int>(x / kCell);
    const float up = 1 - std::fmod(y, kCell) / kCell;
    const TintCell& t = kCells[index];
    return shaded(mix(rgb(t.foot), rgb(t.tip), smoothStep(0.05f, 0.95f, up)),
                  0.97f + 0.06f * fractalNoise(x * 32 / kSide, y * 32 / kSide, 67, 2, 32));
}
} // namespace

namespace tints {
Mesh tinted(const Mesh& mesh, Tint tint) {
    constexpr float kCell = 1.0f / kAcross, kMargin = 0.12f * kCell;
    const int index = static_cast<int>(tint), column = index % kAcross, row = index / kAcross;
    const float u = kCell * static_cast<float>(column), v = 1 - kCell * static_cast<float>(row + 1);
    return mesh.mapped(u + kMargin, v + kMargin, u + kCell - kMargin, v + kCell - kMargin);
}
} // namespace tints

FORGE_RECIPE(picture_tints) {
    Canvas picture(kSize, kSize);
    picture.cover(cell);
    out.put("src_mdl/tints.tga", picture.tga(24));
}
