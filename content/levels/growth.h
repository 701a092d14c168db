#pragma once
#include "levels/parts.h"

/// What grows in more than one level. Units.
namespace growth {
using forge::Mesh;
using forge::Scenery;
using parts::Height;
using tints::Tint;

/// A ball of leaves: lumpy, flat below. The strokes of its picture hang down from the crown.
Mesh foliage(float radius, uint32_t seed, int segments = 14, int rings = 9);
/// One skirt of a conifer: points droop round its rim. `turn` in radians.
Mesh skirt(float radius, float foot, float tall, float turn, int points = 9);
/// Blades of grass round a place.
Mesh tuft(Height height, float x, float z, uint32_t seed, float tall, int blades);
/// Five petals round a heart, on a stalk.
void addFlower(Scenery& s, Height height, float x, float z, float tall, Tint tint, uint32_t seed);
/// Trees that belong to the fixed geometry, their stems solid. `size` 1 is 4 units tall.
/// `far`: where no camera comes its needles may hang low.
void addPine(Scenery& s, const cVector3& foot, float size, uint32_t seed, bool far = false);
void addOak(Scenery& s, const cVector3& foot, float size, uint32_t seed);
void addBush(Scenery& s, const cVector3& foot, float size, uint32_t seed);
} // namespace growth
