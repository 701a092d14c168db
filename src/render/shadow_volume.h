#pragma once
#include "models/mesh.h"

#include <span>

/// Stencil shadow volumes. The world's pass: glEnable(GL_BLEND), begin, every object's volume, second, every
/// volume again, end, glDisable(GL_BLEND). Needs a stencil buffer cleared to 0. Without a GL context nothing
/// is drawn.
namespace shadowVolume {
/// How far silhouettes are extruded, times the distance from the light.
constexpr float kExtrusion = 100.0f;

/// For each edge (corner k to the next) the first other face with corners at both ends' exact positions, else
/// the face count. Linear in the number of faces; an animated mesh is taken in its first frame.
void computeNeighbours(cModelObject& object);
void computeFacePlanes(cModelObject& object);
/// Face f is lit when the light (a position in the mesh's space) lies on or before its plane. Computes
/// missing planes.
void computeLitFaces(cModelObject& object, const cVector3& light);
/// The same into an array of the caller's, for meshes that several objects share; needs planes.
void computeLitFaces(const cModelObject& object, const cVector3& light, std::vector<uint8_t>& lit);

/// Appends four corners (b, a, a', b') for every silhouette edge a → b; the quads face outwards. Needs
/// neighbours, else appends nothing. `positions` holds the mesh's vertices, posed or its own.
void silhouetteQuads(const cModelObject& object, std::span<const cVector3> positions,
                     const std::vector<uint8_t>& lit, const cVector3& light, std::vector<cVector3>& quads);

/// Volume of a static object from its own lit faces; computes missing neighbours.
void draw(cModelObject& object, const cVector3& light);
/// Volume of a shared or posed mesh.
void draw(const cModelObject& object, std::span<const cVector3> positions, const std::vector<uint8_t>& lit,
          const cVector3& light);

// All objects of a model.
void prepare(std::vector<cModelObject>& objects); ///< neighbours and planes
void computeLitFaces(std::vector<cModelObject>& objects, const cVector3& light);
void draw(std::vector<cModelObject>& objects, const cVector3& light);

// Global GL state of the pass; begin pushes what end restores.
void begin();  ///< near sides count up
void second(); ///< far sides count down
void end();    ///< darkens every pixel whose stencil value is not 0
} // namespace shadowVolume
