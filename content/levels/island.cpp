#include "forge/noise.h"
#include "forge/recipes.h"
#include "forge/scenery.h"
#include "levels/island_ground.h"

#include <cmath>

using namespace forge;

namespace {
const Scenery::Material kGround{"ground", "ground.tga", {}};
const Scenery::Material kPlaster{"plaster", "plaster.tga", {}};
const Scenery::Material kPlanks{"planks", "planks.tga", {}};
const Scenery::Material kBeams{"beams", "beams.tga", {}};
const Scenery::Material kStone{"stone", "stone.tga", {}};
const Scenery::Material kThatch{"thatch", "thatch.tga", {}};
const Scenery::Material kCloth{"cloth", "cloth.tga", {}};
const Scenery::Material kRock{"rock", "rock.tga", {}};

// The hut: inside ±4, walls 0.3 thick, floor 0.1 above the meadow.
constexpr float kFloor = 2.1f, kEaves = 5.0f, kRidge = 7.4f, kIn = 4.0f, kOut = 4.3f;

void addHutWalls(Scenery& s) {
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
    constexpr float kOver = 5.2f, kSide = 5.0f; // eaves in z, verges in x
    constexpr float kDrop = (kRidge - kEaves) / kOut * (kOver - kOut);
    constexpr float kThick = 0.28f;
    const auto slope = [&](float sign) {
        const float z = sign * kOver, low = kEaves - kDrop;
        const cVector3 e0(-kSide * sign, low + kThick, z), e1(kSide * sign, low + kThick, z);
        const cVector3 r1(kSide * sign, kRidge + kThick, 0), r0(-kSide * sign, kRidge + kThick, 0);
        const cVector3 down(0, -kThick, 0);
        s.add(kThatch, patch(e0, e1, r1, r0, 5, 3, 4, 2.4f));
        s.add(kBeams, patch(e1 + down, e0 + down, r0 + down, r1 + down, 3, 2, 4, 2.4f));
        s.add(kThatch, patch(e0 + down, e1 + down, e1, e0, 2, 1, 4, 0.12f));
        s.add(kThatch, patch(e1 + down, r1 + down, r1, e1, 1, 1, 2.4f, 0.12f));
        s.add(kThatch, patch(r0 + down, e0 + down, e0, r0, 1, 1, 2.4f, 0.12f));
    };
    slope(1);
    slope(-1);
}

void addBeams(Scenery& s) {
    const auto beam = [&](const cVector3& low, const cVector3& high, Scenery::Use use = Scenery::kSeen) {
        s.add(kBeams, box(low, high, 0.7f), use);
    };
    for (float x : {-4.42f, 4.12f})
        for (float z : {-4.42f, 4.12f}) beam({x, 1.5f, z}, {x + 0.3f, kEaves, z + 0.3f});
    // Door frame and window frames.
    beam({-1.2f, 1.9f, -4.4f}, {-0.98f, 4.9f, -3.92f}, Scenery::kBoth);
    beam({0.98f, 1.9f, -4.4f}, {1.2f, 4.9f, -3.92f}, Scenery::kBoth);
    beam({-0.98f, 4.68f, -4.4f}, {0.98f, 4.9f, -3.92f}, Scenery::kBoth);
    for (float y : {3.0f, 4.2f}) {
        beam({-1.35f, y, 3.94f}, {1.35f, y + 0.12f, 4.38f});
        beam({-4.38f, y, -1.35f}, {-3.94f, y + 0.12f, 1.35f});
    }
    beam({-0.05f, 3.1f, 4.1f}, {0.05f, 4.2f, 4.2f}, Scenery::kBoth);
    beam({-4.2f, 3.1f, -0.05f}, {-4.1f, 4.2f, 0.05f}, Scenery::kBoth);
    // Under the roof.
    beam({-4, 5.0f, -0.12f}, {4, 5.25f, 0.12f});
    for (float x : {-2.6f, 2.6f}) beam({x - 0.12f, 5.0f, -4.2f}, {x + 0.12f, 5.25f, 4.2f});
    beam({-4.9f, kRidge - 0.3f, -0.14f}, {4.9f, kRidge - 0.06f, 0.14f});
}

void addFurniture(Scenery& s) {
    // Bed in the south-west corner.
    s.add(kPlanks, box({-3.95f, kFloor, 1.7f}, {-2.65f, 2.5f, 3.95f}, 0.7f));
    s.add(kPlanks, box({-3.95f, kFloor, 3.8f}, {-2.65f, 3.05f, 3.95f}, 0.7f));
    s.add(kCloth, box({-3.9f, 2.5f, 1.75f}, {-2.7f, 2.68f, 3.75f}, 0.5f));
    s.add(kPlaster, box({-3.7f, 2.68f, 3.2f}, {-2.9f, 2.8f, 3.7f}, 0.5f), Scenery::kSeen);
    // Table in the south-east, a bench before the wall, shelves above it.
    s.add(kPlanks, box({1.7f, 2.9f, 1.9f}, {3.3f, 2.99f, 3.1f}, 0.7f), Scenery::kSeen);
    for (float x : {1.8f, 3.08f})
        for (float z : {2.0f, 2.88f})
            s.add(kBeams, box({x, kFloor, z}, {x + 0.12f, 2.9f, z + 0.12f}), Scenery::kSeen);
    s.add(kPlanks, box({1.7f, kFloor, 1.9f}, {3.3f, 2.99f, 3.1f}), Scenery::kSolid);
    s.add(kPlanks, box({1.8f, 2.45f, 3.55f}, {3.3f, 2.55f, 3.95f}, 0.7f));
    s.add(kBeams, box({1.9f, kFloor, 3.6f}, {3.2f, 2.45f, 3.9f}));
    s.add(kPlanks, box({1.6f, 3.6f, 3.66f}, {3.6f, 3.66f, 4}, 0.7f), Scenery::kSeen);
    // Rug.
    s.add(kCloth, box({-1.3f, kFloor, -1.8f}, {1.3f, kFloor + 0.02f, 1.2f}, 0.38f, kTop | kWalls),
          Scenery::kSeen);
    // Fireplace and chimney on the east wall.
    s.add(kStone, box({3.2f, kFloor, -1.6f}, {kIn, 3.3f, -0.9f}, 0.6f));
    s.add(kStone, box({3.2f, kFloor, 0.3f}, {kIn, 3.3f, 1.0f}, 0.6f));
    s.add(kStone, box({3.1f, 3.3f, -1.7f}, {kIn, 3.7f, 1.1f}, 0.6f));
    s.add(kStone, box({3.5f, 3.7f, -1.1f}, {kIn, 6.6f, 0.5f}, 0.6f));
    s.add(kStone, box({kOut, 1.4f, -1.1f}, {5.1f, 8.3f, 0.5f}, 0.6f));
    s.add(kBeams, box({3.4f, kFloor, -0.7f}, {3.9f, 2.3f, 0.1f}, 0.9f), Scenery::kSeen);
}

void addHut(Scenery& s) {
    s.add(kPlanks, box({-kIn, 1.6f, -kIn}, {kIn, kFloor, kIn}, 0.4f, kTop));
    s.add(kPlanks, box({-1, 1.6f, -kOut}, {1, kFloor, -kIn}, 0.4f, kTop | kNorth)); // threshold
    addHutWalls(s);
    addGable(s, -kOut, -kIn);
    addGable(s, kIn, kOut);
    addRoof(s);
    addBeams(s);
    addFurniture(s);
    s.darken({-3.99f, 2.05f, -3.99f}, {3.99f, 7.4f, 3.99f}, 0.82f);
}

void addTerrace(Scenery& s) {
    constexpr float kTread = 0.3f, kRise = 0.1f;
    // Twenty low steps up from the west, made to be run down.
    for (int i = 0; i < 20; ++i) {
        const float x = 7.5f + kTread * static_cast<float>(i);
        const float y = island::kMeadow + kRise * static_cast<float>(i + 1);
        s.add(kStone, box({x, 1.6f, -1.5f}, {x + kTread, y, 1.5f}, 0.5f, kTop | kWest | kNorth | kSouth));
    }
    // Nothing built reaches down into the mist that begins at 0.2.
    s.add(kStone, box({13.5f, 0.6f, -3}, {18.5f, 4, 3}, 0.4f));
    // Eight high steps on the north side.
    for (int i = 0; i < 8; ++i) {
        const float z = -6.2f + 0.4f * static_cast<float>(i), y = 2.25f + 0.25f * static_cast<float>(i);
        s.add(kStone, box({15, 1.2f, z}, {17.5f, y, z + 0.4f}, 0.5f, kTop | kNorth | kEast | kWest));
    }
    // Parapets leave both stairs free.
    s.add(kStone, box({18.1f, 4, -3}, {18.5f, 4.9f, 3}, 0.5f));
    s.add(kStone, box({13.5f, 4, 2.6f}, {18.1f, 4.9f, 3}, 0.5f));
    s.add(kStone, box({13.5f, 4, -3}, {15, 4.9f, -2.6f}, 0.5f));
    s.add(kStone, box({17.5f, 4, -3}, {18.1f, 4.9f, -2.6f}, 0.5f));
}

void addPlayground(Scenery& s) {
    // A ledge of 1.1 to jump on, and one more of 1.0 on top of it.
    s.add(kStone, box({-14, 1, 6}, {-9, 3.1f, 11}, 0.5f));
    s.add(kStone, box({-14, 3.1f, 8}, {-11.5f, 4.1f, 11}, 0.5f));
    // A ruined wall, 3 and more high.
    s.add(kStone, box({-4, 1, 14}, {-1.2f, 5.4f, 14.7f}, 0.5f));
    s.add(kStone, box({-1.2f, 1, 14}, {2, 5, 14.7f}, 0.5f));
    s.add(kStone, box({2, 1, 14}, {4, 5.8f, 14.7f}, 0.5f));
    // A ramp of 20 degrees up to a platform; its foot lies below the grass.
    constexpr float kFoot = 1.2f, kTop = 4.18f, kDeep = 0.5f;
    const cVector3 a(8, kFoot, 16.2f), b(11, kFoot, 16.2f), c(11, kTop, 8), d(8, kTop, 8);
    const auto below = [&](const cVector3& p) { return cVector3(p.x, kDeep, p.z); };
    s.add(kPlanks, patch(a, b, c, d, 2, 3, 1.2f, 3.2f));
    s.add(kPlanks, patch(below(b), below(c), c, b, 1, 1, 3.2f, 1));
    s.add(kPlanks, patch(below(d), below(a), a, d, 1, 1, 3.2f, 1));
    s.add(kPlanks, box({8, kDeep, 5}, {11, kTop, 8}, 0.4f));
}

void addPier(Scenery& s) {
    s.add(kPlanks, box({-1.2f, 0.55f, 21}, {1.2f, 0.75f, 28.5f}, 0.5f));
    for (float z : {22.5f, 25.0f, 28.0f})
        for (float x : {-1.35f, 1.15f}) s.add(kBeams, box({x, -3.5f, z}, {x + 0.2f, 1.35f, z + 0.2f}, 0.6f));
}

Mesh boulder(float size, uint32_t seed) {
    Mesh m = ball(size, 9, 6);
    for (cVector3& p : m.positions) {
        const float k =
            0.7f + 0.6f * noise(p.x / size * 1.7f + 9, p.z / size * 1.7f + p.y / size * 2.3f + 9, seed);
        p = {p.x * k, p.y * k * 0.8f, p.z * k};
    }
    for (TexCoord& t : m.texCoords) t = {t.u * 2, t.v};
    return m;
}

void addRocks(Scenery& s) {
    struct Place {
        float x, z, size;
    };
    constexpr Place kRocks[] = {{20, 12, 1.3f},        {21.5f, 10.6f, 0.8f}, {-21, 9, 1.4f},
                                {-19.4f, 12.5f, 0.9f}, {12, -20, 1.5f},      {9.8f, -21, 0.9f},
                                {-6, 22, 1.1f},        {22, -9, 1.2f},       {-5.4f, -19, 1.2f},
                                {16, 17, 1.0f},        {-24, 1, 1.5f},       {4.5f, -23.5f, 1.3f}};
    uint32_t seed = 400;
    for (const Place& r : kRocks)
        s.add(kRock, boulder(r.size, ++seed).moved({r.x, island::height(r.x, r.z) + r.size * 0.2f, r.z}));
}

void addBeacon(Scenery& s) {
    s.add(kStone, box({-19, 5, -11}, {-17, 6.4f, -9}, 0.5f));
    s.add(
        kStone,
        lathe(
            {{0.62f, 6.4f}, {0.5f, 7.9f}, {0.75f, 8.0f}, {0.75f, 8.25f}, {0.4f, 8.4f}, {0, island::kHighest}},
            8, 3, 2)
            .moved({-18, 0, -10}));
}
} // namespace

FORGE_RECIPE(level_island) {
    Scenery s;
    constexpr int kCells = 64;
    s.addGround(kGround,
                terrain(-island::kHalfSize, -island::kHalfSize, 1, kCells, kCells, island::height, 0.25f));
    addHut(s);
    addTerrace(s);
    addPlayground(s);
    addPier(s);
    addRocks(s);
    addBeacon(s);
    s.write(out, "island", island::kHalfSize,
            {"island_layer.tga", island::kHalfSize, 0.0234f, island::kTowardsSun, 0.4f});
}
