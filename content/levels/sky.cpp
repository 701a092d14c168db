#include "levels/sky.h"

#include "forge/canvas.h"
#include "forge/noise.h"

#include <cmath>

using namespace forge;

namespace sky {
namespace {
constexpr float kTurn = 6.28318531f;
constexpr float kDome = 800, kIslands = 640; // distances in units; one sees 1100 far
constexpr float kSea = 420;                  // half the side of the water
constexpr int kSeaCells = 32;
constexpr const char* kWaterPicture = "env\\water.tga";
constexpr int kSkyWidth = 2048, kSkyHeight = 1024;
constexpr float kTexelsPerDegree = kSkyWidth / 360.0f;

/// A heap of round puffs on a flat base, in degrees: azimuth to the right, elevation upwards.
struct Cloud {
    struct Puff {
        float x, y, radius;
    };
    float azimuth, base, halfWidth, tall;
    std::vector<Puff> puffs; ///< from the back to the front
};

/// Big heaps near the horizon, small ones higher up; the eye reads their size as distance.
std::vector<Cloud> clouds(uint32_t seed) {
    constexpr int kHeaps = 15, kPuffs = 17;
    std::vector<Cloud> all;
    for (int i = 0; i < kHeaps; ++i) {
        const auto chance = [&](int k) { return latticeValue(i, k, seed); };
        const float size = i % 3 == 0 ? 1.0f : 0.35f + 0.3f * chance(1);
        Cloud cloud{360.0f / kHeaps * (static_cast<float>(i) + 0.6f * chance(2)),
                    i % 3 == 0 ? 3.5f + 4 * chance(3) : 11 + 15 * chance(3),
                    (11 + 9 * chance(4)) * size,
                    (7 + 6 * chance(5)) * size,
                    {}};
        for (int k = 0; k < kPuffs; ++k) {
            // From high and far back to low and near: every later puff covers the ones before it.
            const float rank = static_cast<float>(k) / (kPuffs - 1);
            const float x = 2 * latticeValue(i, 20 + k, seed + 1) - 1;
            const float room = std::sqrt(std::max(0.0f, 1 - x * x));
            const float radius =
                cloud.tall * (0.20f + 0.22f * latticeValue(i, 60 + k, seed + 2)) * (0.5f + room / 2);
            const float y = cloud.tall * room * (1 - rank) * 0.8f + radius * 0.45f;
            cloud.puffs.push_back({x * cloud.halfWidth, y, radius});
        }
        all.push_back(cloud);
    }
    return all;
}

/// Paints `cloud` over `c` at a direction of the sky, in degrees.
Colour withCloud(const Colour& c, const Cloud& cloud, float azimuth, float elevation,
                 const Palette& palette) {
    float dx = std::remainder(azimuth - cloud.azimuth, 360.0f) * std::cos(elevation * kTurn / 360);
    const float dy = elevation - cloud.base;
    if (std::fabs(dx) > cloud.halfWidth * 1.4f || dy < -1 || dy > cloud.tall * 1.6f) return c;
    dx += 0.10f * cloud.tall * (fractalNoise(azimuth * 0.9f, elevation * 0.9f, 214, 3) - 0.5f);
    Colour result = c;
    for (const Cloud::Puff& p : cloud.puffs) {
        const float x = (dx - p.x) / p.radius, y = (dy - p.y) / p.radius;
        const float inside = 1 - std::hypot(x, y);
        if (inside <= 0) continue;
        // A ball lit from above and the right, in three soft tones; its foot dissolves into the air.
        const float z = std::sqrt(std::max(0.0f, 1 - x * x - y * y));
        const float light = 0.42f * x + 0.80f * y + 0.36f * z + 0.35f * (dy / cloud.tall);
        Colour tone = mix(rgb(palette.cloudShade), rgb(palette.cloudTone), smoothStep(-0.28f, -0.08f, light));
        tone = mix(tone, rgb(palette.cloudLight), smoothStep(0.22f, 0.46f, light));
        const float edge = smoothStep(0.0f, 0.9f / (p.radius * kTexelsPerDegree), inside);
        result = mix(result, tone, edge * smoothStep(-0.1f, 0.22f * cloud.tall, dy));
    }
    return result;
}

/// v 0 is straight down, 0.5 the horizon, 1 straight up.
Colour skyColour(float u, float v, const std::vector<Cloud>& heaps, const Palette& palette) {
    const float up = (v - 0.5f) * 2;
    if (up < 0) return mix(rgb(palette.below), rgb(palette.deep), smoothStep(0, 0.16f, -up));
    Colour c = mix(rgb(palette.horizon), rgb(palette.low), smoothStep(0, 0.20f, up));
    c = mix(c, rgb(palette.middle), smoothStep(0.12f, 0.62f, up));
    c = mix(c, rgb(palette.zenith), smoothStep(0.55f, 1.0f, up));
    // Thin veils high up; they end before the zenith, where the texture runs together.
    const float veil = fractalNoise(u * 12, v * 60, 201, 5, 12);
    c = mix(c, rgb(palette.veil),
            0.45f * smoothStep(0.55f, 0.8f, veil) * smoothStep(0.2f, 0.35f, up) *
                smoothStep(0.75f, 0.5f, up));
    for (const Cloud& heap : heaps) c = withCloud(c, heap, u * 360, up * 90, palette);
    return c;
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

void put(Output& out, const std::string& name, const Palette& palette, const Place& place) {
    Canvas picture(kSkyWidth, kSkyHeight);
    const std::vector<Cloud> heaps = clouds(palette.cloudSeed);
    picture.cover(
        [&](float x, float y) { return skyColour(x / kSkyWidth, 1 - y / kSkyHeight, heaps, palette); });
    out.put("env/" + name + "_sky.tga", picture.tga(24));

    Environment e;
    e.light = place.light;
    e.deathHeight = place.deathHeight;
    e.hasWater = true;
    e.waterScale = 0.3f;
    e.waterHeight = 0;
    e.sky2 = {{"sky", "env\\" + name + "_sky.tga", {}, dome()}};
    e.sky1 = {{"far", "", place.farLand, farIslands(place.farCount, 1, place.farTall, 41)},
              {"near", "", place.nearLand, farIslands(5, 0.8f, place.farTall * 0.76f, 42)}};
    e.water = {{"sea", kWaterPicture, {}, sea()}};
    out.put("env/" + name + ".env", environmentFile(e));
}
} // namespace sky

FORGE_RECIPE(picture_water) {
    Canvas water(256, 256);
    water.cover([](float x, float y) { return sky::waterColour(x / 256, y / 256); });
    out.put("env/water.tga", water.tga(32));
}
