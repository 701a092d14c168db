#pragma once
#include "core/vector3.h"

/// The beacon's mountain, shared by its geometry and the picture that colours it: one path winds up round it,
/// from the landing in the south by east, north and west to the flat top. Units; y 0 is the sea.
namespace summit {
constexpr float kHalfSize = 36;
constexpr float kLowest = -25.6f; ///< sea bed along the border
constexpr float kHighest = 25.6f; ///< tip of the horn
constexpr float kTop = 15;        ///< the flat top
constexpr float kFoot = 2;        ///< where the path begins
/// Towards the sun of the environment file: low in the west.
const cVector3 kTowardsSun = cVector3(-300, 240, 160).normalized();

float height(float x, float z);
/// 0 … 1: how much of the trodden path shows at a place.
float path(float x, float z);
/// Middle of the path after a part 0 … 1 of the way, on the ground.
cVector3 pathAt(float part);
} // namespace summit
