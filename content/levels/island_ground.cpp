#include "levels/island_ground.h"

#include "forge/noise.h"
#include "levels/parts.h"

#include <algorithm>
#include <cmath>

using namespace forge;

namespace island {
namespace {
constexpr float kFlatRadius = 17, kBeachSlope = 0.26f;  // about 15 degrees
constexpr float kShelfRadius = 24, kDeepRadius = 30.5f; // between them the bed falls away
constexpr float kGentle = 0.404f;                       // 22 degrees
constexpr float kCliff = 1.733f;                        // 60 degrees

/// Places that stay level for what stands on them.
constexpr parts::Pad kPads[] = {
    {-7, -8, 7, 7},   // hut and yard
    {6, -8, 20, 5},   // stairs and terrace
    {-15, 5, -8, 12}, // ledge
    {-5, 12, 5, 17},  // ruined wall
    {6, 4, 13, 18},   // ramp
};

float baseHeight(float x, float z) {
    const float r = std::hypot(x, z);
    const float coast = 2.2f * (fractalNoise(x * 0.11f, z * 0.11f, 5, 3) - 0.5f) * smoothStep(15, 22, r);
    const float beach = kMeadow - kBeachSlope * std::max(0.0f, r + coast - kFlatRadius);
    const float bumps = 0.5f * (fractalNoise(x * 0.22f, z * 0.22f, 9, 3) - 0.5f);
    return beach + bumps * smoothStep(0.5f, 3.5f, parts::distanceToPads(kPads, x, z));
}

/// A ramp that rises to the west and breaks off on its other three sides.
float hillHeight(float x, float z) {
    const float rough = 0.7f * (fractalNoise(x * 0.5f, z * 0.5f, 31, 2) - 0.5f);
    const float ramp = kMeadow + kGentle * (-6 - x);
    const float north = kHillTop - kCliff * (-15 - z + rough), south = kHillTop - kCliff * (z + 5 + rough);
    const float west = kHillTop - kCliff * (-20 - x + rough);
    return std::min({kHillTop, ramp, north, south, west});
}
} // namespace

float height(float x, float z) {
    const float border = std::max(std::fabs(x), std::fabs(z));
    if (border >= kHalfSize) return kLowest;
    const float land = std::max(baseHeight(x, z), hillHeight(x, z));
    // The bed falls away all round at the same distance from the coast, so that no straight border shows.
    const float reach = std::hypot(x, z) + 2.5f * (fractalNoise(x * 0.13f, z * 0.13f, 6, 2) - 0.5f);
    return std::max(mix(land, kLowest, smoothStep(kShelfRadius, kDeepRadius, reach)), kLowest);
}

float path(float x, float z) {
    constexpr parts::Stretch kPath[] = {
        {0, -4, 0, -8, 1.3f},    {0, -8, 7, -6, 1.1f}, {7, -6, 7.5f, 0, 1.1f},  {0, -8, -6, -10, 1.1f},
        {-6, -10, -17, -10, 1},  {7, -2, 6, 10, 1},    {6, 10, 4.9f, 13.2f, 1}, {4.9f, 13.2f, 4.9f, 15.1f, 1},
        {4.9f, 15.1f, 0, 21, 1}, {6, 10, 9.5f, 17, 1}, {-6, -9, -9, 3, 0.9f}};
    return parts::trodden(kPath, x, z);
}
} // namespace island
