// The beacon's mountain: fixed geometry and the ground's picture.

#include "forge/noise.h"
#include "forge/recipes.h"
#include "levels/growth.h"
#include "levels/standing.h"
#include "levels/summit_ground.h"
#include "pictures/level_layer.h"

#include <algorithm>
#include <cmath>

using namespace forge;
using namespace parts;

namespace summit {
namespace {
constexpr float kTurn = 6.28318531f;

cVector3 onGround(float x, float z, float up = 0) {
    return {x, height(x, z) + up, z};
}

/// Beside the path: `aside` units outwards.
cVector3 besidePath(float part, float aside, float up = 0) {
    const cVector3 at = pathAt(part), out = cVector3(at.x, 0, at.z).normalized();
    return onGround(at.x + out.x * aside, at.z + out.z * aside, up);
}

void addRocks(Scenery& s) {
    uint32_t seed = 570;
    for (int i = 0; i < 22; ++i) {
        const float part = (static_cast<float>(i) + 0.6f * latticeValue(i, 1, 571)) / 22;
        if (part > 0.92f) break; // the top is free
        const float aside = i % 2 == 0 ? 3.0f : -2.2f, size = 0.5f + 0.6f * latticeValue(i, 2, 571);
        s.add(kRock, boulder(size, ++seed).moved(besidePath(part, aside, size * 0.1f)));
    }
    for (int i = 0; i < 12; ++i) {
        const float a = kTurn * (static_cast<float>(i) + 0.5f * latticeValue(i, 3, 571)) / 12,
                    r = 27.5f + 2.5f * latticeValue(i, 4, 571);
        if (std::fabs(std::sin(a) * r) < 3 && std::cos(a) > 0) continue;
        s.add(kRock, boulder(1.0f + 0.8f * latticeValue(i, 5, 571), ++seed)
                         .moved(onGround(r * std::sin(a), r * std::cos(a), 0.1f)));
    }
    // The horn behind the beacon, seen from everywhere.
    const cVector3 horn(-4.6f, 0, -5.2f);
    s.add(kRock, lathe({{4.4f, 13}, {3.5f, 17}, {2.3f, 20}, {1.2f, 23}, {0, kHighest}}, 7, 5, 6).moved(horn));
    s.add(kRock, lathe({{3.0f, 13}, {2.2f, 16}, {1.2f, 18.4f}, {0, 20}}, 6, 4, 4)
                     .moved(horn + cVector3(4.6f, 0, -1.4f)));
    s.add(kRock,
          lathe({{2.6f, 13}, {1.7f, 15.6f}, {0, 17.6f}}, 6, 4, 3).moved(horn + cVector3(-3.6f, 0, 3.0f)));
}

/// Wind-bent pines on the lower slopes, heather everywhere, snow poles higher up.
void addGrowth(Scenery& s) {
    for (int i = 0; i < 46; ++i) {
        const float a = kTurn * latticeValue(i, 1, 581), r = 9 + 19 * std::sqrt(latticeValue(i, 2, 581));
        const float x = r * std::sin(a), z = r * std::cos(a), y = height(x, z);
        if (y < 1.2f || y > 11 || path(x, z) > 0 ||
            std::hypot(height(x + 0.4f, z) - y, height(x, z + 0.4f) - y) > 0.75f)
            continue;
        growth::addPine(s, onGround(x, z, -0.15f), 0.75f + 0.3f * latticeValue(i, 3, 581),
                        static_cast<uint32_t>(582 + i));
    }
    constexpr float kSpacing = 1.0f;
    constexpr int kSide = 28;
    Mesh blades, heather;
    for (int j = -kSide; j <= kSide; ++j)
        for (int i = -kSide; i <= kSide; ++i) {
            const float x = kSpacing * (static_cast<float>(i) + 0.9f * (latticeValue(i, j, 591) - 0.5f)),
                        z = kSpacing * (static_cast<float>(j) + 0.9f * (latticeValue(i, j, 592) - 0.5f));
            const float y = height(x, z);
            if (y < 1.3f || path(x, z) > 0.15f) continue;
            if (std::hypot(height(x + 0.3f, z) - y, height(x, z + 0.3f) - y) > 0.25f) continue;
            const auto seed = static_cast<uint32_t>((i + 100) * 331 + j + 100);
            const float lush = fractalNoise(x * 0.25f, z * 0.25f, 593, 2) - 0.012f * y;
            const float chance = latticeValue(i, j, 594);
            if (chance < lush) {
                blades.append(growth::tuft(height, x, z, seed, 0.2f + 0.2f * lush, 4));
            } else if (chance > 0.80f) {
                heather.append(growth::tuft(height, x, z, seed, 0.3f, 6));
            }
        }
    s.addGround(kGrass, tinted(blades, Tint::kBlade), Scenery::kSeen);
    s.add(kStalks, tinted(heather, Tint::kViolet), Scenery::kSeen);
    // Poles that mark the path when snow lies.
    for (int i = 0; i < 9; ++i) {
        const cVector3 at = besidePath(0.12f + 0.1f * static_cast<float>(i), 2.0f);
        s.add(kBeams, timber(at - cVector3(0, 0.3f, 0), at + cVector3(0.05f, 1.5f, 0.03f), 0.1f),
              Scenery::kSeen);
        s.add(kTints,
              tinted(box({-0.07f, 1.1f, -0.07f}, {0.07f, 1.35f, 0.07f}, 0.3f), Tint::kBrick)
                  .moved(at + cVector3(0.04f, 0, 0.02f)),
              Scenery::kSeen);
    }
}

void addLanding(Scenery& s) {
    s.add(kPlanks, box({-1.1f, 0.7f, 26.6f}, {1.1f, 0.9f, 32.6f}, 0.5f));
    for (float z : {27.4f, 29.8f, 32.0f})
        for (float x : {-1.25f, 1.05f}) s.add(kBeams, box({x, -4, z}, {x + 0.2f, 1.45f, z + 0.2f}, 0.6f));
}

/// What is left of a watch house across the path in the north: an arch between two broken walls.
void addWatchHouse(Scenery& s) {
    constexpr float kPart = 0.55f;
    const cVector3 at = pathAt(kPart);
    const float turn = 360 * kPart;
    // The lintel lies over the camera's head.
    Mesh wall = box({-3.2f, -2.5f, -0.4f}, {-1.5f, 4.4f, 0.4f}, 0.5f);
    wall.append(box({1.5f, -3.8f, -0.4f}, {3.2f, 4.7f, 0.4f}, 0.5f));
    wall.append(box({-1.6f, 4.1f, -0.36f}, {1.6f, 4.7f, 0.36f}, 0.5f));
    wall.append(box({2.0f, 4.5f, -0.4f}, {3.2f, 5.3f, 0.4f}, 0.5f));
    s.add(kStone, wall.turned(turn + 90).moved(at));
    uint32_t seed = 600;
    for (float k : {-0.035f, 0.03f, 0.045f})
        s.add(kRock, boulder(0.35f, ++seed).moved(besidePath(kPart + k, k > 0 ? 1.7f : -1.6f)),
              Scenery::kSeen);
}

/// A round plinth of three steps; the iron bowl on it is an object.
void addBeacon(Scenery& s) {
    const float y = kTop - 0.05f;
    for (const auto& [radius, low, high] :
         {std::tuple{2.2f, -0.6f, 0.25f}, {1.7f, 0.2f, 0.5f}, {1.2f, 0.45f, 0.75f}})
        s.add(kStone, lathe({{radius, y + low}, {radius, y + high}, {0, y + high}}, 14, 6, 0.5f));
    // Four old pillars round it.
    for (int i = 0; i < 4; ++i) {
        const float a = kTurn * (0.125f + 0.25f * static_cast<float>(i)), tall = i == 2   ? 1.6f
                                                                                 : i == 1 ? 2.7f
                                                                                          : 3.2f;
        s.add(kStone, lathe({{0.42f, -0.5f},
                             {0.42f, 0.18f},
                             {0.31f, 0.26f},
                             {0.28f, tall},
                             {0.38f, tall + 0.1f},
                             {0.38f, tall + 0.3f},
                             {0, tall + 0.32f}},
                            10, 3, 1.6f)
                          .moved(onGround(4.3f * std::sin(a), 4.3f * std::cos(a))));
    }
}

/// Sacks, a lean-to and a fire: somebody has been waiting up here.
void addCamp(Scenery& s) {
    const cVector3 at = onGround(6.4f, -2.2f);
    Mesh cloth;
    cloth.addQuad({-1.5f, 0.1f, 1.2f}, {1.5f, 0.1f, 1.2f}, {1.5f, 1.9f, -0.9f}, {-1.5f, 1.9f, -0.9f}, 2, 2);
    cloth.append(cloth.insideOut());
    s.add(kCloth, cloth.turned(-70).moved(at), Scenery::kSeen);
    Mesh poles;
    for (float x : {-1.45f, 1.45f}) poles.append(timber({x, -0.3f, -0.9f}, {x, 2.05f, -0.9f}, 0.1f));
    s.add(kBeams, poles.turned(-70).moved(at), Scenery::kBoth);
    for (int i = 0; i < 4; ++i)
        s.add(kCloth,
              ball(0.34f, 8, 6)
                  .scaled({1, 0.8f, 1})
                  .moved(onGround(6.6f + 0.5f * static_cast<float>(i % 2),
                                  -3.2f + 0.6f * static_cast<float>(i), 0.18f)),
              Scenery::kSeen);
}
} // namespace
} // namespace summit

FORGE_RECIPE(level_summit) {
    using namespace summit;
    Scenery s;
    constexpr int kCells = 72;
    s.addGround(kGround,
                terrain(-kHalfSize, -kHalfSize, 2 * kHalfSize / kCells, kCells, kCells, height, 0.25f));
    s.setGround(height);
    addRocks(s);
    addGrowth(s);
    addLanding(s);
    addWatchHouse(s);
    addBeacon(s);
    addCamp(s);
    levels::addStanding(s, out, "summit.xml");
    s.write(out, "summit", kHalfSize,
            {"summit_layer.tga", kHalfSize, layer::kRampV, kTowardsSun, layer::kDarkest});
}

namespace {
const layer::Land kLand{summit::height, summit::kTowardsSun};

Colour groundColour(float x, float z) {
    const float y = summit::height(x, z);
    const cVector3 n = layer::normal(kLand, x, z);
    const float patches = fractalNoise(x * 0.33f, z * 0.33f, 561, 4),
                fine = fractalNoise(x * 2, z * 2, 562, 2);
    Colour c = mix(rgb(0x6f8a45), rgb(0xa3ad5e), smoothStep(0.3f, 0.7f, patches));
    // Heather, and higher up bare stone and snow.
    c = mix(c, rgb(0x8a6f92), 0.6f * smoothStep(0.5f, 0.68f, fractalNoise(x * 0.4f, z * 0.4f, 563, 3)));
    c = mix(c, mix(rgb(0x9a9084), rgb(0xb3a998), fine), smoothStep(8, 12.5f, y + 3 * (patches - 0.5f)));
    const float sand = 1 - smoothStep(0.7f, 1.5f, y + 0.8f * (patches - 0.5f));
    c = mix(c, mix(rgb(0xcdbb98), rgb(0xb29e7c), fine), sand);
    c = mix(c, rgb(0x857a68), 1 - smoothStep(-0.5f, 0.2f, y));
    c = mix(c, mix(rgb(0xbc9f78), rgb(0x9f8462), fine), 0.9f * summit::path(x, z));
    const float steep = smoothStep(0.82f, 0.66f, n.y);
    const float bands = fractalNoise(x * 0.2f, y * 1.2f + z * 0.2f, 564, 3);
    c = mix(c, mix(rgb(0x6f6670), rgb(0xa3938e), bands), steep);
    const float snow = smoothStep(0.52f, 0.62f, patches) * smoothStep(12.5f, 14.5f, y) * (1 - steep) *
                       (1 - summit::path(x, z));
    c = mix(c, rgb(0xf1f0f4), 0.9f * snow);
    const float light = 0.60f + 0.50f * std::max(0.0f, n.dot(summit::kTowardsSun));
    Colour lit = shaded(c, light * 1.04f);
    lit.r = std::min(1.0f, lit.r * 1.05f); // the evening's warmth
    return mix(rgb(0x35506e), lit, smoothStep(-4.5f, -0.6f, y));
}
} // namespace

FORGE_RECIPE(picture_summit_layer) {
    layer::put(out, "summit", summit::kHalfSize, groundColour);
}
