// The wooded valley's fixed geometry: woods, bridge, camp, herb woman's hut.

#include "forge/noise.h"
#include "forge/recipes.h"
#include "levels/deepwood_ground.h"
#include "levels/growth.h"
#include "levels/standing.h"
#include "pictures/level_layer.h"

#include <algorithm>
#include <cmath>

using namespace forge;
using namespace parts;

namespace deepwood {
namespace {
cVector3 onGround(float x, float z, float up = 0) {
    return {x, height(x, z) + up, z};
}

constexpr float kAbove = 7; ///< on the cliffs, where nobody comes

void addTrees(Scenery& s) {
    for (const Tree& t : trees()) {
        if (t.pine) {
            growth::addPine(s, onGround(t.x, t.z, -0.1f), t.size, t.seed, height(t.x, t.z) > kAbove);
        } else {
            growth::addOak(s, onGround(t.x, t.z, -0.1f), t.size, t.seed);
        }
    }
}

/// Grass in the light, ferns in the shade, a few flowers and mushrooms along the way.
void addUndergrowth(Scenery& s) {
    constexpr float kSpacing = 1.0f;
    constexpr int kSide = 30;
    Mesh blades, ferns;
    for (int j = -kSide; j <= kSide; ++j)
        for (int i = -kSide; i <= kSide; ++i) {
            const float x = kSpacing * (static_cast<float>(i) + 0.9f * (latticeValue(i, j, 521) - 0.5f)),
                        z = kSpacing * (static_cast<float>(j) + 0.9f * (latticeValue(i, j, 522) - 0.5f));
            if (std::fabs(x) > 28 || z > 27 || path(x, z) > 0.12f || std::fabs(z - riverAt(x)) < 4.4f)
                continue;
            const float y = height(x, z);
            if (y < 1.3f || y > 4.5f || std::fabs(height(x + 0.4f, z) - y) > 0.3f) continue;
            const float lush = fractalNoise(x * 0.25f, z * 0.25f, 523, 2);
            const auto seed = static_cast<uint32_t>((i + 100) * 331 + j + 100);
            const float chance = latticeValue(i, j, 524);
            if (chance < lush * 1.25f) {
                blades.append(growth::tuft(height, x, z, seed, 0.25f + 0.3f * lush, 4));
            } else if (chance > 0.9f) {
                ferns.append(growth::tuft(height, x, z, seed, 0.7f, 7));
            }
            if (latticeValue(i, j, 525) > 0.955f)
                growth::addFlower(s, height, x, z + 0.2f, 0.26f, seed % 3 == 0 ? Tint::kWhite : Tint::kViolet,
                                  seed);
        }
    s.addGround(kGrass, tinted(blades, Tint::kBlade), Scenery::kSeen);
    s.add(kStalks, tinted(ferns, Tint::kLeaf), Scenery::kSeen);
    for (int i = 0; i < 26; ++i) {
        const Tree& t = trees()[static_cast<size_t>(i * 7) % trees().size()];
        if (height(t.x, t.z) > 5) continue;
        const float a = 2.4f * static_cast<float>(i), x = t.x + 0.75f * std::sin(a),
                    z = t.z + 0.75f * std::cos(a);
        if (isKeptFree(x, z, 0)) continue;
        for (int k = 0; k < 3; ++k) {
            const float size = 0.07f + 0.04f * latticeValue(i, k, 526),
                        px = x + 0.2f * static_cast<float>(k % 2);
            const cVector3 at = onGround(px, z + 0.15f * static_cast<float>(k), -0.02f);
            s.add(kTints,
                  tinted(lathe({{0.35f * size, 0}, {0.3f * size, 1.3f * size}}, 6), Tint::kCream).moved(at),
                  Scenery::kSeen);
            s.add(kTints,
                  tinted(lathe({{0, 1.2f * size},
                                {1.1f * size, 1.2f * size},
                                {0.8f * size, 1.9f * size},
                                {0, 2.1f * size}},
                               8),
                         i % 2 == 0 ? Tint::kRed : Tint::kClay)
                      .moved(at),
                  Scenery::kSeen);
        }
    }
}

void addRocks(Scenery& s) {
    struct Place {
        float x, z, size;
    };
    constexpr Place kRocks[] = {{-9, 23, 1.1f},    {9, 25, 1.3f},      {11, 18, 0.9f},  {-13, 16, 1.0f},
                                {-6.5f, -2, 0.8f}, {8, -5, 1.0f},      {12, -18, 1.2f}, {-9, -21, 1.3f},
                                {3.6f, -30, 0.8f}, {-3.8f, -33, 0.9f}, {20, 14, 1.2f},  {-20, -6, 1.4f},
                                {5.5f, 33, 1.1f},  {-7, 34, 1.4f},     {14, 30, 1.5f}};
    uint32_t seed = 530;
    for (const Place& r : kRocks)
        s.add(kRock, boulder(r.size, ++seed).moved(onGround(r.x, r.z, r.size * 0.15f)));
    // Stones in the river.
    for (float x : {-22.0f, -14.5f, -7.0f, 6.5f, 13.0f, 20.5f})
        s.add(kRock, boulder(0.9f, ++seed).moved({x, -0.5f, riverAt(x) + 0.6f * std::sin(x)}));
    // The crag that one sees from everywhere, over the gorge.
    s.add(kRock, lathe({{5.5f, 9}, {4.2f, 13}, {3.0f, 15.5f}, {1.6f, 18}, {0, kHighest}}, 7, 6, 5)
                     .moved({10, 0, -33}));
    s.add(kRock, lathe({{4.6f, 8}, {3.4f, 12}, {2.0f, 15}, {0, 16.8f}}, 7, 6, 5).moved({-9.5f, 0, -34}));
}

/// Whoever jumps finds a foothold on any slope. So at the foot of the valley's walls, and across the head of the
/// gorge and the river's two ends, bodies meet upright faces. On the slope itself some who pressed on against
/// such a face came through; there is another for those.
void addBorder(Scenery& s) {
    constexpr float kRises[] = {0.1f, 1.5f}, kLow = -4, kHigh = 10, kStep = 2, kHead = -38;
    Mesh m;
    for (const float rise : kRises)
        for (const float side : {-1.0f, 1.0f})
            for (float z = -kHalfSize; z < kHalfSize; z += kStep) {
                const float x0 = wallAt(z, side, rise), x1 = wallAt(z + kStep, side, rise);
                const cVector3 a(x0, kLow, z), b(x1, kLow, z + kStep), up(0, kHigh - kLow, 0);
                if (side < 0) {
                    m.addQuad(b, a, a + up, b + up);
                } else {
                    m.addQuad(a, b, b + up, a + up);
                }
            }
    const float west = wallAt(kHead, -1, kRises[1]), east = wallAt(kHead, 1, kRises[1]);
    m.addQuad({west - 1, kLow, kHead}, {east + 1, kLow, kHead}, {east + 1, kHigh, kHead},
              {west - 1, kHigh, kHead});
    s.add(kRock, m, Scenery::kSolid);
}

void addLanding(Scenery& s) {
    s.add(kPlanks, box({-1.1f, 0.9f, 26.5f}, {1.1f, 1.1f, 34}, 0.5f));
    for (float z : {27.4f, 30.4f, 33.4f})
        for (float x : {-1.25f, 1.05f}) s.add(kBeams, box({x, -4, z}, {x + 0.2f, 1.65f, z + 0.2f}, 0.6f));
    // A plank up from the beach.
    s.add(kPlanks, box({-1.1f, 0.6f, 25.6f}, {1.1f, 1.0f, 26.5f}, 0.5f));
}

void addBridge(Scenery& s) {
    constexpr float kFrom = -8.2f, kTo = -17.8f, kDeck = 2.1f;
    s.add(kPlanks, box({-1.5f, kDeck - 0.2f, kTo}, {1.5f, kDeck, kFrom}, 0.6f));
    for (float z = kTo; z <= kFrom + 0.1f; z += 1.2f)
        s.add(kBeams, timber({-1.7f, kDeck - 0.24f, z}, {1.7f, kDeck - 0.24f, z}, 0.16f), Scenery::kSeen);
    for (float x : {-1.55f, 1.55f}) {
        s.add(kBeams, timber({x, kDeck - 0.35f, kTo - 0.4f}, {x, kDeck - 0.35f, kFrom + 0.4f}, 0.3f),
              Scenery::kSeen);
        for (float z : {-10.4f, -13.0f, -15.6f})
            s.add(kBeams, box({x - 0.14f, -3.2f, z - 0.14f}, {x + 0.14f, kDeck, z + 0.14f}, 0.6f));
        addFence(
            s, [](float, float) { return kDeck; }, x, kTo, x, kFrom);
    }
    // Posts of the toll gate at the far end, with a board across, over the camera's head.
    for (float x : {-1.75f, 1.55f})
        s.add(kBeams, box({x, 1.2f, kTo - 0.5f}, {x + 0.2f, 6.2f, kTo - 0.3f}, 0.7f));
    s.add(kBeams, box({-2, 6.0f, kTo - 0.55f}, {2, 6.25f, kTo - 0.25f}, 0.7f), Scenery::kSeen);
    s.add(kPlanks, box({-0.9f, 5.45f, kTo - 0.44f}, {0.9f, 5.95f, kTo - 0.36f}, 0.6f), Scenery::kSeen);
    // Fences from the gate to the water, so that nobody goes round.
    for (float side : {-1.0f, 1.0f}) addFence(s, height, side * 1.8f, kTo - 0.4f, side * 4.6f, kTo - 0.1f);
}

void addTent(Scenery& s, float x, float z, float turn) {
    constexpr float kHalf = 1.3f, kLong = 1.6f, kTop = 1.9f;
    Mesh cloth;
    cloth.addQuad({-kHalf, 0, kLong}, {0, kTop, kLong}, {0, kTop, -kLong}, {-kHalf, 0, -kLong}, 2, 2);
    cloth.addQuad({0, kTop, kLong}, {kHalf, 0, kLong}, {kHalf, 0, -kLong}, {0, kTop, -kLong}, 2, 2);
    cloth.append(cloth.insideOut());
    const uint32_t a = cloth.addVertex({-kHalf, 0, -kLong + 0.05f}, 0, 0);
    cloth.addVertex({0, kTop, -kLong + 0.05f}, 0.5f, 1);
    cloth.addVertex({kHalf, 0, -kLong + 0.05f}, 1, 0);
    cloth.addTriangle(a, a + 1, a + 2);
    cloth.addTriangle(a, a + 2, a + 1);
    const cVector3 at = onGround(x, z);
    s.add(kCloth, cloth.turned(turn).moved(at), Scenery::kSeen);
    Mesh poles = timber({0, -0.2f, kLong}, {0, kTop + 0.15f, kLong}, 0.09f);
    poles.append(timber({0, -0.2f, -kLong}, {0, kTop + 0.15f, -kLong}, 0.09f));
    s.add(kBeams, poles.turned(turn).moved(at), Scenery::kSeen);
    s.add(kCloth, box({-1.0f, -0.3f, -kLong}, {1.0f, 1.6f, kLong}).turned(turn).moved(at), Scenery::kSolid);
}

/// Stones in a ring, logs, flames that give light.
void addFire(Scenery& s, float x, float z) {
    const cVector3 at = onGround(x, z);
    for (int i = 0; i < 9; ++i) {
        const float a = 0.698f * static_cast<float>(i);
        s.add(kRock,
              boulder(0.17f, 560 + static_cast<uint32_t>(i))
                  .moved(at + cVector3(0.62f * std::sin(a), 0.04f, 0.62f * std::cos(a))),
              Scenery::kSeen);
    }
    for (int i = 0; i < 4; ++i)
        s.add(
            kBeams,
            timber({-0.45f, 0.06f, 0}, {0.45f, 0.2f, 0}, 0.12f).turned(45 * static_cast<float>(i)).moved(at),
            Scenery::kSeen);
    for (int i = 0; i < 6; ++i) {
        const float a = 1.05f * static_cast<float>(i), tall = 0.45f + 0.3f * latticeValue(i, 1, 561);
        s.add(kGlowing,
              tinted(lathe({{0.14f, 0}, {0.11f, tall * 0.5f}, {0, tall}}, 5),
                     i % 2 == 0 ? Tint::kFlame : Tint::kYellow)
                  .moved(at + cVector3(0.15f * std::sin(a), 0.08f, 0.15f * std::cos(a))),
              Scenery::kSeen);
    }
    s.add(kRock, lathe({{0.75f, -0.2f}, {0.6f, 0.35f}, {0, 0.5f}}, 8).moved(at), Scenery::kSolid);
}

void addCamp(Scenery& s) {
    addTent(s, 21.2f, 5.2f, 60);
    addTent(s, 22.2f, -0.6f, 100);
    addFire(s, 18, 2.2f);
    for (const auto& [x0, z0, x1, z1] : {std::tuple{16.4f, 0.3f, 18.2f, -0.2f}, {16.8f, 4.4f, 18.6f, 4.8f}}) {
        const cVector3 from = onGround(x0, z0, 0.2f), to = onGround(x1, z1, 0.2f);
        s.add(kBeams, tube({from, to}, {0.24f, 0.22f}, 8), Scenery::kSeen);
        s.add(kBeams, timber(from, to, 0.46f), Scenery::kSolid); // flat on top: one stands still on it
    }
    // A half circle of sharpened stakes towards the path.
    for (int i = 0; i < 7; ++i) {
        const float z = -3.4f + 0.7f * static_cast<float>(i);
        if (z > -1.2f) break;
        s.add(kBeams, tube({onGround(13.6f, z, -0.2f), onGround(13.1f, z, 1.3f)}, {0.1f, 0.03f}, 5),
              Scenery::kSeen);
    }
    // Bodies meet one block: between points they would hang.
    s.add(kBeams, box({13, kFloor - 0.4f, -3.5f}, {13.7f, kFloor + 1.2f, -1.2f}), Scenery::kSolid);
}

/// One room under a steep roof of straw, its door to the east.
void addHerbHut(Scenery& s) {
    constexpr float kX0 = -20.6f, kX1 = -16.4f, kZ0 = 3.6f, kZ1 = 7.8f, kFoot = 1.4f, kEaves = 4.4f,
                    kRidge = 6.9f;
    constexpr float kOver = 0.55f, kMiddle = (kZ0 + kZ1) / 2;
    const auto wall = [&](float x0, float y0, float z0, float x1, float y1, float z1) {
        s.add(kPlaster, box({x0, y0, z0}, {x1, y1, z1}, 0.4f));
    };
    wall(kX0, kFoot, kZ0, kX1, kEaves, kZ1);
    for (float x : {kX0, kX1}) {
        Mesh gable;
        const float out = x == kX1 ? 1.0f : -1.0f;
        const uint32_t a = gable.addVertex({x, kEaves, kMiddle + out * (kZ1 - kMiddle)}, 0, 0);
        gable.addVertex({x, kEaves, kMiddle - out * (kZ1 - kMiddle)}, 3, 0);
        gable.addVertex({x, kRidge, kMiddle}, 1.5f, 1);
        gable.addTriangle(a, a + 1, a + 2);
        s.add(kPlaster, gable, Scenery::kSeen);
    }
    const float low = kEaves - kOver * (kRidge - kEaves) / (kZ1 - kMiddle);
    for (float side : {-1.0f, 1.0f}) {
        const float z = kMiddle + side * (kZ1 - kMiddle + kOver);
        const cVector3 e0(side > 0 ? kX0 - kOver : kX1 + kOver, low + 0.2f, z),
            e1(side > 0 ? kX1 + kOver : kX0 - kOver, low + 0.2f, z);
        const cVector3 r1(e1.x, kRidge + 0.2f, kMiddle), r0(e0.x, kRidge + 0.2f, kMiddle), down(0, -0.22f, 0);
        s.add(kThatch, patch(e0, e1, r1, r0, 3, 2, 3, 2), Scenery::kSeen);
        s.add(kBeams, patch(e1 + down, e0 + down, r0 + down, r1 + down, 2, 2, 3, 2), Scenery::kSeen);
        s.add(kThatch, patch(e0 + down, e1 + down, e1, e0, 2, 1, 3, 0.12f), Scenery::kSeen);
        for (float x : {kX0 - kOver, kX1 + kOver})
            s.add(kBeams, timber({x, low + 0.08f, z}, {x, kRidge + 0.1f, kMiddle}, 0.16f), Scenery::kSeen);
    }
    for (float x : {kX0, kX1})
        for (float z : {kZ0, kZ1})
            s.add(kBeams, box({x - 0.14f, kFoot, z - 0.14f}, {x + 0.14f, kEaves, z + 0.14f}, 0.7f),
                  Scenery::kSeen);
    for (float z : {kZ0 - 0.02f, kZ1 + 0.02f})
        s.add(kBeams, timber({kX0, 3.2f, z}, {kX1, 3.2f, z}, 0.14f), Scenery::kSeen);
    // The door and a window beside it.
    s.add(kBeams, box({kX1 - 0.1f, kFoot, 4.2f}, {kX1 + 0.06f, 4.05f, 5.5f}, 0.7f), Scenery::kSeen);
    s.add(kTints, tinted(box({kX1 - 0.1f, kFoot, 4.32f}, {kX1 + 0.1f, 3.92f, 5.38f}, 0.3f), Tint::kClay),
          Scenery::kSeen);
    s.add(kBeams, box({kX1 - 0.1f, 2.9f, 6.15f}, {kX1 + 0.06f, 3.9f, 7.15f}, 0.7f), Scenery::kSeen);
    s.add(kGlowing, tinted(box({kX1 - 0.1f, 3.02f, 6.27f}, {kX1 + 0.09f, 3.78f, 7.03f}, 0.3f), Tint::kFlame),
          Scenery::kSeen);
    s.add(kStone, box({-19.9f, 4, 6.6f}, {-19.1f, 7.6f, 7.4f}, 0.5f), Scenery::kSeen);
    // Herbs hang under the eaves and grow in a bed before the door.
    for (int i = 0; i < 6; ++i)
        s.add(kTints,
              tinted(ball(0.14f, 6, 4).scaled({0.8f, 1.5f, 0.8f}), i % 2 == 0 ? Tint::kLeaf : Tint::kViolet)
                  .moved({kX1 + 0.25f, 3.55f, 3.75f + 0.16f * static_cast<float>(i) * (i > 2 ? 4.3f : 0.9f)}),
              Scenery::kSeen);
    for (int i = 0; i < 12; ++i) {
        const float x = -15.2f + 0.6f * static_cast<float>(i % 4),
                    z = 9.2f + 0.7f * static_cast<float>(i / 4);
        growth::addFlower(s, height, x, z, 0.35f,
                          i % 3 == 0   ? Tint::kYellow
                          : i % 3 == 1 ? Tint::kViolet
                                       : Tint::kWhite,
                          static_cast<uint32_t>(i + 3));
    }
    addFence(s, height, -15.6f, 11.3f, -12.4f, 11.3f);
}
} // namespace
} // namespace deepwood

FORGE_RECIPE(level_deepwood) {
    using namespace deepwood;
    Scenery s;
    constexpr int kCells = 72;
    s.addGround(kGround,
                terrain(-kHalfSize, -kHalfSize, 2 * kHalfSize / kCells, kCells, kCells, height, 0.25f));
    s.setGround(height);
    addTrees(s);
    addUndergrowth(s);
    addRocks(s);
    addBorder(s);
    addLanding(s);
    addBridge(s);
    addCamp(s);
    addHerbHut(s);
    for (const auto& [x, z, size] : {std::tuple{-3.8f, 17.0f, 1.1f},
                                     {5.4f, 14.5f, 1.2f},
                                     {-5, 11, 1.0f},
                                     {6, 6.5f, 1.1f},
                                     {-2.8f, -4.6f, 1.0f},
                                     {3.2f, -23.4f, 1.2f},
                                     {-11, 4, 1.1f},
                                     {11.5f, 5.2f, 1.0f}})
        growth::addBush(s, onGround(x, z), size, static_cast<uint32_t>(x * 7 + z * 3 + 700));
    levels::addStanding(s, out, "deepwood.xml");
    s.write(out, "deepwood", kHalfSize,
            {"deepwood_layer.tga", kHalfSize, layer::kRampV, kTowardsSun, layer::kDarkest});
}

namespace {
const layer::Land kLand{deepwood::height, deepwood::kTowardsSun};

Colour groundColour(float x, float z) {
    const float y = deepwood::height(x, z);
    const cVector3 n = layer::normal(kLand, x, z);
    const float patches = fractalNoise(x * 0.3f, z * 0.3f, 541, 4), fine = fractalNoise(x * 2, z * 2, 542, 2);
    Colour c = mix(rgb(0x557f34), rgb(0x8fae4e), smoothStep(0.3f, 0.7f, patches));
    // Fallen leaves and needles.
    c = mix(c, mix(rgb(0x8a6a3c), rgb(0xa8854a), fine),
            0.75f * smoothStep(0.52f, 0.7f, fractalNoise(x * 0.45f, z * 0.45f, 543, 3)));
    const float sand = 1 - smoothStep(0.7f, 1.5f, y + 0.8f * (patches - 0.5f));
    c = mix(c, mix(rgb(0xdcc891), rgb(0xc6aa70), fine), sand);
    c = mix(c, rgb(0x8d7c5c), 1 - smoothStep(-0.5f, 0.2f, y));
    c = mix(c, mix(rgb(0xb58f5c), rgb(0x97744a), fine), deepwood::path(x, z));
    const float steep = smoothStep(0.84f, 0.68f, n.y);
    const float bands = fractalNoise(x * 0.2f, y * 1.1f + z * 0.2f, 544, 3);
    c = mix(c, mix(rgb(0x7d776c), rgb(0xa89d88), bands), steep);
    float shadow = 0;
    for (const deepwood::Tree& t : deepwood::trees()) {
        if (std::fabs(x - t.x) > 6 || std::fabs(z - t.z) > 6) continue;
        shadow = std::max(shadow, layer::crownShadow(kLand, x, z, t.x, t.z, 1.4f * t.size, 2.4f * t.size));
    }
    shadow = std::max(shadow, layer::boxShadow(kLand, x, z, -20.6f, 3.6f, -16.4f, 7.8f, 4));
    shadow = std::max(shadow, 0.6f * layer::boxShadow(kLand, x, z, -1.5f, -17.8f, 1.5f, -8.2f, 0.1f));
    const float light = 0.64f + 0.44f * std::max(0.0f, n.dot(deepwood::kTowardsSun));
    c = shaded(c, light * (1 - 0.36f * shadow) * 1.06f);
    return mix(rgb(0x4d6a68), c, smoothStep(-4.5f, -0.6f, y));
}
} // namespace

FORGE_RECIPE(picture_deepwood_layer) {
    layer::put(out, "deepwood", deepwood::kHalfSize, groundColour);
}
