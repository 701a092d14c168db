// The first level's fixed geometry, put together from its parts.

#include "forge/noise.h"
#include "forge/recipes.h"
#include "levels/island_parts.h"

#include <cmath>

using namespace forge;

namespace island {
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
} // namespace island

FORGE_RECIPE(level_island) {
    using namespace island;
    Scenery s;
    constexpr int kCells = 64;
    s.addGround(kGround, terrain(-kHalfSize, -kHalfSize, 1, kCells, kCells, height, 0.25f));
    s.setGround(height);
    addHut(s);
    addHutInside(s);
    addTerrace(s);
    addRuins(s);
    addHarbour(s);
    addLighthouse(s);
    addGarden(s);
    addPlants(s);
    s.write(out, "island", kHalfSize, {"island_layer.tga", kHalfSize, 0.0234f, kTowardsSun, 0.4f});
}
