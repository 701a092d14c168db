// The hut from outside: walls, timber, roof, chimney and what stands against them.

#include "levels/island_parts.h"

#include <cmath>
#include <tuple>

using namespace forge;

namespace island {
namespace {
// Inside ±4, walls 0.3 thick, floor 0.1 above the meadow.
constexpr float kFloor = 2.1f, kEaves = 5.0f, kRidge = 7.4f, kIn = 4.0f, kOut = 4.3f;
constexpr float kRoofThickness = 0.28f, kRoofEaves = 5.2f, kRoofSide = 5.0f; // eaves in z, verges in x

void addWalls(Scenery& s) {
    const auto wall = [&](float x0, float y0, float z0, float x1, float y1, float z1) {
        s.add(kPlaster, box({x0, y0, z0}, {x1, y1, z1}, 0.4f));
    };
    // North, with the door: 2 wide, 2.6 high.
    wall(-kOut, 1.5f, -kOut, -1, kEaves, -kIn);
    wall(1, 1.5f, -kOut, kOut, kEaves, -kIn);
    wall(-1, kFloor + 2.6f, -kOut, 1, kEaves, -kIn);
    // South, with a window.
    wall(-kOut, 1.5f, kIn, -1.2f, kEaves, kOut);
    wall(1.2f, 1.5f, kIn, kOut, kEaves, kOut);
    wall(-1.2f, 1.5f, kIn, 1.2f, 3.1f, kOut);
    wall(-1.2f, 4.2f, kIn, 1.2f, kEaves, kOut);
    // West, with a window; east, closed.
    wall(-kOut, 1.5f, -kIn, -kIn, kEaves, -1.2f);
    wall(-kOut, 1.5f, 1.2f, -kIn, kEaves, kIn);
    wall(-kOut, 1.5f, -1.2f, -kIn, 3.1f, 1.2f);
    wall(-kOut, 4.2f, -1.2f, -kIn, kEaves, 1.2f);
    wall(kIn, 1.5f, -kIn, kOut, kEaves, kIn);
}

void addGable(Scenery& s, float x0, float x1) {
    Mesh m;
    const auto side = [&](float x, bool east) {
        const float z = east ? kOut : -kOut;
        const uint32_t a = m.addVertex({x, kEaves, z}, 0, 0);
        m.addVertex({x, kEaves, -z}, 3.4f, 0);
        m.addVertex({x, kRidge - 0.05f, 0}, 1.7f, 1);
        m.addTriangle(a, a + 1, a + 2);
    };
    side(x1, true);
    side(x0, false);
    s.add(kPlaster, m);
}

void addRoof(Scenery& s) {
    constexpr float kDrop = (kRidge - kEaves) / kOut * (kRoofEaves - kOut), kLow = kEaves - kDrop;
    const auto slope = [&](float sign) {
        const float z = sign * kRoofEaves;
        const cVector3 e0(-kRoofSide * sign, kLow + kRoofThickness, z),
            e1(kRoofSide * sign, kLow + kRoofThickness, z);
        const cVector3 r1(kRoofSide * sign, kRidge + kRoofThickness, 0),
            r0(-kRoofSide * sign, kRidge + kRoofThickness, 0);
        const cVector3 down(0, -kRoofThickness, 0);
        s.add(kThatch, patch(e0, e1, r1, r0, 5, 3, 4, 2.4f));
        s.add(kBeams, patch(e1 + down, e0 + down, r0 + down, r1 + down, 3, 2, 4, 2.4f));
        s.add(kThatch, patch(e0 + down, e1 + down, e1, e0, 2, 1, 4, 0.12f));
        s.add(kThatch, patch(e1 + down, r1 + down, r1, e1, 1, 1, 2.4f, 0.12f));
        s.add(kThatch, patch(r0 + down, e0 + down, e0, r0, 1, 1, 2.4f, 0.12f));
        // A second, thicker course near the ridge and boards along the verges.
        const cVector3 up(0, 0.09f, 0);
        const auto at = [&](const cVector3& low, const cVector3& high, float t) {
            return low + (high - low) * t;
        };
        s.add(kThatch, patch(at(e0, r0, 0.72f) + up, at(e1, r1, 0.72f) + up, r1 + up, r0 + up, 5, 1, 4, 0.7f),
              Scenery::kSeen);
        s.add(kThatch,
              patch(at(e0, r0, 0.72f), at(e1, r1, 0.72f), at(e1, r1, 0.72f) + up, at(e0, r0, 0.72f) + up, 5,
                    1, 4, 0.05f),
              Scenery::kSeen);
        for (float x : {-kRoofSide - 0.03f, kRoofSide + 0.03f})
            s.add(kBeams, timber({x, kLow + 0.06f, z}, {x, kRidge + 0.06f, 0}, 0.16f), Scenery::kSeen);
    };
    slope(1);
    slope(-1);
    Mesh ridge = tube({{-kRoofSide - 0.08f, kRidge + 0.3f, 0}, {kRoofSide + 0.08f, kRidge + 0.3f, 0}},
                      {0.2f, 0.2f}, 8);
    for (TexCoord& t : ridge.texCoords) t = {t.v * 4, t.u * 0.5f};
    s.add(kThatch, ridge, Scenery::kSeen);
}

/// Corner posts, frames of door and windows, and the beams that carry the roof.
void addFrame(Scenery& s) {
    const auto beam = [&](const cVector3& low, const cVector3& high, Scenery::Use use = Scenery::kSeen) {
        s.add(kBeams, box(low, high, 0.7f), use);
    };
    for (float x : {-4.42f, 4.12f})
        for (float z : {-4.42f, 4.12f}) beam({x, 1.5f, z}, {x + 0.3f, kEaves, z + 0.3f});
    beam({-1.2f, 1.9f, -4.4f}, {-0.98f, 4.9f, -3.92f}, Scenery::kBoth);
    beam({0.98f, 1.9f, -4.4f}, {1.2f, 4.9f, -3.92f}, Scenery::kBoth);
    beam({-0.98f, 4.68f, -4.4f}, {0.98f, 4.9f, -3.92f}, Scenery::kBoth);
    for (float y : {3.0f, 4.2f}) {
        beam({-1.35f, y, 3.94f}, {1.35f, y + 0.12f, 4.38f});
        beam({-4.38f, y, -1.35f}, {-3.94f, y + 0.12f, 1.35f});
    }
    for (float edge : {-1.3f, 1.2f}) {
        beam({edge, 3.12f, 3.96f}, {edge + 0.1f, 4.2f, 4.36f});
        beam({-4.36f, 3.12f, edge}, {-3.96f, 4.2f, edge + 0.1f});
    }
    beam({-0.05f, 3.1f, 4.1f}, {0.05f, 4.2f, 4.2f}, Scenery::kBoth);
    beam({-4.2f, 3.1f, -0.05f}, {-4.1f, 4.2f, 0.05f}, Scenery::kBoth);
    beam({-1.2f, 3.62f, 4.12f}, {1.2f, 3.7f, 4.18f});
    beam({-4.18f, 3.62f, -1.2f}, {-4.12f, 3.7f, 1.2f});
    // Under the roof.
    beam({-4, 5.0f, -0.12f}, {4, 5.25f, 0.12f});
    for (float x : {-2.6f, 2.6f}) beam({x - 0.12f, 5.0f, -4.2f}, {x + 0.12f, 5.25f, 4.2f});
    beam({-4.9f, kRidge - 0.3f, -0.14f}, {4.9f, kRidge - 0.06f, 0.14f});
}

/// Timber in the plaster: rails above the plinth and under the eaves, braces, the gables' studs.
void addTimberFrame(Scenery& s) {
    const auto piece = [&](const cVector3& a, const cVector3& b, float width = 0.17f) {
        s.add(kBeams, timber(a, b, width), Scenery::kSeen);
    };
    constexpr float kFace = kOut + 0.01f, kLow = 2.58f, kHigh = 4.9f;
    for (float z : {-kFace, kFace}) {
        piece({-4.2f, kHigh, z}, {4.2f, kHigh, z});
        for (float side : {-1.0f, 1.0f}) {
            piece({side * 4.2f, kLow, z}, {side * (z < 0 ? 1.2f : 0.0f), kLow, z});
            piece({side * 4.15f, kLow, z}, {side * 3.0f, kHigh, z}, 0.14f);
            piece({side * 2.55f, kLow, z}, {side * 2.55f, kHigh, z}, 0.14f);
        }
    }
    for (float x : {-kFace, kFace}) {
        piece({x, kLow, -4.2f}, {x, kLow, 4.2f});
        piece({x, kEaves, -4.2f}, {x, kEaves, 4.2f});
        for (float side : {-1.0f, 1.0f}) {
            piece({x, kLow, side * 4.15f}, {x, kEaves, side * 2.9f}, 0.14f);
            piece({x, kLow, side * 2.5f}, {x, kEaves, side * 2.5f}, 0.14f);
            piece({x, kEaves, side * 2.3f}, {x, 6.05f, side * 2.3f}, 0.14f);
        }
        if (x < 0) piece({x, kEaves, 0}, {x, kRidge - 0.1f, 0}, 0.16f);
    }
    // Plinth of field stones; the doorway stays free.
    constexpr float kPlinth = 2.5f, kOver = kOut + 0.09f;
    const auto plinth = [&](float x0, float z0, float x1, float z1) {
        s.add(kStone, box({x0, 1.5f, z0}, {x1, kPlinth, z1}, 0.55f, kTop | kWalls), Scenery::kSeen);
    };
    plinth(-kOver, -kOver, -1.2f, -kOut);
    plinth(1.2f, -kOver, kOver, -kOut);
    plinth(-kOver, kOut, kOver, kOver);
    plinth(-kOver, -kOut, -kOut, kOut);
    plinth(kOut, -kOut, kOver, kOut);
}

Mesh blossoms(float length, uint32_t count, uint32_t seed, Tint tint) {
    Mesh m;
    for (uint32_t i = 0; i < count; ++i) {
        const float t = (static_cast<float>(i) + 0.5f) / static_cast<float>(count);
        const float lift = 0.05f * std::sin(static_cast<float>(i * 7 + seed));
        m.append(tinted(ball(0.055f, 6, 4), tint)
                     .moved({(t - 0.5f) * length, 0.13f + lift,
                             0.05f * std::cos(static_cast<float>(i * 5 + seed))}));
    }
    return m;
}

/// A box of flowers, along x, its back against z 0.
Mesh flowerBox(float length) {
    Mesh m = tinted(box({-length / 2, -0.2f, 0}, {length / 2, 0, 0.3f}, 0.3f), Tint::kTeal);
    for (int i = 0; i < 7; ++i) {
        const float x = (static_cast<float>(i) + 0.5f) / 7 * length - length / 2;
        m.append(tinted(ball(0.14f, 7, 4), Tint::kLeaf).scaled({1.1f, 0.9f, 0.8f}).moved({x, 0.03f, 0.16f}));
    }
    const Tint tints[] = {Tint::kRed, Tint::kYellow, Tint::kWhite};
    for (uint32_t k = 0; k < 3; ++k)
        m.append(blossoms(length * 0.92f, 5, 3 * k + 1, tints[k])
                     .moved({0.06f * static_cast<float>(k), 0, 0.18f}));
    return m;
}

void addShutters(Scenery& s) {
    const auto shutter = [](float width, float height) {
        Mesh m = tinted(box({0, 0, 0}, {width, height, 0.06f}, 0.3f), Tint::kTeal);
        for (float y : {0.15f, height - 0.27f})
            m.append(tinted(box({0.05f, y, 0.06f}, {width - 0.05f, y + 0.12f, 0.09f}, 0.3f), Tint::kTeal));
        return m;
    };
    const Mesh leaf = shutter(0.95f, 1.2f);
    for (float x : {-2.33f, 1.38f}) s.add(kTints, leaf.moved({x, 3.05f, kOut + 0.08f}), Scenery::kSeen);
    for (float z : {-2.33f, 1.38f})
        s.add(kTints, leaf.turned(-90).moved({-kOut - 0.08f, 3.05f, z}), Scenery::kSeen);
    s.add(kTints, flowerBox(2.2f).moved({0, 3.0f, kOut + 0.08f}), Scenery::kSeen);
    s.add(kTints, flowerBox(2.2f).turned(-90).moved({-kOut - 0.08f, 3.0f, 0}), Scenery::kSeen);
    // The door stands open against the wall; iron bands hold its boards.
    Mesh door = shutter(1.85f, 2.55f);
    s.add(kTints, door.turned(180).moved({-1.25f, kFloor + 0.02f, -kOut - 0.1f}), Scenery::kSeen);
    // What is nailed to the walls is solid as well, or the camera would look out of it.
    constexpr float kFace = kOut + 0.19f;
    for (const auto& [x0, z0, x1, z1] : {std::tuple{-kFace, -kFace, -0.98f, -kOut},
                                         {0.98f, -kFace, kFace, -kOut},
                                         {-kFace, kOut, kFace, kFace},
                                         {-kFace, -kOut, -kOut, kOut},
                                         {kOut, -kOut, kFace, kOut}})
        s.add(kPlaster, box({x0, 1.5f, z0}, {x1, kEaves, z1}), Scenery::kSolid);
    s.add(kTints, tinted(ball(0.06f, 7, 5), Tint::kIron).moved({-2.9f, kFloor + 1.25f, -kOut - 0.22f}),
          Scenery::kSeen);
}

/// The stone on which Rosa stands, so that her face is seen over the head of whoever comes straight at her
/// with the camera behind him. What holds him at arm's length is higher than the stone: that he would climb.
void addMillstone(Scenery& s) {
    constexpr float kX = 1.2f, kZ = -11.4f, kRadius = 0.66f, kHigh = 0.36f, kBevel = 0.05f, kHolds = 1.2f;
    const cVector3 at(kX, height(kX, kZ), kZ);
    const Mesh stone = lathe(
        {{kRadius, -0.4f}, {kRadius, kHigh - kBevel}, {kRadius - kBevel, kHigh}, {0, kHigh}}, 18, 4, 0.5f);
    s.add(kStone, stone.moved(at), Scenery::kSeen);
    s.add(kStone, lathe({{kRadius, -0.4f}, {kRadius, kHolds}, {0, kHolds}}, 18).moved(at), Scenery::kSolid);
}

/// A bench, a stack of fire wood and the chimney.
void addAround(Scenery& s) {
    constexpr float kBench = 2.5f;
    s.add(kStone, box({kOut, 1.4f, -1.1f}, {5.1f, 8.3f, 0.5f}, 0.6f));
    s.add(kStone, box({kOut - 0.1f, 8.3f, -1.2f}, {5.2f, 8.5f, 0.6f}, 0.6f), Scenery::kSeen);
    s.add(kTints,
          tinted(lathe({{0.26f, 8.5f}, {0.3f, 8.55f}, {0.22f, 8.95f}, {0.16f, 8.95f}, {0, 8.8f}}, 10),
                 Tint::kClay)
              .moved({4.7f, 0, -0.3f}),
          Scenery::kSeen);
    s.add(kPlanks, box({1.6f, kBench - 0.08f, -4.95f}, {3.6f, kBench, -4.5f}, 0.7f), Scenery::kSeen);
    for (float x : {1.7f, 3.35f})
        s.add(kBeams, box({x, 1.8f, -4.9f}, {x + 0.15f, kBench - 0.08f, -4.55f}, 0.7f), Scenery::kSeen);
    // Up to the wall, where one would tremble in a crack, and to the eaves, under which whoever jumped on it
    // hung; without the corners that hold people.
    const std::pair<float, float> kAround[] = {{3.65f, -kOut}, {3.65f, -4.65f}, {3.3f, -4.95f},
                                               {1.9f, -4.95f}, {1.55f, -4.65f}, {1.55f, -kOut}};
    Mesh block;
    for (size_t i = 0; i + 1 < std::size(kAround); ++i) {
        const cVector3 a(kAround[i].first, 1.8f, kAround[i].second),
            b(kAround[i + 1].first, 1.8f, kAround[i + 1].second), up(0, kEaves - 1.8f, 0);
        block.addQuad(a, b, b + up, a + up);
    }
    s.add(kPlanks, block, Scenery::kSolid);
    constexpr float kLog = 0.14f;
    for (int row = 0; row < 3; ++row)
        for (int i = 0; i < 5 - row; ++i) {
            const float x = -4.1f + kLog * (1 + static_cast<float>(row) + 2 * static_cast<float>(i));
            const float y = 2.0f + kLog * (1 + 1.74f * static_cast<float>(row));
            const Mesh log = tube({{x, y, kOut + 0.1f}, {x, y, kOut + 0.75f}}, {kLog, kLog}, 7);
            s.add(kBeams, log, Scenery::kSeen);
            s.add(kTints,
                  tinted(lathe({{kLog * 0.86f, 0}, {0, 0.01f}}, 7), Tint::kStraw)
                      .tilted(90)
                      .moved({x, y, kOut + 0.752f}),
                  Scenery::kSeen);
        }
    s.add(kBeams, box({-4.2f, 1.8f, kOut}, {-2.6f, 2.8f, kOut + 0.8f}), Scenery::kSolid);
}
} // namespace

void addHut(Scenery& s) {
    s.add(kPlanks, box({-kIn, 1.6f, -kIn}, {kIn, kFloor, kIn}, 0.4f, kTop));
    s.add(kPlanks, box({-1, 1.6f, -kOut}, {1, kFloor, -kIn}, 0.4f, kTop | kNorth)); // threshold
    addWalls(s);
    addGable(s, -kOut, -kIn);
    addGable(s, kIn, kOut);
    addRoof(s);
    addFrame(s);
    addTimberFrame(s);
    addShutters(s);
    addAround(s);
    addMillstone(s);
    s.darken({-3.99f, 2.05f, -3.99f}, {3.99f, 7.4f, 3.99f}, 0.86f);
}
} // namespace island
