#pragma once
#include "core/vector3.h"
#include "forge/canvas.h"
#include "forge/output.h"

#include <string>

/// What lies over the detail of a level: the ground's colour, light and shadows as seen from above, and along
/// the picture's lower border, which nothing that one sees may use, the brightness ramp for everything built.
namespace layer {
constexpr float kRampV = 0.0234f; ///< middle of the ramp strip
constexpr float kDarkest = 0.4f;  ///< brightness at the ramp's left end

/// The ground and the unit vector towards the sun.
struct Land {
    float (*height)(float x, float z);
    cVector3 towardsSun;
};
cVector3 normal(const Land& land, float x, float z);
/// 0 … 1: soft shadow of an upright box that stands on level ground. Units.
float boxShadow(const Land& land, float x, float z, float x0, float z0, float x1, float z1, float tall);
/// The same of a tree's round crown whose middle hangs `high` above the ground.
float crownShadow(const Land& land, float x, float z, float treeX, float treeZ, float radius, float high);

/// src_mdl/NAME_layer.tga; `colour` is asked for places within ±halfSize.
void put(forge::Output& out, const std::string& name, float halfSize,
         forge::Colour (*colour)(float x, float z));
} // namespace layer
