// What grows: grass and flowers on the meadow, reeds on the beach, the kitchen garden behind the hut.

#include "forge/noise.h"
#include "levels/growth.h"
#include "levels/island_parts.h"

#include <algorithm>
#include <cmath>

using namespace forge;

namespace island {
namespace {
using growth::addFlower;
using growth::tuft;

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
                blades.append(tinted(tuft(height, x, z, seed, high, 4), Tint::kBlade));
            }
            // Flowers keep to their own kind: each noise patch has one colour.
            const float patch = fractalNoise(x * 0.16f, z * 0.16f, 805, 2);
            if (latticeValue(i, j, 806) < 2.6f * (patch - 0.44f)) {
                const auto kind = static_cast<size_t>(4 * fractalNoise(x * 0.07f + 40, z * 0.07f, 807, 1));
                addFlower(s, height, x + 0.2f, z, 0.22f + 0.14f * lush, tints[std::min<size_t>(kind, 3)],
                          seed);
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
            if (height(x, z) > 0.22f) m.append(tuft(height, x, z, seed, 0.75f, 6));
        }
    s.add(kStalks, tinted(m, Tint::kReed), Scenery::kSeen);
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
                              {-3.8f, 6.8f, 3.8f, 11.2f},   {0.5f, -12.1f, 1.9f, -10.7f}};
    return std::none_of(std::begin(kTaken), std::end(kTaken), [&](const Box& b) {
        return x > b.x0 - margin && x < b.x1 + margin && z > b.z0 - margin && z < b.z1 + margin;
    });
}

void addGarden(Scenery& s) {
    // Open to the hut in the north, fenced on the other sides.
    constexpr float kWest = -3.6f, kEast = 3.6f, kNorth = 7, kSouth = 11;
    addFence(s, height, kWest, kNorth, kWest, kSouth);
    addFence(s, height, kWest, kSouth, kEast, kSouth);
    addFence(s, height, kEast, kSouth, kEast, kNorth);
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
                          tinted(tuft(height, x, z, static_cast<uint32_t>(970 + i * 3 + k), 0.35f, 3),
                                 Tint::kLeaf)
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
