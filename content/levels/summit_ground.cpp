#include "levels/summit_ground.h"

#include "forge/noise.h"

#include <algorithm>
#include <cmath>

using namespace forge;

namespace summit {
namespace {
constexpr float kTurn = 6.28318531f;
constexpr float kCliff = 1.7f;    // 60 degrees
constexpr float kHalfPath = 2.3f; // units to either side
constexpr float kOutermost = 26, kInwards = 14.5f;
constexpr float kShelf = 29.5f, kDeep = 35.5f, kBeach = 24, kBeachSlope = 0.26f;

/// 0 … 1 of the turn from south by east.
float partAt(float x, float z) {
    const float turn = std::atan2(x, z) / kTurn;
    return turn < 0 ? turn + 1 : turn;
}
float radiusAt(float part) {
    return kOutermost - kInwards * part;
}
float levelAt(float part) {
    return mix(kFoot, kTop, part);
}
} // namespace

cVector3 pathAt(float part) {
    const float r = radiusAt(part), a = part * kTurn;
    return {r * std::sin(a), levelAt(part), r * std::cos(a)};
}

float height(float x, float z) {
    if (std::max(std::fabs(x), std::fabs(z)) >= kHalfSize) return kLowest;
    const float r = std::hypot(x, z), part = partAt(x, z);
    const float from = r - radiusAt(part), level = levelAt(part);
    const float crag = 1.5f * (fractalNoise(x * 0.35f, z * 0.35f, 551, 3) - 0.5f);
    const float shore = 1.4f - kBeachSlope * std::max(0.0f, r + crag - kBeach);
    float land = level;
    if (from < -kHalfPath)
        land = std::min(kTop, level + std::max(0.0f, kCliff * (-from - kHalfPath) +
                                                         crag * smoothStep(0, 2, -from - kHalfPath)));
    if (from > kHalfPath)
        land =
            level - std::max(0.0f, kCliff * (from - kHalfPath) + crag * smoothStep(0, 2, from - kHalfPath));
    // Stones on the flat top, away from where one walks.
    if (land > kTop - 0.01f)
        land += 0.5f * fractalNoise(x * 0.4f, z * 0.4f, 552, 2) * smoothStep(5.5f, 8, r) *
                smoothStep(4, 7, std::fabs(from));
    land = std::max(land, shore);
    const float reach = r + 1.6f * (fractalNoise(x * 0.13f, z * 0.13f, 553, 2) - 0.5f);
    return std::max(mix(land, kLowest, smoothStep(kShelf, kDeep, reach)), kLowest);
}

float path(float x, float z) {
    const float r = std::hypot(x, z), part = partAt(x, z);
    const float wobble = 0.7f * (fractalNoise(x * 0.7f, z * 0.7f, 554, 2) - 0.5f);
    const float trodden = 1 - smoothStep(0.8f, 1.7f, std::fabs(r - radiusAt(part)) + wobble);
    // On the top it goes on to the beacon, and from the landing it comes up the beach.
    const float across = 1 - smoothStep(0.8f, 1.6f, std::fabs(x) + wobble);
    if (z > 0 && r < radiusAt(1) + 1) return std::max(across, part > 0.5f ? trodden : 0.0f);
    if (z > 0 && r > kOutermost) return across;
    return trodden;
}
} // namespace summit
