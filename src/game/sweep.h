#pragma once
#include "core/geometry.h"
#include "models/model.h"
#include "world/collision_body.h"

#include <vector>

/// Capsule against triangle meshes. Everything is a fraction of the move. The order of meshes, objects and
/// faces decides which contact is reported last, and with it what can be climbed: it is game data.
using MeshList = std::vector<const cModel*>;

/// Allowed fraction 0 … 1 of the move. Fractions below a tenth count as none. `normal` receives the plane
/// normal of the last accepted contact and is untouched without one.
float sweepMeshes(const cCapsule& capsule, const cMove& move, const MeshList& meshes, cVector3& normal);
/// One triangle; `fraction` is what earlier triangles left.
float sweepTriangle(const cCapsule& capsule, const cMove& move, float fraction, const cVector3 (&corners)[3],
                    cVector3& normal);
/// The capsule where it stands.
bool overlapsMeshes(const cCapsule& capsule, const MeshList& meshes);
bool sphereTouchesMeshes(const cVector3& centre, float radius, const MeshList& meshes);
/// The segment comes within the capsule's radius of its axis.
bool capsuleTouchesSegment(const cCapsule& capsule, const cSegment& segment);
