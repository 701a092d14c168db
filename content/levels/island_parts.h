#pragma once
#include "forge/scenery.h"
#include "levels/island_ground.h"
#include "pictures/tints.h"

/// What the island is built of, and its parts. Units; see island_ground.h for the land itself.
namespace island {
using forge::Mesh;
using forge::Scenery;
using tints::Tint;
using tints::tinted;

const Scenery::Material kGround{"ground", "ground.tga", {}}, kPlaster{"plaster", "plaster.tga", {}},
    kPlanks{"planks", "planks.tga", {}}, kBeams{"beams", "beams.tga", {}}, kStone{"stone", "stone.tga", {}},
    kThatch{"thatch", "thatch.tga", {}}, kCloth{"cloth", "cloth.tga", {}}, kRock{"rock", "rock.tga", {}},
    kTower{"tower", "tower.tga", {}},
    /// Small painted and growing things: a picture of 4 × 4 plain colours, see tints.h.
    kTints{"tints", "tints.tga", {}},
    /// The same colours for what gives light: never darkened.
    kGlowing{"glowing", "tints.tga", {}, Scenery::kGlowing},
    /// And for stalks and reeds.
    kStalks{"stalks", "tints.tga", {}, Scenery::kFromAbove},
    /// Blades that take the colour of the ground below them.
    kGrass{"grass", "tints.tga", {}};

/// A square timber from a to b.
Mesh timber(const cVector3& a, const cVector3& b, float width);
Mesh boulder(float size, uint32_t seed);
/// Nothing may grow where something stands or where people walk.
bool isFree(float x, float z, float margin);

void addHut(Scenery& s);
void addHutInside(Scenery& s);
void addTerrace(Scenery& s);
void addRuins(Scenery& s);
void addHarbour(Scenery& s);
void addLighthouse(Scenery& s);
void addGarden(Scenery& s);
void addPlants(Scenery& s);
} // namespace island
