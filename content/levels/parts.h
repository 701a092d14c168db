#pragma once
#include "forge/scenery.h"
#include "pictures/tints.h"

#include <span>

/// What the levels are built of. Units.
namespace parts {
using forge::Mesh;
using forge::Scenery;
using tints::Tint;
using tints::tinted;

const Scenery::Material kGround{"ground", "ground.tga", {}}, kPlaster{"plaster", "plaster.tga", {}},
    kPlanks{"planks", "planks.tga", {}}, kBeams{"beams", "beams.tga", {}}, kStone{"stone", "stone.tga", {}},
    kThatch{"thatch", "thatch.tga", {}}, kCloth{"cloth", "cloth.tga", {}}, kRock{"rock", "rock.tga", {}},
    kTower{"tower", "tower.tga", {}}, kLeaves{"leaves", "leaves.tga", {}},
    kPaleLeaves{"leaves_pale", "leaves_pale.tga", {}}, kNeedles{"needles", "needles.tga", {}},
    /// Small painted and growing things: a picture of 4 × 4 plain colours, see tints.h.
    kTints{"tints", "tints.tga", {}},
    /// The same colours for what gives light: never darkened.
    kGlowing{"glowing", "tints.tga", {}, Scenery::kGlowing},
    /// And for stalks and reeds.
    kStalks{"stalks", "tints.tga", {}, Scenery::kFromAbove},
    /// Blades that take the colour of the ground below them.
    kGrass{"grass", "tints.tga", {}};

/// Height of the ground at (x, z).
using Height = float (*)(float x, float z);

/// A straight piece of a trodden path.
struct Stretch {
    float x0, z0, x1, z1, width;
};
/// 0 … 1: how much of a path shows at a place.
float trodden(std::span<const Stretch> path, float x, float z);
/// Units from a place to the middle of the nearest stretch.
float distanceToPath(std::span<const Stretch> path, float x, float z);

/// Level ground for what stands on it.
struct Pad {
    float x0, z0, x1, z1;
};
float distanceToPads(std::span<const Pad> pads, float x, float z);

/// A square timber from a to b.
Mesh timber(const cVector3& a, const cVector3& b, float width);
Mesh boulder(float size, uint32_t seed);
/// Posts and two rails from one place to another, with a wall that nobody passes.
void addFence(Scenery& s, Height height, float x0, float z0, float x1, float z1);
} // namespace parts
