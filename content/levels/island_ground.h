#pragma once
#include "core/vector3.h"

/// The shape of the island, shared by its geometry and the picture that colours it. Units; y 0 is the sea.
namespace island {
constexpr float kHalfSize = 32;   ///< the level's box is ±32 in x and z
constexpr float kLowest = -14.9f; ///< sea bed along the border
constexpr float kHighest = 14.9f; ///< tip of the lighthouse
constexpr float kMeadow = 2;      ///< the flat land
constexpr float kHillTop = 6;
/// Towards the sun of the environment file: afternoon, from the south-east.
const cVector3 kTowardsSun = cVector3(220, 300, 300).normalized();

float height(float x, float z);
/// 0 … 1: how much of the trodden path shows at a place.
float path(float x, float z);
} // namespace island
