// Old masonry: the terrace with its stairs, the grassy ledges, the broken wall, the bell's bastion.

#include "forge/noise.h"
#include "levels/island_parts.h"

#include <cmath>

using namespace forge;

namespace island {
namespace {
/// A lawn on top of masonry, a hand lower at its rim than in its middle.
void addLawn(Scenery& s, float x0, float z0, float x1, float z1, float top) {
    constexpr int kCells = 6;
    const float across = (x1 - x0) / kCells, along = (z1 - z0) / kCells;
    Mesh m = terrain(
        0, 0, 1, kCells, kCells,
        [&](float i, float k) {
            const bool rim = i <= 0 || k <= 0 || i >= kCells || k >= kCells;
            return rim ? top + 0.005f
                       : top + 0.04f + 0.03f * latticeValue(static_cast<int>(i), static_cast<int>(k), 91);
        },
        0.25f);
    for (size_t i = 0; i < m.positions.size(); ++i) {
        cVector3& p = m.positions[i];
        p = {x0 + p.x * across, p.y, z0 + p.z * along};
        m.texCoords[i] = {p.x * 0.25f, -p.z * 0.25f};
    }
    s.addGround(kGround, m, Scenery::kSeen);
}

/// A block with a course of wider stones round its top and grass on it.
void addLedge(Scenery& s, const cVector3& low, const cVector3& high) {
    constexpr float kRim = 0.22f, kOver = 0.05f;
    s.add(kStone, box(low, high, 0.5f));
    const cVector3 a(low.x - kOver, high.y - kRim, low.z - kOver),
        b(high.x + kOver, high.y + 0.004f, high.z + kOver);
    s.add(kStone, box(a, b, 0.37f), Scenery::kSeen);
    addLawn(s, low.x + 0.3f, low.z + 0.3f, high.x - 0.3f, high.z - 0.3f, high.y + 0.004f);
}

/// Leaves that climb over an edge and hang down a wall, along x or z.
void addIvy(Scenery& s, const cVector3& from, const cVector3& to, const cVector3& out, uint32_t seed) {
    const int clumps = static_cast<int>((to - from).length() / 0.22f);
    Mesh m;
    for (int i = 0; i < clumps; ++i) {
        const float t = (static_cast<float>(i) + 0.5f) / static_cast<float>(clumps);
        const float drop = std::pow(noise(t * 5 + 3, 7, seed), 2.0f) * 1.9f;
        for (float down = -0.05f; down < drop; down += 0.2f) {
            const float size = 0.17f * (0.7f + 0.6f * latticeValue(i, static_cast<int>(down * 10), seed)) *
                               (1 - 0.35f * down / 1.9f);
            const float aside = 0.12f * (latticeValue(i, static_cast<int>(down * 10) + 50, seed) - 0.5f);
            const cVector3 at =
                lerp(from, to, t) + (to - from).normalized() * aside + out * 0.04f - cVector3(0, down, 0);
            const cVector3 flat(out.x != 0 ? 0.45f : 1.0f, 0.95f, out.z != 0 ? 0.45f : 1.0f);
            m.append(ball(size, 6, 4).scaled(flat).moved(at));
        }
    }
    s.add(kTints, tinted(m, Tint::kLeaf), Scenery::kSeen);
}

void addStump(Scenery& s, float x, float z, float foot, float tall, uint32_t seed) {
    const auto broken = [&](int k) { return tall * (0.88f + 0.12f * latticeValue(k, 1, seed)); };
    s.add(kStone, lathe({{0.46f, foot},
                         {0.46f, foot + 0.14f},
                         {0.34f, foot + 0.22f},
                         {0.31f, foot + broken(0)},
                         {0.16f, foot + broken(1) + 0.08f},
                         {0, foot + broken(2)}},
                        10, 3, 1.6f)
                      .moved({x, 0, z}));
}

void addBrokenWall(Scenery& s) {
    // Every piece stands in line with the others; only their tops differ.
    struct Piece {
        float x0, x1, top;
    };
    constexpr Piece kPieces[] = {{-4, -3.3f, 4.6f},    {-3.3f, -2.4f, 5.4f}, {-2.4f, -1.7f, 5.1f},
                                 {-1.7f, -0.9f, 5.8f}, {-0.9f, -0.2f, 5.6f}, {1.2f, 1.8f, 5.6f},
                                 {1.8f, 2.6f, 5.9f},   {2.6f, 3.3f, 5.2f},   {3.3f, 4, 4.7f}};
    // Up to a man's height the wall is one block: whoever slides along it must not catch at a joint.
    constexpr float kJoint = 4.3f;
    s.add(kStone, box({-4, 1, 14}, {4, kJoint, 14.7f}, 0.5f));
    for (const Piece& p : kPieces) s.add(kStone, box({p.x0, kJoint, 14}, {p.x1, p.top, 14.7f}, 0.5f));
    // A window in the middle, with sill and lintel.
    s.add(kStone, box({-0.2f, 5.2f, 14}, {1.2f, 5.7f, 14.7f}, 0.5f));
    s.add(kStone, box({-0.35f, kJoint - 0.1f, 13.93f}, {1.35f, kJoint + 0.06f, 14.77f}, 0.5f),
          Scenery::kSeen);
    // Stones that fell from it.
    uint32_t seed = 700;
    for (const auto& [x, z, size] : {std::tuple{-3.4f, 13.5f, 0.3f},
                                     {3.6f, 15.3f, 0.34f},
                                     {2.9f, 15.1f, 0.22f},
                                     {-2.2f, 15.2f, 0.26f},
                                     {4.5f, 14.2f, 0.28f}})
        s.add(kRock, boulder(size, ++seed).moved({x, height(x, z) + 0.05f, z}), Scenery::kSeen);
}

/// Iron bars on three sides of the bell's place, the south left to the gate: nobody climbs out.
void addBars(Scenery& s, const cVector3& low, const cVector3& high) {
    constexpr float kTall = 2.45f, kHolds = 2.9f, kBar = 0.03f, kRail = 0.035f, kApart = 0.29f;
    const cVector3 corners[] = {{low.x, low.y, high.z}, low, {high.x, low.y, low.z}, high};
    for (int side = 0; side < 3; ++side) {
        const cVector3 &a = corners[side], &b = corners[side + 1];
        const int bars = static_cast<int>((b - a).length() / kApart);
        Mesh iron;
        for (int i = 0; i < bars; ++i) {
            const cVector3 at = lerp(a, b, (static_cast<float>(i) + 0.5f) / static_cast<float>(bars));
            iron.append(tube({at, at + cVector3(0, kTall, 0)}, {kBar, kBar}, 5));
        }
        for (float y : {0.12f, 1.2f, kTall - 0.1f})
            iron.append(tube({a + cVector3(0, y, 0), b + cVector3(0, y, 0)}, {kRail, kRail}, 4));
        s.add(kTints, tinted(iron, Tint::kIron), Scenery::kSeen);
        const cVector3 in(kRail, 0, kRail);
        const cVector3 from(std::min(a.x, b.x), a.y - 0.3f, std::min(a.z, b.z)),
            to(std::max(a.x, b.x), a.y + kHolds, std::max(a.z, b.z));
        s.add(kBeams, box(from - in, to + in, 0.5f, kWalls), Scenery::kSolid);
    }
}

void addBellBastion(Scenery& s) {
    // A ramp of 20 degrees up to a platform; its foot lies below the grass.
    constexpr float kFoot = 1.2f, kHigh = 4.18f, kDeep = 0.5f;
    const cVector3 a(8, kFoot, 16.2f), b(11, kFoot, 16.2f), c(11, kHigh, 8), d(8, kHigh, 8);
    const auto below = [&](const cVector3& p) { return cVector3(p.x, kDeep, p.z); };
    s.add(kPlanks, patch(a, b, c, d, 2, 3, 1.2f, 3.2f));
    s.add(kStone, patch(below(b), below(c), c, b, 1, 1, 4.2f, 1.8f));
    s.add(kStone, patch(below(d), below(a), a, d, 1, 1, 4.2f, 1.8f));
    s.add(kStone, box({8, kDeep, 5}, {11, kHigh, 8}, 0.5f, kWalls));
    s.add(kPlanks, box({8, kDeep, 5}, {11, kHigh, 8}, 0.4f, kTop));
    for (float x : {7.93f, 11.07f})
        s.add(kBeams, timber({x, kFoot - 0.02f, 16.2f}, {x, kHigh - 0.02f, 8}, 0.2f), Scenery::kSeen);
    s.add(kStone, box({7.92f, kHigh - 0.25f, 4.92f}, {11.08f, kHigh - 0.01f, 8}, 0.37f, kWalls),
          Scenery::kSeen);
    // The frame of the harbour bell.
    for (float x : {8.15f, 10.65f}) {
        s.add(kBeams, box({x, kHigh, 5.15f}, {x + 0.2f, kHigh + 2.6f, 5.35f}, 0.7f));
        s.add(kBeams,
              timber({x + 0.1f, kHigh + 1.9f, 5.25f}, {x < 9 ? x + 0.7f : x - 0.5f, kHigh + 2.5f, 5.25f},
                     0.12f),
              Scenery::kSeen);
    }
    s.add(kBeams, box({7.9f, kHigh + 2.5f, 5.1f}, {11.1f, kHigh + 2.75f, 5.4f}, 0.7f), Scenery::kSeen);
    addBars(s, {8.06f, kHigh, 5.06f}, {10.94f, kHigh, 8});
    // Posts of the gate at the head of the ramp.
    for (float x : {7.98f, 10.82f})
        s.add(kBeams, box({x, kHigh - 0.3f, 8}, {x + 0.2f, kHigh + 3.7f, 8.2f}, 0.7f));
    s.add(kBeams, box({7.85f, kHigh + 3.7f, 7.95f}, {11.15f, kHigh + 3.9f, 8.25f}, 0.7f), Scenery::kSeen);
}
} // namespace

void addTerrace(Scenery& s) {
    constexpr float kTread = 0.3f, kRise = 0.1f;
    // Twenty low steps up from the west, made to be run down.
    for (int i = 0; i < 20; ++i) {
        const float x = 7.5f + kTread * static_cast<float>(i);
        const float y = kMeadow + kRise * static_cast<float>(i + 1);
        s.add(kStone, box({x, 1.6f, -1.5f}, {x + kTread, y, 1.5f}, 0.5f, kTop | kWest | kNorth | kSouth));
    }
    // Nothing built reaches down into the mist under the water.
    s.add(kStone, box({13.5f, 0.6f, -3}, {18.5f, 4, 3}, 0.4f));
    // Eight high steps on the north side.
    for (int i = 0; i < 8; ++i) {
        const float z = -6.2f + 0.4f * static_cast<float>(i), y = 2.25f + 0.25f * static_cast<float>(i);
        s.add(kStone, box({15, 1.2f, z}, {17.5f, y, z + 0.4f}, 0.5f, kTop | kNorth | kEast | kWest));
    }
    // Parapets leave both stairs free; a wider course lies on them.
    const auto parapet = [&](float x0, float z0, float x1, float z1) {
        s.add(kStone, box({x0, 4, z0}, {x1, 4.9f, z1}, 0.5f));
        s.add(kStone, box({x0 - 0.05f, 4.9f, z0 - 0.05f}, {x1 + 0.05f, 5.02f, z1 + 0.05f}, 0.37f),
              Scenery::kSeen);
    };
    parapet(18.1f, -3, 18.5f, 3);
    parapet(13.5f, 2.6f, 18.1f, 3);
    parapet(13.5f, -3, 15, -2.6f);
    parapet(17.5f, -3, 18.1f, -2.6f);
    for (float z : {-1.97f, 1.97f}) addStump(s, 8.8f, z, 1.9f, 1.5f, z > 0 ? 11u : 12u);
}

void addRuins(Scenery& s) {
    // A ledge of 1.1 to jump on, and one more of 1.0 on top of it.
    addLedge(s, {-14, 1, 6}, {-9, 3.1f, 11});
    addLedge(s, {-14, 3.1f, 8}, {-11.5f, 4.1f, 11});
    addStump(s, -13.4f, 10.4f, 4.1f, 1.7f, 21);
    addStump(s, -12.1f, 10.4f, 4.1f, 0.9f, 22);
    addStump(s, -9.6f, 10.4f, 3.1f, 1.3f, 23);
    addBrokenWall(s);
    addBellBastion(s);
    addIvy(s, {-13.6f, 3.1f, 5.95f}, {-11.4f, 3.1f, 5.95f}, {0, 0, -1}, 31);
    addIvy(s, {-8.95f, 3.1f, 8.2f}, {-8.95f, 3.1f, 10.8f}, {1, 0, 0}, 32);
    addIvy(s, {-2.3f, 5.3f, 14.75f}, {-0.3f, 5.7f, 14.75f}, {0, 0, 1}, 33);
    addIvy(s, {1.3f, 5.6f, 13.95f}, {3.2f, 5.4f, 13.95f}, {0, 0, -1}, 34);
    addIvy(s, {13.45f, 4.9f, 1.6f}, {13.45f, 4.9f, 3.0f}, {-1, 0, 0}, 35);
    addIvy(s, {11.1f, 4.1f, 5.1f}, {11.1f, 4.1f, 7.6f}, {1, 0, 0}, 36);
}
} // namespace island
