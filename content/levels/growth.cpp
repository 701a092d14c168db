#include "levels/growth.h"

#include "forge/noise.h"

#include <algorithm>
#include <cmath>

using namespace forge;

namespace growth {
namespace {
constexpr float kTurn = 6.28318531f;
/// How high above its foot a crown begins: over the camera, which follows 2.7 above the ground.
constexpr float kClear = 3.5f;

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

/// What bodies meet of a tree: upright, so that nobody wedges himself between a root and the ground.
void addStem(Scenery& s, const cVector3& foot, float radius) {
    constexpr float kDeep = 0.6f, kTall = 4;
    s.add(parts::kBeams, lathe({{radius, -kDeep}, {radius, kTall}}, 8).moved(foot), Scenery::kSolid);
}
} // namespace

Mesh foliage(float radius, uint32_t seed, int segments, int rings) {
    Mesh m = ball(radius, segments, rings);
    for (cVector3& p : m.positions) {
        const float k =
            0.82f + 0.36f * noise(p.x / radius * 2 + 7, p.z / radius * 2 + p.y / radius * 3 + 7, seed);
        p = {p.x * k, p.y * k * (p.y < 0 ? 0.62f : 0.95f), p.z * k};
    }
    const float repeats = std::max(1.0f, std::round(radius * 3));
    for (TexCoord& t : m.texCoords) t = {t.u * repeats, t.v * repeats * 0.5f};
    return m;
}

Mesh skirt(float radius, float foot, float tall, float turn, int points) {
    Mesh m;
    const auto ring = [&](float r, float y, float v, bool jagged) {
        for (int i = 0; i <= 2 * points; ++i) {
            const float a =
                6.28318531f * (static_cast<float>(i % (2 * points)) / static_cast<float>(2 * points)) + turn;
            const bool tip = i % 2 == 0;
            const float far = jagged ? (tip ? 1.0f : 0.78f) : 1.0f,
                        drop = jagged && tip ? 0.16f * radius : 0.0f;
            m.addVertex({r * far * std::sin(a), y - drop, r * far * std::cos(a)},
                        static_cast<float>(i) / static_cast<float>(2 * points) *
                            std::max(1.0f, std::round(radius * 3)),
                        v);
        }
    };
    ring(0, foot + 0.30f * tall, 0.4f, false);
    ring(radius, foot, 0, true);
    ring(radius * 0.55f, foot + 0.42f * tall, 0.5f, false);
    ring(0, foot + tall, 1, false);
    const auto row = static_cast<uint32_t>(2 * points + 1);
    for (uint32_t j = 0; j < 3; ++j)
        for (uint32_t i = 0; i + 1 < row; ++i) {
            const uint32_t k = j * row + i;
            m.addTriangle(k, k + 1, k + row + 1);
            m.addTriangle(k, k + row + 1, k + row);
        }
    return m;
}

Mesh tuft(Height height, float x, float z, uint32_t seed, float tall, int blades) {
    Mesh m;
    for (int i = 0; i < blades; ++i) {
        const float angle = kTurn * latticeValue(i, 1, seed), away = 0.14f * latticeValue(i, 2, seed);
        const float px = x + away * std::sin(angle * 3), pz = z + away * std::cos(angle * 3);
        addBlade(m, {px, height(px, pz) - 0.03f, pz}, angle, tall * (0.6f + 0.6f * latticeValue(i, 3, seed)),
                 0.11f, tall * (0.2f + 0.5f * latticeValue(i, 4, seed)));
    }
    return m;
}

void addFlower(Scenery& s, Height height, float x, float z, float tall, Tint tint, uint32_t seed) {
    const cVector3 foot(x, height(x, z) - 0.02f, z);
    Mesh stalk;
    for (float turn : {0.0f, kTurn / 4})
        addBlade(stalk, foot, turn + static_cast<float>(seed), tall, 0.045f, 0.02f);
    s.add(parts::kStalks, tints::tinted(stalk, Tint::kLeaf), Scenery::kSeen);
    const Mesh head = lathe({{0, -0.03f}, {0.10f, 0.0f}, {0.13f, 0.05f}, {0.04f, 0.03f}, {0, 0.05f}}, 6);
    s.add(parts::kTints,
          tints::tinted(head, tint)
              .tilted(18)
              .turned(57 * static_cast<float>(seed))
              .moved(foot + cVector3(0, tall, 0)),
          Scenery::kSeen);
}

void addPine(Scenery& s, const cVector3& foot, float size, uint32_t seed, bool far) {
    const float k = size * (0.9f + 0.2f * latticeValue(1, 1, seed));
    const float lift = far ? 0 : std::max(0.0f, kClear - 1.26f * k);
    s.add(parts::kBeams,
          lathe({{0.3f * k, -0.4f}, {0.18f * k, 0.3f * k}, {0.12f * k, lift + 2 * k}}, 7, 2, 1).moved(foot),
          Scenery::kSeen);
    addStem(s, foot, 0.26f * k);
    Mesh needles;
    for (int i = 0; i < 4; ++i) {
        const auto t = static_cast<float>(i);
        needles.append(skirt((1.5f - 0.33f * t) * k, (1.5f + 0.74f * t) * k, (1.5f - 0.06f * t) * k,
                             0.7f * t + static_cast<float>(seed), 6));
    }
    s.add(parts::kNeedles, needles.moved(foot + cVector3(0, lift, 0)), Scenery::kSeen);
}

void addOak(Scenery& s, const cVector3& foot, float size, uint32_t seed) {
    const float turn = 360 * latticeValue(2, 1, seed);
    const float lift = std::max(0.0f, kClear / size - 2.26f);
    s.add(parts::kBeams,
          tube({{0, -0.4f, 0}, {0.05f, 0.5f, 0}, {-0.05f, 1.6f + lift, 0.06f}, {0.05f, 2.7f + lift, 0}},
               {0.42f, 0.27f, 0.2f, 0.14f}, 7, false)
              .scaled({size, size, size})
              .turned(turn)
              .moved(foot),
          Scenery::kSeen);
    addStem(s, foot, 0.3f * size);
    struct Clump {
        float radius, x, y, z;
    };
    constexpr Clump kDark[] = {
        {1.15f, -0.35f, 3.1f, 0.2f}, {0.95f, 0.95f, 3.0f, 0.3f}, {0.9f, 0, 3.0f, -0.95f}};
    constexpr Clump kLight[] = {{1.0f, 0.35f, 3.85f, 0.15f}, {0.8f, -0.5f, 4.1f, -0.3f}};
    const auto crown = [&](const auto& clumps, uint32_t first) {
        Mesh m;
        for (const Clump& c : clumps)
            m.append(foliage(c.radius, first++, 9, 6).moved({c.x, c.y + lift, c.z}));
        return m.scaled({size, size, size}).turned(turn).moved(foot);
    };
    s.add(parts::kLeaves, crown(kDark, seed), Scenery::kSeen);
    s.add(parts::kPaleLeaves, crown(kLight, seed + 7), Scenery::kSeen);
}

void addBush(Scenery& s, const cVector3& foot, float size, uint32_t seed) {
    Mesh m = foliage(0.5f * size, seed, 9, 6).moved({0, 0.3f * size, 0});
    m.append(foliage(0.38f * size, seed + 1, 9, 6).moved({0.42f * size, 0.24f * size, 0.15f * size}));
    m.append(foliage(0.34f * size, seed + 2, 8, 5).moved({-0.36f * size, 0.22f * size, -0.12f * size}));
    s.add(seed % 2 == 0 ? parts::kLeaves : parts::kPaleLeaves,
          m.turned(static_cast<float>(seed) * 47).moved(foot), Scenery::kSeen);
}
} // namespace growth
