#include "pictures/level_layer.h"

#include "forge/noise.h"

#include <algorithm>
#include <cmath>

using namespace forge;

namespace layer {
namespace {
constexpr int kLayerSize = 1024;
constexpr int kRampRows = 48;
} // namespace

cVector3 normal(const Land& land, float x, float z) {
    constexpr float kStep = 0.35f;
    const float dx = land.height(x + kStep, z) - land.height(x - kStep, z);
    const float dz = land.height(x, z + kStep) - land.height(x, z - kStep);
    return cVector3(-dx, 2 * kStep, -dz).normalized();
}

float boxShadow(const Land& land, float x, float z, float x0, float z0, float x1, float z1, float tall) {
    // The shadow falls away from the sun: the box swept by the offset of its top.
    const float sx = -land.towardsSun.x / land.towardsSun.y * tall;
    const float sz = -land.towardsSun.z / land.towardsSun.y * tall;
    float best = 1e9f;
    for (int i = 0; i <= 6; ++i) {
        const float t = static_cast<float>(i) / 6, ox = sx * t, oz = sz * t;
        const float dx = std::max({x0 + ox - x, x - x1 - ox, 0.0f}),
                    dz = std::max({z0 + oz - z, z - z1 - oz, 0.0f});
        best = std::min(best, std::hypot(dx, dz));
    }
    return 1 - smoothStep(-0.2f, 0.9f, best);
}

float crownShadow(const Land& land, float x, float z, float treeX, float treeZ, float radius, float high) {
    const float cx = treeX - land.towardsSun.x / land.towardsSun.y * high,
                cz = treeZ - land.towardsSun.z / land.towardsSun.y * high;
    const float far = std::hypot(x - cx, z - cz), stem = std::hypot(x - treeX, z - treeZ);
    return std::max(1 - smoothStep(radius * 0.7f, radius * 1.25f, far), 1 - smoothStep(0.2f, 0.9f, stem));
}

void put(Output& out, const std::string& name, float halfSize, Colour (*colour)(float x, float z)) {
    Canvas picture(kLayerSize, kLayerSize);
    const float scale = 2 * halfSize / kLayerSize;
    picture.cover([&](float x, float y) {
        if (y >= kLayerSize - kRampRows) {
            const float v = kDarkest + (1 - kDarkest) * clamp01((x / kLayerSize - 0.02f) / 0.96f);
            return Colour{v, v, v, 1};
        }
        return colour(x * scale - halfSize, y * scale - halfSize);
    });
    out.put("src_mdl/" + name + "_layer.tga", picture.tga(24));
}
} // namespace layer
