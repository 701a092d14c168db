// The island's ground as seen from above: its colour, light and painted shadows.

#include "forge/noise.h"
#include "forge/recipes.h"
#include "levels/island_ground.h"
#include "pictures/level_layer.h"

#include <algorithm>
#include <cmath>

using namespace forge;

namespace {
const layer::Land kLand{island::height, island::kTowardsSun};

float shadows(float x, float z) {
    struct Box {
        float x0, z0, x1, z1, tall;
    };
    constexpr Box kBoxes[] = {{-4.9f, -5, 4.9f, 5, 4.5f},
                              {13.5f, -3, 18.5f, 3, 2.5f},
                              {-14, 6, -9, 11, 1.1f},
                              {-4, 14, 4, 14.7f, 3.2f},
                              {8, 5, 11, 12, 2},
                              {7.5f, -1.5f, 13.5f, 1.5f, 1},
                              {15, -6.2f, 17.5f, -3, 1.2f},
                              {-19.2f, -11.2f, -16.8f, -8.8f, 7}};
    float result = 0;
    for (const Box& b : kBoxes)
        result = std::max(result, layer::boxShadow(kLand, x, z, b.x0, b.z0, b.x1, b.z1, b.tall));
    return result;
}

Colour groundColour(float x, float z) {
    const float y = island::height(x, z);
    const cVector3 n = layer::normal(kLand, x, z);
    const float patches = fractalNoise(x * 0.35f, z * 0.35f, 71, 4), fine = fractalNoise(x * 2, z * 2, 72, 2);
    Colour c = mix(rgb(0x5f9a3e), rgb(0x9cc257), smoothStep(0.3f, 0.7f, patches));
    c = mix(c, rgb(0x4f8a46), 0.35f * smoothStep(0.55f, 0.75f, fine));
    const float sand = 1 - smoothStep(0.9f, 1.7f, y + 0.8f * (patches - 0.5f));
    c = mix(c, mix(rgb(0xe9d59a), rgb(0xd9bd7e), fine), sand);
    c = mix(c, rgb(0xb79b72), 1 - smoothStep(-0.3f, 0.25f, y));
    // The last wave's edge, where the waves' crests reach: a broken line of foam on wet sand.
    const float surf = y + 0.16f * (fractalNoise(x * 0.8f, z * 0.8f, 73, 3) - 0.5f);
    c = mix(c, shaded(c, 0.80f), smoothStep(0.46f, 0.36f, surf) * smoothStep(-0.4f, 0.1f, surf));
    const float line = smoothStep(0.09f, 0.02f, std::fabs(surf - 0.27f)) +
                       0.7f * smoothStep(0.06f, 0.0f, std::fabs(surf - 0.06f));
    const float foam = clamp01(line) * smoothStep(0.22f, 0.42f, fractalNoise(x * 1.6f, z * 1.6f, 74, 2));
    c = mix(c, rgb(0x3d7a78), 1 - smoothStep(-4.0f, -0.4f, y));
    c = mix(c, mix(rgb(0xc9a873), rgb(0xb08f5f), fine), island::path(x, z));
    const float steep = smoothStep(0.86f, 0.72f, n.y) * smoothStep(-0.5f, 0.6f, y);
    c = mix(c, mix(rgb(0x8d8478), rgb(0xb3a894), patches), 1 - smoothStep(0.72f, 0.88f, n.y) > 0 ? steep : 0);
    c = mix(c, rgb(0xf7fbf4), 0.85f * foam);
    const float light = 0.62f + 0.44f * std::max(0.0f, n.dot(island::kTowardsSun));
    c = shaded(c, light * (1 - 0.34f * shadows(x, z)) * 1.08f);
    // Deep down the bed takes the colour of the sky's lower half, so that its border does not show.
    return mix(rgb(0x22749a), c, smoothStep(-4.5f, -0.6f, y));
}
} // namespace

FORGE_RECIPE(picture_island_layer) {
    layer::put(out, "island", island::kHalfSize, groundColour);
}
