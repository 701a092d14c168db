// What grows: grass and flowers on the meadow, reeds on the beach, the kitchen garden behind the hut.

#include "forge/noise.h"
#include "levels/island_parts.h"

#include <algorithm>
#include <cmath>

using namespace forge;

namespace island {
namespace {
constexpr float kTurn = 6.28318531f;

/// A blade that bends to one side, seen from both.
void addBlade(Mesh& m, const cVector3& foot, float angle, float tall, float width, float bend) {
    const cVector3 side(std::cos(angle) * width / 2, 0, std::sin(angle) * width / 2);
    const cVector3 lean(std::sin(angle) * bend, 0, -std::cos(angle) * bend);
    const uint32_t a = m.addVertex(foot - side, 0.3f, 0);
    m.addVertex(foot + side, 0.7f, 0);
    m.addVertex(foot + lean + cVector3(0, tall, 0), 0.5f, 1);
    m.addTriangle(a, a + 1, a + 2);
    m.addTriangle(a + 1, a, a + 2);
}

Mesh tuft(float x, float z, uint32_t seed, float tall, int blades) {
    Mesh m;
    for (int i = 0; i < blades; ++i) {
        const float angle = kTurn * latticeValue(i, 1, seed), away = 0.14f * latticeValue(i, 2, seed);
        const float px = x + away * std::sin(angle * 3), pz = z + away * std::cos(angle * 3);
        addBlade(m, {px, height(px, pz) - 0.03f, pz}, angle, tall * (0.6f + 0.6f * latticeValue(i, 3, seed)),
                 0.11f, tall * (0.2f + 0.5f * latticeValue(i, 4, seed)));
    }
    return m;
}

/// Five petals round a heart, on a stalk.
void addFlower(Scenery& s, float x, float z, float tall, Tint tint, uint32_t seed) {
    const cVector3 foot(x, height(x, z) - 0.02f, z);
    Mesh stalk;
    for (float turn : {0.0f, kTurn / 4})
        addBlade(stalk, foot, turn + static_cast<float>(seed), tall, 0.045f, 0.02f);
    s.add(kStalks, tinted(stalk, Tint::kLeaf), Scenery::kSeen);
    const Mesh head = lathe({{0, -0.03f}, {0.10f, 0.0f}, {0.13f, 0.05f}, {0.04f, 0.03f}, {0, 0.05f}}, 6);
    s.add(kTints,
          tinted(head, tint)
              .tilted(18)
              .turned(57 * static_cast<float>(seed))
              .moved(foot + cVector3(0, tall, 0)),
          Scenery::kSeen);
}

bool isMeadow(float x, float z) {
    const float y = height(x, z), step = 0.3f;
    const float slope =
        std::max(std::fabs(height(x + step, z) - y), std::fabs(height(x, z + step) - y)) / step;
    return y > 1.35f && slope < 0.55f && path(x, z) < 0.15f;
}

void scatter(Scenery& s) {
    constexpr float kSpacing = 0.85f;
    constexpr int kHalf = 24;
    const Tint tints[] = {Tint::kWhite, Tint::kYellow, Tint::kRed, Tint::kViolet};
    Mesh blades;
    for (int j = -kHalf; j <= kHalf; ++j)
        for (int i = -kHalf; i <= kHalf; ++i) {
            const float x = kSpacing * (static_cast<float>(i) + 0.9f * (latticeValue(i, j, 801) - 0.5f));
            const float z = kSpacing * (static_cast<float>(j) + 0.9f * (latticeValue(i, j, 802) - 0.5f));
            if (!isMeadow(x, z) || !isFree(x, z, 0.15f)) continue;
            const float lush = fractalNoise(x * 0.3f, z * 0.3f, 803, 2);
            const auto seed = static_cast<uint32_t>((i + 100) * 331 + j + 100);
            if (latticeValue(i, j, 804) < lush * 1.1f) {
                const float high = 0.22f + 0.28f * lush;
                blades.append(tinted(tuft(x, z, seed, high, 4), Tint::kBlade));
            }
            // Flowers keep to their own kind: each noise patch has one colour.
            const float patch = fractalNoise(x * 0.16f, z * 0.16f, 805, 2);
            if (latticeValue(i, j, 806) < 2.6f * (patch - 0.44f)) {
                const auto kind = static_cast<size_t>(4 * fractalNoise(x * 0.07f + 40, z * 0.07f, 807, 1));
                addFlower(s, x + 0.2f, z, 0.22f + 0.14f * lush, tints[std::min<size_t>(kind, 3)], seed);
            }
        }
    s.addGround(kGrass, blades, Scenery::kSeen);
}

void addReeds(Scenery& s) {
    struct Place {
        float x, z;
    };
    constexpr Place kPlaces[] = {{-9.5f, 19.5f},  {-12.8f, 17.4f}, {5.4f, 20.6f},   {18.6f, 13.6f},
                                 {19.6f, -10.6f}, {-19.2f, 7.2f},  {14.4f, -15.6f}, {0.4f, -19.4f}};
    Mesh m;
    uint32_t seed = 900;
    for (const Place& p : kPlaces)
        for (int k = 0; k < 5; ++k) {
            const float x = p.x + 1.1f * (latticeValue(k, 1, ++seed) - 0.5f),
                        z = p.z + 1.1f * (latticeValue(k, 2, seed) - 0.5f);
            if (height(x, z) > 0.22f) m.append(tuft(x, z, seed, 0.75f, 6));
        }
    s.add(kStalks, tinted(m, Tint::kReed), Scenery::kSeen);
}

void addFence(Scenery& s, float x0, float z0, float x1, float z1) {
    const float length = std::hypot(x1 - x0, z1 - z0);
    const int posts = std::max(2, static_cast<int>(std::lround(length / 1.1f)) + 1);
    cVector3 before;
    for (int i = 0; i < posts; ++i) {
        const float t = static_cast<float>(i) / static_cast<float>(posts - 1);
        const float x = mix(x0, x1, t), z = mix(z0, z1, t), y = height(x, z);
        const float lean = 0.05f * (latticeValue(i, static_cast<int>(x0 * 10), 95) - 0.5f);
        s.add(kPlanks, timber({x, y - 0.2f, z}, {x + lean, y + 0.85f, z - lean}, 0.11f), Scenery::kSeen);
        const cVector3 at(x, y, z);
        if (i > 0)
            for (float up : {0.35f, 0.68f})
                s.add(kPlanks,
                      timber(before + cVector3(0, up, 0), at + cVector3(0, up + lean * 0.6f, 0), 0.06f),
                      Scenery::kSeen);
        before = at;
    }
    const float y = std::min(height(x0, z0), height(x1, z1));
    s.add(kPlanks,
          box({std::min(x0, x1) - 0.06f, y - 0.3f, std::min(z0, z1) - 0.06f},
              {std::max(x0, x1) + 0.06f, y + 0.9f, std::max(z0, z1) + 0.06f}),
          Scenery::kSolid);
}

void addSunflower(Scenery& s, float x, float z, float tall) {
    const float y = height(x, z);
    s.add(kTints, tinted(tube({{x, y, z}, {x + 0.03f, y + tall, z - 0.04f}}, {0.03f, 0.02f}, 5), Tint::kLeaf),
          Scenery::kSeen);
    for (float side : {-1.0f, 1.0f})
        s.add(kTints,
              tinted(ball(0.13f, 6, 4).scaled({1, 0.15f, 0.55f}), Tint::kLeaf)
                  .moved({x + side * 0.14f, y + tall * 0.5f + side * 0.07f, z}),
              Scenery::kSeen);
    const Mesh petals = lathe({{0, 0}, {0.24f, 0.02f}, {0.22f, 0.05f}, {0.1f, 0.05f}}, 10),
               heart = ball(0.12f, 8, 4).scaled({1, 0.35f, 1}).moved({0, 0.05f, 0});
    // Their faces look at the sun, that is to the south-east.
    const cVector3 at(x + 0.03f, y + tall, z - 0.02f);
    s.add(kTints, tinted(petals, Tint::kYellow).tilted(60).turned(34).moved(at), Scenery::kSeen);
    s.add(kTints, tinted(heart, Tint::kBook).tilted(60).turned(34).moved(at), Scenery::kSeen);
}
} // namespace

bool isFree(float x, float z, float margin) {
    struct Box {
        float x0, z0, x1, z1;
    };
    constexpr Box kTaken[] = {{-4.6f, -5.1f, 5.2f, 5.2f},   {7.4f, -2, 13.6f, 2},
                              {13.4f, -3.1f, 18.6f, 3.1f},  {14.9f, -6.3f, 17.6f, -3},
                              {-14.1f, 5.9f, -8.9f, 11.1f}, {-4.1f, 13.9f, 4.1f, 14.8f},
                              {7.9f, 4.9f, 11.1f, 15},      {-20.1f, -12.1f, -15.9f, -7.9f},
                              {-3.8f, 6.8f, 3.8f, 11.2f}};
    return std::none_of(std::begin(kTaken), std::end(kTaken), [&](const Box& b) {
        return x > b.x0 - margin && x < b.x1 + margin && z > b.z0 - margin && z < b.z1 + margin;
    });
}

void addGarden(Scenery& s) {
    // Open to the hut in the north, fenced on the other sides.
    constexpr float kWest = -3.6f, kEast = 3.6f, kNorth = 7, kSouth = 11;
    addFence(s, kWest, kNorth, kWest, kSouth);
    addFence(s, kWest, kSouth, kEast, kSouth);
    addFence(s, kEast, kSouth, kEast, kNorth);
    for (int row = 0; row < 3; ++row) {
        const float z = 7.6f + 0.95f * static_cast<float>(row);
        s.add(kTints,
              tinted(box({-2.9f, kMeadow - 0.1f, z - 0.28f}, {2.9f, kMeadow + 0.07f, z + 0.28f}, 0.15f),
                     Tint::kBook),
              Scenery::kSeen);
        for (int i = 0; i < 9; ++i) {
            const float x = -2.6f + 0.65f * static_cast<float>(i),
                        size = 0.15f + 0.05f * latticeValue(i, row, 97);
            if (row == 1) {
                for (int k = 0; k < 3; ++k)
                    s.add(kTints,
                          tinted(tuft(x, z, static_cast<uint32_t>(970 + i * 3 + k), 0.35f, 3), Tint::kLeaf)
                              .moved({0, 0.07f, 0}),
                          Scenery::kSeen);
            } else {
                s.add(kTints,
                      tinted(ball(size, 8, 5).scaled({1.15f, 0.8f, 1.15f}),
                             row == 0 ? Tint::kCabbage : Tint::kLeaf)
                          .moved({x, kMeadow + 0.07f + size * 0.5f, z}),
                      Scenery::kSeen);
            }
        }
    }
    for (int i = 0; i < 6; ++i)
        addSunflower(s, -2.9f + 1.15f * static_cast<float>(i), 10.6f, 1.5f + 0.35f * latticeValue(i, 3, 98));
}

void addPlants(Scenery& s) {
    scatter(s);
    addReeds(s);
}
} // namespace island
