#include "levels/deepwood_ground.h"

#include "forge/noise.h"
#include "levels/parts.h"

#include <algorithm>
#include <cmath>

using namespace forge;

namespace deepwood {
namespace {
constexpr float kCliff = 1.6f;                      // 58 degrees
constexpr float kValley = 27, kGorge = 4.2f;        // half widths
constexpr float kGorgeStart = -20, kGorgeEnd = -31; // z
constexpr float kShore = 25, kBeachSlope = 0.24f;   // where the beach starts to fall
constexpr float kShelf = 33, kDeep = 39.5f;
constexpr float kWallEnd = 31; // z at which the valley's walls begin to sink into the sea
constexpr float kBank = 1.9f, kBedHalf = 1.5f, kBed = -2.6f; // 62 degrees: nobody climbs out

constexpr parts::Stretch kPath[] = {
    {0, 30, -2.5f, 21, 1.2f}, {-2.5f, 21, 3, 12, 1.2f}, {3, 12, 0, 4, 1.2f},
    {0, 4, 0, -26, 1.2f},     {0, -26, 0, -38, 1.5f},   {0, 4, 8, 1, 1},
    {8, 1, 15, 2.5f, 1},      {0.5f, 5, -8, 8, 0.9f},   {-8, 8, -14.5f, 6.5f, 0.9f}};
/// Clearings: the raiders' camp, the herb woman's hut, the toll, the landing.
constexpr parts::Pad kPads[] = {{14, -3, 24, 8}, {-22, 1, -12, 12}, {-4, -9, 4, -6}, {-4, -21, 4, -18}};

float wallHeight(float x, float z) {
    const float rough = 3.2f * (fractalNoise(x * 0.12f, z * 0.12f, 501, 3) - 0.5f);
    const float width = mix(kValley, kGorge, smoothStep(kGorgeStart, kGorgeEnd, z)) + rough;
    const float top = 11 + 3.6f * fractalNoise(x * 0.1f + 30, z * 0.1f, 502, 2);
    const float crag = 0.9f * (fractalNoise(x * 0.6f, z * 0.6f, 503, 2) - 0.5f);
    const float wall = std::min(kCliff * (std::fabs(x) - width) + crag, top);
    return wall * smoothStep(37.5f, 29, z);
}

/// The gorge ends at a wall of rock.
float endHeight(float x, float z) {
    return kCliff * (-37.5f - z) + 0.6f * (fractalNoise(x * 0.6f, z * 0.6f, 504, 2) - 0.5f);
}
} // namespace

float wallAt(float z, float side, float rise) {
    // Where it has gone into the sea its line goes straight on.
    const float at = std::min(z, kWallEnd);
    float low = 0, high = kHalfSize;
    for (int i = 0; i < 24; ++i) {
        const float middle = (low + high) / 2;
        (wallHeight(side * middle, at) < rise ? low : high) = middle;
    }
    return side * low;
}

float riverAt(float x) {
    return -13 + 1.8f * std::sin(x * 0.13f);
}

float height(float x, float z) {
    if (z >= kHalfSize) return kLowest;
    const float calm =
        std::min(parts::distanceToPads(kPads, x, z), parts::distanceToPath(kPath, x, z) - 0.6f);
    const float bumps = 1.1f * (fractalNoise(x * 0.16f, z * 0.16f, 505, 3) - 0.45f);
    const float coast = 1.8f * (fractalNoise(x * 0.11f, 3, 506, 2) - 0.5f);
    float land =
        kFloor + bumps * smoothStep(0.3f, 3.5f, calm) - kBeachSlope * std::max(0.0f, z + coast - kShore);
    land += std::max(0.0f, wallHeight(x, z));
    land = std::max(land, kFloor + endHeight(x, z));
    const float bank = kBed + kBank * std::max(0.0f, std::fabs(z - riverAt(x)) - kBedHalf);
    land = std::min(land, bank);
    return std::clamp(mix(land, kLowest, smoothStep(kShelf, kDeep, z)), kLowest, 15.0f);
}

float path(float x, float z) {
    return parts::trodden(kPath, x, z);
}

bool isKeptFree(float x, float z, float margin) {
    return parts::distanceToPath(kPath, x, z) < 1.5f + margin ||
           parts::distanceToPads(kPads, x, z) < margin || std::fabs(z - riverAt(x)) < 4.3f + margin ||
           z > 26 - margin;
}

const std::vector<Tree>& trees() {
    static const std::vector<Tree> all = [] {
        constexpr float kSpacing = 3.1f;
        constexpr int kSide = 12;
        std::vector<Tree> list;
        for (int j = -kSide; j <= kSide; ++j)
            for (int i = -kSide; i <= kSide; ++i) {
                const float x = kSpacing * (static_cast<float>(i) + 0.8f * (latticeValue(i, j, 511) - 0.5f)),
                            z = kSpacing * (static_cast<float>(j) + 0.8f * (latticeValue(i, j, 512) - 0.5f));
                if (std::fabs(x) > 38 || z < -38 || isKeptFree(x, z, 0.5f)) continue;
                const float y = height(x, z);
                // Not on the cliffs themselves, and a few glades among the rest.
                const float slope = std::max(std::fabs(height(x + 0.5f, z) - height(x - 0.5f, z)),
                                             std::fabs(height(x, z + 0.5f) - height(x, z - 0.5f)));
                const bool above = y > 7;
                if (slope > 0.8f || y < 1.2f) continue;
                if (!above && latticeValue(i, j, 513) < 0.22f) continue;
                const bool pine = above || fractalNoise(x * 0.09f, z * 0.09f, 514, 2) > 0.5f;
                const float size = above ? 0.8f : 1.05f + 0.5f * latticeValue(i, j, 515);
                list.push_back({x, z, size, pine, static_cast<uint32_t>(2000 + (i + 20) * 64 + j + 20)});
            }
        return list;
    }();
    return all;
}
} // namespace deepwood
