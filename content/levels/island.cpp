// The first level's fixed geometry, put together from its parts.

#include "forge/recipes.h"
#include "levels/island_parts.h"
#include "levels/standing.h"
#include "pictures/level_layer.h"

using namespace forge;

FORGE_RECIPE(level_island) {
    using namespace island;
    Scenery s;
    constexpr int kCells = 64;
    s.addGround(kGround, terrain(-kHalfSize, -kHalfSize, 1, kCells, kCells, height, 0.25f));
    s.setGround(height);
    addHut(s);
    addHutInside(s);
    addTerrace(s);
    addRuins(s);
    addHarbour(s);
    addLighthouse(s);
    addGarden(s);
    addPlants(s);
    levels::addStanding(s, out, "testlevel.xml");
    s.write(out, "island", kHalfSize,
            {"island_layer.tga", kHalfSize, layer::kRampV, kTowardsSun, layer::kDarkest});
}
