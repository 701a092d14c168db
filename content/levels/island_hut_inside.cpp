// The one room of the hut: bed, hearth, table, cupboard, and the small things that say who lives here.

#include "levels/island_parts.h"

#include <cmath>

using namespace forge;

namespace island {
namespace {
constexpr float kFloor = 2.1f, kIn = 4.0f;

void addSeen(Scenery& s, Tint tint, const Mesh& mesh, const cVector3& at) {
    s.add(kTints, tinted(mesh, tint).moved(at), Scenery::kSeen);
}

Mesh jug(float size) {
    return lathe({{0, 0},
                  {0.5f * size, 0},
                  {0.8f * size, 0.6f * size},
                  {0.7f * size, 1.2f * size},
                  {0.35f * size, 1.5f * size},
                  {0.5f * size, 1.8f * size},
                  {0, 1.7f * size}},
                 10);
}

Mesh bottle(float size) {
    return lathe({{0, 0},
                  {0.4f * size, 0},
                  {0.42f * size, 1.1f * size},
                  {0.14f * size, 1.5f * size},
                  {0.14f * size, 2 * size},
                  {0, 2 * size}},
                 8);
}

Mesh candle() {
    return lathe({{0, 0}, {0.10f, 0}, {0.10f, 0.02f}, {0.035f, 0.03f}, {0.035f, 0.2f}, {0, 0.2f}}, 8);
}

Mesh flame(float width, float height) {
    return lathe({{0, 0},
                  {width * 0.8f, height * 0.15f},
                  {width, height * 0.32f},
                  {width * 0.45f, height * 0.7f},
                  {0, height}},
                 7);
}

void addCandle(Scenery& s, const cVector3& at) {
    addSeen(s, Tint::kCream, candle(), at);
    s.add(kGlowing, tinted(flame(0.03f, 0.11f), Tint::kFlame).moved(at + cVector3(0, 0.21f, 0)),
          Scenery::kSeen);
}

/// Books stand side by side along x.
void addBooks(Scenery& s, const cVector3& at, int count) {
    const Tint covers[] = {Tint::kBrick, Tint::kTeal, Tint::kBook, Tint::kViolet, Tint::kCabbage};
    float x = 0;
    for (int i = 0; i < count; ++i) {
        const float width = 0.05f + 0.02f * static_cast<float>(i * 5 % 3),
                    height = 0.26f + 0.03f * static_cast<float>(i * 7 % 4);
        addSeen(s, covers[i % 5], box({x, 0, 0}, {x + width, height, 0.2f}, 0.5f), at);
        x += width + 0.006f;
    }
}

void addBed(Scenery& s) {
    s.add(kPlanks, box({-3.95f, kFloor, 1.7f}, {-2.65f, 2.5f, 3.95f}, 0.7f), Scenery::kSeen);
    s.add(kPlanks, box({-3.95f, kFloor, 3.8f}, {-2.65f, 3.05f, 3.95f}, 0.7f), Scenery::kSeen);
    s.add(kCloth, box({-3.9f, 2.5f, 1.75f}, {-2.7f, 2.68f, 3.75f}, 0.5f), Scenery::kSeen);
    // One block up to the walls: nobody is squeezed behind it or between its parts.
    s.add(kPlanks, box({-kIn, kFloor, 1.66f}, {-2.65f, 2.68f, kIn}), Scenery::kSolid);
    s.add(kPlaster, ball(0.42f, 10, 6).scaled({1, 0.24f, 0.55f}).moved({-3.3f, 2.76f, 3.45f}),
          Scenery::kSeen);
    s.add(kPlaster, box({-3.92f, 2.69f, 2.95f}, {-2.68f, 2.71f, 3.2f}, 0.5f), Scenery::kSeen);
    for (float x : {-3.95f, -2.77f})
        s.add(kBeams, box({x, kFloor, 1.66f}, {x + 0.12f, 2.75f, 1.78f}), Scenery::kSeen);
}

/// As far from the hearth as the room allows: a gap of his width would hold the hero.
void addTableAndShelves(Scenery& s) {
    s.add(kPlanks, box({1.7f, 2.9f, 2.3f}, {3.3f, 2.99f, 3.4f}, 0.7f), Scenery::kSeen);
    for (float x : {1.8f, 3.08f})
        for (float z : {2.4f, 3.18f})
            s.add(kBeams, box({x, kFloor, z}, {x + 0.12f, 2.9f, z + 0.12f}), Scenery::kSeen);
    s.add(kPlanks, box({1.8f, 2.45f, 3.55f}, {3.3f, 2.55f, 3.95f}, 0.7f), Scenery::kSeen);
    s.add(kBeams, box({1.9f, kFloor, 3.6f}, {3.2f, 2.45f, 3.9f}), Scenery::kSeen);
    // One block with the bench, into the corner: nobody gets between them and the walls.
    s.add(kPlanks, box({1.7f, kFloor, 2.3f}, {kIn, 2.99f, kIn}), Scenery::kSolid);
    // Bread, a plate and a candle.
    addSeen(s, Tint::kStraw, ball(0.17f, 9, 6).scaled({1.3f, 0.75f, 0.8f}), {2.25f, 3.09f, 2.65f});
    addSeen(s, Tint::kCream, lathe({{0, 0}, {0.12f, 0}, {0.19f, 0.03f}, {0.12f, 0.02f}, {0, 0.02f}}, 12),
            {2.5f, 2.99f, 3.05f});
    addCandle(s, {2.05f, 2.99f, 3.05f});
    for (float y : {3.6f, 4.15f}) {
        s.add(kPlanks, box({1.6f, y, 3.66f}, {3.6f, y + 0.06f, 4}, 0.7f), Scenery::kSeen);
        for (float x : {1.75f, 3.4f})
            s.add(kBeams, timber({x, y - 0.2f, 3.97f}, {x, y, 3.72f}, 0.05f), Scenery::kSeen);
    }
    addSeen(s, Tint::kClay, jug(0.15f), {1.85f, 3.66f, 3.83f});
    addSeen(s, Tint::kTeal, bottle(0.15f), {2.2f, 3.66f, 3.85f});
    addSeen(s, Tint::kCabbage, bottle(0.17f), {2.42f, 3.66f, 3.82f});
    addBooks(s, {2.7f, 3.66f, 3.76f}, 9);
    addSeen(s, Tint::kCream, jug(0.13f), {3.3f, 4.21f, 3.83f});
    addSeen(s, Tint::kClay, jug(0.11f), {3.02f, 4.21f, 3.84f});
    addSeen(s, Tint::kBrick, jug(0.14f), {2.6f, 4.21f, 3.82f});
    addBooks(s, {1.8f, 4.21f, 3.76f}, 5);
}

void addHearth(Scenery& s) {
    s.add(kStone, box({3.2f, kFloor, -1.6f}, {kIn, 3.3f, -0.9f}, 0.6f));
    s.add(kStone, box({3.2f, kFloor, 0.3f}, {kIn, 3.3f, 1.0f}, 0.6f));
    s.add(kStone, box({3.1f, 3.3f, -1.7f}, {kIn, 3.7f, 1.1f}, 0.6f));
    s.add(kStone, box({3.5f, 3.7f, -1.1f}, {kIn, 6.6f, 0.5f}, 0.6f));
    s.add(kStone, box({2.75f, kFloor, -1.3f}, {3.2f, kFloor + 0.07f, 0.7f}, 0.6f, kTop | kWalls),
          Scenery::kSeen);
    s.add(kPlanks, box({3.0f, 3.7f, -1.8f}, {kIn, 3.78f, 1.2f}, 0.7f), Scenery::kSeen);
    addSeen(s, Tint::kIron, box({3.95f, kFloor, -0.9f}, {3.99f, 3.3f, 0.3f}), {});
    for (const auto& [z, lean] : {std::pair{-0.5f, 0.3f}, {-0.3f, -0.1f}, {-0.1f, -0.35f}})
        s.add(kBeams,
              tube({{3.35f, kFloor + 0.09f, z - lean}, {3.9f, kFloor + 0.2f, z + lean}}, {0.09f, 0.08f}, 7),
              Scenery::kSeen);
    for (const auto& [x, z, size] :
         {std::tuple{3.6f, -0.3f, 1.0f}, {3.7f, -0.5f, 0.7f}, {3.55f, -0.08f, 0.65f}})
        s.add(kGlowing, tinted(flame(0.16f * size, 0.75f * size), Tint::kFlame).moved({x, kFloor + 0.16f, z}),
              Scenery::kSeen);
    // A kettle on its chain.
    addSeen(s, Tint::kIron, ball(0.17f, 9, 6).scaled({1, 0.85f, 1}), {3.4f, 3.02f, -0.3f});
    addSeen(s, Tint::kIron, tube({{0, 0, 0}, {0, 0.3f, 0}}, {0.015f, 0.015f}, 5), {3.4f, 3.12f, -0.3f});
    addCandle(s, {3.3f, 3.78f, -1.5f});
    addCandle(s, {3.3f, 3.78f, 0.9f});
    addSeen(s, Tint::kClay, jug(0.16f), {3.3f, 3.78f, -0.9f});
    addSeen(s, Tint::kTeal, jug(0.12f), {3.28f, 3.78f, 0.45f});
}

void addCupboard(Scenery& s) {
    const cVector3 low(1.5f, kFloor, -3.98f), high(2.9f, 4.1f, -3.4f);
    s.add(kPlanks, box(low, high, 0.8f));
    s.add(kBeams, box({1.44f, 4.1f, -3.99f}, {2.96f, 4.22f, -3.32f}, 0.7f), Scenery::kSeen);
    for (float x : {1.5f, 2.17f, 2.84f})
        s.add(kBeams, box({x, kFloor, -3.4f}, {x + 0.07f, 4.1f, -3.37f}, 0.7f), Scenery::kSeen);
    for (float x : {2.05f, 2.36f}) addSeen(s, Tint::kIron, ball(0.04f, 6, 4), {x, 3.15f, -3.36f});
    addSeen(s, Tint::kStraw, lathe({{0, 0}, {0.22f, 0}, {0.27f, 0.24f}, {0.23f, 0.24f}, {0, 0.1f}}, 12),
            {1.85f, 4.22f, -3.65f});
    addSeen(s, Tint::kClay, jug(0.17f), {2.5f, 4.22f, -3.65f});
    // Sacks of flour beside the door.
    const Mesh sack = lathe(
        {{0, 0}, {0.24f, 0}, {0.31f, 0.25f}, {0.24f, 0.52f}, {0.08f, 0.6f}, {0.13f, 0.7f}, {0, 0.68f}}, 10);
    addSeen(s, Tint::kStraw, sack, {-1.65f, kFloor, -3.62f});
    addSeen(s, Tint::kCream, sack.scaled({0.9f, 0.85f, 0.9f}), {-2.25f, kFloor, -3.66f});
    s.add(kPlanks, box({-2.5f, kFloor, -kIn}, {-1.38f, 2.7f, -3.38f}), Scenery::kSolid);
}

/// Wavy cloth that hangs beside a window, along x.
Mesh curtain(float width, float height) {
    Mesh m;
    constexpr int kFolds = 8;
    for (int j = 0; j <= 1; ++j)
        for (int i = 0; i <= kFolds; ++i) {
            const float t = static_cast<float>(i) / kFolds;
            const float narrow = j == 0 ? 0.75f : 1.0f;
            m.addVertex({t * width * narrow, height * static_cast<float>(j), 0.05f * std::sin(t * 16)}, t,
                        static_cast<float>(j));
        }
    for (uint32_t i = 0; i < kFolds; ++i) {
        m.addTriangle(i, i + 1, i + kFolds + 2);
        m.addTriangle(i, i + kFolds + 2, i + kFolds + 1);
    }
    Mesh both = m;
    both.append(m.insideOut());
    return both;
}

void addHangings(Scenery& s) {
    const Mesh cloth = tinted(curtain(0.55f, 1.5f), Tint::kBrick);
    for (float side : {-1.0f, 1.0f}) {
        // The far edge of each half hangs at the frame, whichever way it is turned.
        s.add(kTints, (side > 0 ? cloth.turned(180) : cloth).moved({side * 1.5f, 2.95f, kIn - 0.12f}),
              Scenery::kSeen);
        s.add(kTints, cloth.turned(side > 0 ? 90.0f : -90.0f).moved({-kIn + 0.12f, 2.95f, side * 1.5f}),
              Scenery::kSeen);
    }
    s.add(kBeams, timber({-1.7f, 4.48f, kIn - 0.12f}, {1.7f, 4.48f, kIn - 0.12f}, 0.05f), Scenery::kSeen);
    s.add(kBeams, timber({-kIn + 0.12f, 4.48f, -1.7f}, {-kIn + 0.12f, 4.48f, 1.7f}, 0.05f), Scenery::kSeen);
    // Herbs dry under the beams, a lamp hangs in the middle.
    const Mesh bunch = lathe({{0, 0}, {0.13f, 0.08f}, {0.10f, 0.25f}, {0.02f, 0.42f}, {0.015f, 0.6f}}, 7);
    for (const auto& [x, z, tint] : {std::tuple{-2.6f, -2.9f, Tint::kCabbage},
                                     {-2.6f, -2.3f, Tint::kViolet},
                                     {-2.6f, -1.8f, Tint::kLeaf},
                                     {2.6f, -2.6f, Tint::kLeaf},
                                     {2.6f, -2.1f, Tint::kRed},
                                     {2.6f, 1.9f, Tint::kStraw}})
        addSeen(s, tint, bunch, {x, 4.42f, z});
    addSeen(s, Tint::kIron, tube({{0, 0, 0}, {0, 0.75f, 0}}, {0.012f, 0.012f}, 5), {2.55f, 4.3f, 2.4f});
    addSeen(s, Tint::kIron, lathe({{0.02f, 0.3f}, {0.15f, 0.22f}, {0.15f, 0.2f}, {0, 0.22f}}, 8),
            {2.55f, 4.05f, 2.4f});
    s.add(kGlowing, tinted(ball(0.11f, 9, 6), Tint::kFlame).moved({2.55f, 4.18f, 2.4f}), Scenery::kSeen);
}
} // namespace

void addHutInside(Scenery& s) {
    addBed(s);
    addTableAndShelves(s);
    addHearth(s);
    addCupboard(s);
    addHangings(s);
    // Rug.
    s.add(kCloth, box({-1.3f, kFloor, -1.8f}, {1.3f, kFloor + 0.02f, 1.2f}, 0.38f, kTop | kWalls),
          Scenery::kSeen);
}
} // namespace island
