// Pier, rocks in the surf, and the lighthouse on the hill that one sees from everywhere.

#include "levels/island_parts.h"

#include <cmath>

using namespace forge;

namespace island {
namespace {
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
        s.add(kRock, boulder(r.size, ++seed).moved({r.x, height(r.x, r.z) + r.size * 0.2f, r.z}));
    // Cliffs break into blocks on the seaward side of the hill.
    constexpr Place kBlocks[] = {{-20.6f, -6.2f, 1.2f},
                                 {-21.2f, -12.4f, 1.4f},
                                 {-17.2f, -16.2f, 1.1f},
                                 {-12.6f, -16.0f, 0.8f},
                                 {-12.9f, -2.7f, 0.7f}};
    for (const Place& r : kBlocks)
        s.add(kRock, boulder(r.size, ++seed).moved({r.x, height(r.x, r.z) + r.size * 0.1f, r.z}));
}
} // namespace

void addHarbour(Scenery& s) {
    s.add(kPlanks, box({-1.2f, 0.55f, 21}, {1.2f, 0.75f, 28.5f}, 0.5f));
    for (float z : {21.6f, 23.8f, 26.0f, 28.2f}) {
        for (float x : {-1.35f, 1.15f}) {
            s.add(kBeams, box({x, -3.5f, z}, {x + 0.2f, 1.35f, z + 0.2f}, 0.6f));
            s.add(kTints,
                  tinted(lathe({{0.13f, 1.35f}, {0.15f, 1.38f}, {0, 1.5f}}, 6), Tint::kIron)
                      .moved({x + 0.1f, 0, z + 0.1f}),
                  Scenery::kSeen);
        }
        s.add(kBeams, timber({-1.3f, 0.48f, z + 0.1f}, {1.3f, 0.48f, z + 0.1f}, 0.16f), Scenery::kSeen);
    }
    // A landing to the west, where one fishes.
    s.add(kPlanks, box({-3.4f, 0.55f, 26.1f}, {-1.2f, 0.75f, 28.5f}, 0.5f));
    for (float z : {26.2f, 28.2f}) s.add(kBeams, box({-3.45f, -3.5f, z}, {-3.25f, 1.1f, z + 0.2f}, 0.6f));
    s.add(kPlanks, timber({-2.75f, 1.75f, 27.35f}, {-5.2f, 3.1f, 27.5f}, 0.035f), Scenery::kSeen);
    s.add(kTints,
          tinted(tube({{-5.2f, 3.1f, 27.5f}, {-5.5f, 0.05f, 27.6f}}, {0.008f, 0.008f}, 3), Tint::kCream),
          Scenery::kSeen);
    s.add(kTints, tinted(ball(0.07f, 6, 4), Tint::kBrick).moved({-5.5f, 0.06f, 27.6f}), Scenery::kSeen);
    s.add(
        kTints,
        tinted(lathe({{0, 0.75f}, {0.17f, 0.75f}, {0.22f, 1.1f}, {0.19f, 1.1f}, {0, 0.85f}}, 10), Tint::kTeal)
            .moved({-1.7f, 0, 27.9f}),
        Scenery::kSeen);
    // A rope sags from post to post.
    for (const auto& [x, spans] : {std::pair{-1.25f, 2}, {1.25f, 3}})
        for (int span = 0; span < spans; ++span) {
            const float z = 21.7f + 2.2f * static_cast<float>(span);
            std::vector<cVector3> path;
            for (int i = 0; i <= 4; ++i) {
                const float t = static_cast<float>(i) / 4;
                path.emplace_back(x, 1.2f - 0.8f * t * (1 - t), z + 2.2f * t);
            }
            s.add(kTints, tinted(tube(path, std::vector<float>(5, 0.03f), 5), Tint::kStraw), Scenery::kSeen);
        }
    addRocks(s);
}

namespace {
constexpr float kX = -18, kZ = -10, kFoot = kHillTop - 0.4f, kGallery = 12.2f; ///< of the lighthouse
constexpr int kSides = 16;
constexpr cVector3 kTowerAt(kX, 0, kZ);

/// A place on a circle round the tower: part `i` of `parts`.
cVector3 round(int i, int parts, float radius, float y) {
    const float a = 6.2831853f * static_cast<float>(i) / static_cast<float>(parts);
    return {kX + radius * std::sin(a), y, kZ + radius * std::cos(a)};
}

void addTower(Scenery& s) {
    // One picture from the foot to the gallery, so v follows the height.
    constexpr int kRings = 7;
    std::vector<std::pair<float, float>> profile;
    for (int i = 0; i <= kRings; ++i) {
        const float t = static_cast<float>(i) / kRings;
        profile.emplace_back(1.75f - 0.75f * std::pow(t, 0.8f), kFoot + 0.5f + (kGallery - kFoot - 0.5f) * t);
    }
    s.add(kTower, lathe(profile, kSides, 2, 1).moved(kTowerAt));
    s.add(kStone, lathe({{2.05f, kFoot}, {2.0f, kFoot + 0.55f}, {1.7f, kFoot + 0.6f}}, kSides, 6, 0.4f)
                      .moved(kTowerAt));
}

/// Gallery with a rail, the lamp, the roof.
void addLantern(Scenery& s) {
    s.add(
        kStone,
        lathe(
            {{0.95f, kGallery - 0.25f}, {1.5f, kGallery}, {1.5f, kGallery + 0.15f}, {0.7f, kGallery + 0.16f}},
            kSides, 6, 0.5f)
            .moved(kTowerAt));
    for (int i = 0; i < kSides / 2; ++i) {
        const cVector3 p = round(i, kSides / 2, 1.4f, kGallery + 0.15f);
        const cVector3 q = round(i + 1, kSides / 2, 1.4f, kGallery + 0.15f);
        for (float up : {0.3f, 0.62f})
            s.add(kTints,
                  tinted(tube({p + cVector3(0, up, 0), q + cVector3(0, up, 0)}, {0.03f, 0.03f}, 4),
                         Tint::kIron),
                  Scenery::kSeen);
        s.add(kTints, tinted(tube({p, p + cVector3(0, 0.66f, 0)}, {0.035f, 0.035f}, 4), Tint::kIron),
              Scenery::kSeen);
    }
    s.add(kGlowing,
          tinted(lathe({{0.62f, kGallery + 0.16f}, {0.66f, kGallery + 1.1f}}, 8), Tint::kYellow)
              .moved(kTowerAt),
          Scenery::kSeen);
    for (int i = 0; i < 8; ++i) {
        const cVector3 p = round(i, 8, 0.66f, kGallery + 0.15f);
        s.add(kTints, tinted(tube({p, p + cVector3(0, 1.0f, 0)}, {0.05f, 0.05f}, 4), Tint::kIron),
              Scenery::kSeen);
    }
    s.add(kTints, tinted(lathe({{0, kGallery + 1.08f},
                                {0.9f, kGallery + 1.08f},
                                {0.86f, kGallery + 1.18f},
                                {0.35f, kGallery + 1.75f},
                                {0.1f, kGallery + 1.95f},
                                {0.13f, kGallery + 2.1f},
                                {0.06f, kGallery + 2.2f},
                                {0, kHighest}},
                               12),
                         Tint::kBrick)
                      .moved(kTowerAt));
}

/// They look over the island.
void addDoorAndWindows(Scenery& s) {
    s.add(kBeams, box({-16.55f, kHillTop - 0.1f, -10.55f}, {-16.2f, kHillTop + 1.95f, -9.45f}, 0.7f),
          Scenery::kSeen);
    s.add(kTints,
          tinted(box({-16.5f, kHillTop - 0.1f, -10.42f}, {-16.16f, kHillTop + 1.82f, -9.58f}, 0.3f),
                 Tint::kTeal),
          Scenery::kSeen);
    for (float y : {9.2f, 10.9f}) {
        const float r = y < 10 ? 1.36f : 1.14f;
        s.add(kBeams, box({kX + r - 0.2f, y, kZ - 0.3f}, {kX + r + 0.02f, y + 0.75f, kZ + 0.3f}, 0.7f),
              Scenery::kSeen);
        s.add(kTints,
              tinted(box({kX + r - 0.2f, y + 0.08f, kZ - 0.2f}, {kX + r + 0.05f, y + 0.67f, kZ + 0.2f}, 0.3f),
                     Tint::kIron),
              Scenery::kSeen);
    }
}
} // namespace

void addLighthouse(Scenery& s) {
    addTower(s);
    addLantern(s);
    addDoorAndWindows(s);
}
} // namespace island
