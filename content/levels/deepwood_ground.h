#pragma once
#include "core/vector3.h"

#include <cstdint>
#include <vector>

/// The shape of the wooded valley, shared by its geometry and the picture that colours it. Units; y 0 is the
/// sea, −z is north, up the valley.
namespace deepwood {
constexpr float kHalfSize = 40;
constexpr float kLowest = -19.4f; ///< sea bed along the southern border
constexpr float kHighest = 19.4f; ///< the tallest crag
constexpr float kFloor = 2;       ///< the valley's ground
/// Towards the sun of the environment file: late light from the south-west.
const cVector3 kTowardsSun = cVector3(-240, 300, 260).normalized();

float height(float x, float z);
/// 0 … 1: how much of the trodden path shows at a place.
float path(float x, float z);
/// The x, on the side −1 or 1 of the valley, at which its wall has risen so far above its foot.
float wallAt(float z, float side, float rise);
/// Middle of the river at x.
float riverAt(float x);

struct Tree {
    float x, z, size;
    bool pine;
    uint32_t seed;
};
const std::vector<Tree>& trees();
/// Nothing may stand here: paths, clearings, the river.
bool isKeptFree(float x, float z, float margin);
} // namespace deepwood
