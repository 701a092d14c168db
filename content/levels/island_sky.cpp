#include "forge/canvas.h"
#include "forge/noise.h"
#include "forge/recipes.h"
#include "forge/writers.h"

#include <cmath>

using namespace forge;

namespace {
constexpr float kTurn = 6.28318531f;
constexpr float kDome = 800, kIslands = 640; // distances in units; one sees 1100 far
constexpr float kSea = 420;                  // half the side of the water
constexpr int kSeaCells = 32;

/// v 0 is straight down, 0.5 the horizon, 1 straight up.
Colour sky(float u, float v) {
    const float up = (v - 0.5f) * 2;
    if (up < 0) return mix(rgb(0xa9d6e4), rgb(0x1f6a8c), smoothStep(0, 0.16f, -up));
    Colour c = mix(rgb(0xdff1f3), rgb(0x8cc7ea), smoothStep(0, 0.28f, up));
    c = mix(c, rgb(0x3f8fd0), smoothStep(0.2f, 0.9f, up));
    // Clouds thin out towards the zenith, where the texture runs together.
    const float field = fractalNoise(u * 16, v * 26, 201, 5, 16);
    const float billow = fractalNoise(u * 32, v * 60, 202, 4, 32);
    const float amount =
        smoothStep(0.54f, 0.70f, field) * smoothStep(0.02f, 0.10f, up) * smoothStep(0.62f, 0.36f, up);
    return mix(c, mix(rgb(0xd5e4ee), rgb(0xffffff), smoothStep(0.3f, 0.6f, billow)), amount * 0.92f);
}

Mesh dome() {
    std::vector<std::pair<float, float>> profile;
    constexpr int kRings = 16;
    for (int i = 0; i <= kRings; ++i) {
        const float a = kTurn / 2 * static_cast<float>(i) / kRings;
        profile.emplace_back(i == 0 || i == kRings ? 0.0f : kDome * std::sin(a), -kDome * std::cos(a));
    }
    return lathe(profile, 32).insideOut();
}

/// Far islands round the horizon, seen from inside only.
Mesh farIslands(int count, float nearness, float tall, uint32_t seed) {
    Mesh m;
    for (int i = 0; i < count; ++i) {
        const float angle =
            kTurn * (static_cast<float>(i) + 0.7f * latticeValue(i, 1, seed)) / static_cast<float>(count);
        const float width = 30 + 90 * latticeValue(i, 2, seed),
                    height = tall * (0.4f + latticeValue(i, 3, seed));
        const float distance = kIslands * nearness;
        const cVector3 middle(distance * std::sin(angle), 0, -distance * std::cos(angle));
        const cVector3 across(std::cos(angle), 0, std::sin(angle));
        constexpr int kPoints = 10;
        for (int k = 0; k <= kPoints; ++k) {
            const float s = static_cast<float>(k) / kPoints * 2 - 1;
            const float rough = 0.7f + 0.5f * noise(s * 4 + 20, static_cast<float>(i) * 3.7f, seed);
            const float top = height * std::max(0.0f, 1 - s * s) * rough;
            const cVector3 p = middle + across * (s * width);
            m.addVertex(p + cVector3(0, -4, 0), 0, 0);
            m.addVertex(p + cVector3(0, top, 0), 0, 1);
        }
        const auto base = static_cast<uint32_t>(m.positions.size()) - 2 * (kPoints + 1);
        for (uint32_t k = 0; k < kPoints; ++k) {
            m.addTriangle(base + 2 * k, base + 2 * k + 2, base + 2 * k + 3);
            m.addTriangle(base + 2 * k, base + 2 * k + 3, base + 2 * k + 1);
        }
    }
    return m;
}

/// Fine near the island, coarse far out.
Mesh sea() {
    const auto spread = [](int i) {
        const float t = static_cast<float>(i) / kSeaCells * 2 - 1;
        return kSea * (0.09f * t + 0.91f * t * t * t);
    };
    Mesh m;
    for (int j = 0; j <= kSeaCells; ++j)
        for (int i = 0; i <= kSeaCells; ++i)
            m.addVertex({spread(i), 0, spread(j)}, spread(i) / 9, -spread(j) / 9);
    constexpr uint32_t kRow = kSeaCells + 1;
    for (uint32_t j = 0; j < kSeaCells; ++j)
        for (uint32_t i = 0; i < kSeaCells; ++i) {
            const uint32_t k = j * kRow + i;
            m.addTriangle(k, k + kRow, k + kRow + 1);
            m.addTriangle(k, k + kRow + 1, k + 1);
        }
    return m;
}

Colour waterColour(float x, float y) {
    // Light nets: thin bright lines where two noises cross.
    const float a = fractalNoise(x * 8, y * 8, 301, 2, 8), b = fractalNoise(x * 8 + 3, y * 8 + 5, 302, 2, 8);
    const float net = smoothStep(0.10f, 0.0f, std::fabs(a - b));
    const Colour deep = mix(rgb(0x2f8fb0), rgb(0x3aa6bd), a);
    Colour c = mix(deep, rgb(0xd8f5f2), 0.5f * net);
    c.a = 0.66f + 0.16f * net;
    return c;
}
} // namespace

// Sky, horizon and sea of the island.
FORGE_RECIPE(environment_island) {
    Canvas skyPicture(1024, 512);
    skyPicture.cover([](float x, float y) { return sky(x / 1024, 1 - y / 512); });
    out.put("env/island_sky.tga", skyPicture.tga(24));
    Canvas water(256, 256);
    water.cover([](float x, float y) { return waterColour(x / 256, y / 256); });
    out.put("env/island_water.tga", water.tga(32));

    Environment e;
    e.light = {80, 200, 120};
    e.deathHeight = -0.4f; // of the hero's middle: up to the neck
    e.hasWater = true;
    e.waterScale = 0.3f;
    e.waterHeight = 0;
    e.sky2 = {{"sky", "env\\island_sky.tga", {}, dome()}};
    e.sky1 = {{"far", "", {150, 190, 208, 0}, farIslands(9, 1, 34, 41)},
              {"near", "", {112, 160, 178, 0}, farIslands(5, 0.8f, 26, 42)}};
    e.water = {{"sea", "env\\island_water.tga", {}, sea()}};
    out.put("env/island.env", environmentFile(e));
}
