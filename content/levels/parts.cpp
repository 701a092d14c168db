#include "levels/parts.h"

#include "forge/noise.h"

#include <algorithm>
#include <cmath>

using namespace forge;

namespace parts {
namespace {
float distanceTo(const Stretch& s, float x, float z) {
    const float dx = s.x1 - s.x0, dz = s.z1 - s.z0;
    const float t = clamp01(((x - s.x0) * dx + (z - s.z0) * dz) / (dx * dx + dz * dz));
    return std::hypot(x - s.x0 - t * dx, z - s.z0 - t * dz);
}
} // namespace

float trodden(std::span<const Stretch> path, float x, float z) {
    const float wobble = 0.5f * (fractalNoise(x * 0.7f, z * 0.7f, 77, 2) - 0.5f);
    float best = 0;
    for (const Stretch& s : path)
        best = std::max(best, 1 - smoothStep(s.width * 0.6f, s.width, distanceTo(s, x, z) + wobble));
    return best;
}

float distanceToPath(std::span<const Stretch> path, float x, float z) {
    float best = 1e9f;
    for (const Stretch& s : path) best = std::min(best, distanceTo(s, x, z));
    return best;
}

float distanceToPads(std::span<const Pad> pads, float x, float z) {
    float best = 1e9f;
    for (const Pad& p : pads) {
        const float dx = std::max({p.x0 - x, x - p.x1, 0.0f}), dz = std::max({p.z0 - z, z - p.z1, 0.0f});
        best = std::min(best, std::hypot(dx, dz));
    }
    return best;
}

Mesh timber(const cVector3& a, const cVector3& b, float width) {
    const cVector3 along = (b - a).normalized();
    const cVector3 helper = std::fabs(along.y) < 0.999f ? cVector3(0, 1, 0) : cVector3(0, 0, 1);
    const cVector3 side = along.cross(helper).normalized() * (width / 2), up = side.cross(along);
    const cVector3 corners[4] = {-side - up, side - up, side + up, -side + up};
    const float length = (b - a).length();
    Mesh m;
    for (int i = 0; i < 4; ++i) {
        const cVector3 &p = corners[i], &q = corners[(i + 1) % 4];
        m.addQuad(a + q, a + p, b + p, b + q, width * 1.4f, length * 0.7f);
    }
    m.addQuad(a + corners[0], a + corners[1], a + corners[2], a + corners[3], 0.2f, 0.2f);
    m.addQuad(b + corners[3], b + corners[2], b + corners[1], b + corners[0], 0.2f, 0.2f);
    return m;
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
void addFence(Scenery& s, Height height, float x0, float z0, float x1, float z1) {
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
} // namespace parts
