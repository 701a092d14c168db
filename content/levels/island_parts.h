#pragma once
#include "levels/island_ground.h"
#include "levels/parts.h"

/// What the island is built of, and its parts. Units; see island_ground.h for the land itself.
namespace island {
using namespace parts;

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
