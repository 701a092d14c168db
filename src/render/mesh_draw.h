#pragma once
#include "models/mesh.h"

#include <span>

/// Height range of a level's ground fog, world units. Baked into display lists where they are compiled.
struct cVolumetricFog {
    bool enabled = false;
    float fogLow = 0, fogHigh = 0;

    bool operator==(const cVolumetricFog&) const = default;
};

/// 0 at or above fogHigh; below it (y − fogLow) / (fogHigh − fogLow).
float fogCoordinate(float y, const cVolumetricFog& fog);

/// Cel ramp coordinate a vertex: normal · light, negative values 0. `light` is a unit direction towards the
/// light when `directional`, else a position in the mesh's space. A vertex without normal gets 0.
void computeShade(std::span<const cVector3> positions, std::span<const cVector3> normals,
                  const cVector3& light, bool directional, std::vector<float>& shade);

/// Drawing of meshes with the current matrices. Each call sets texturing, colour and texture for its own
/// material; without a GL context nothing happens. Meshes whose texture coordinates are not aligned with
/// their positions are sent corner by corner where the others go as arrays. Where multitexture is missing the
/// first texture is drawn.
namespace meshDraw {
/// One glDrawElements without normals.
void draw(const cModelObject& object);
/// One glBegin block with normals, for display lists.
void drawImmediate(const cModelObject& object);
/// The same with the second texture and fog coordinates; mode 2 only, other objects as drawImmediate.
void drawImmediateTwoTextures(const cModelObject& object, const cVolumetricFog& fog);
/// As draw, with the second texture added on top.
void drawTwoTextures(const cModelObject& object);
/// Shaded through the 16-texel `ramp` (GL name of a 1D texture). `recompute` when light or object have moved.
void drawCel(cModelObject& object, const cVector3& light, bool directional, uint32_t ramp, bool recompute);

/// An animated mesh from posed positions, verticesPerFrame of them; its front faces are clockwise.
void drawPosed(const cAnimMesh& mesh, std::span<const cVector3> positions);
void drawCelPosed(const cAnimMesh& mesh, std::span<const cVector3> positions,
                  std::span<const cVector3> normals, const cVector3& light, bool directional, uint32_t ramp);

/// All objects of a model, in order.
void draw(const std::vector<cModelObject>& objects);
void drawImmediate(const std::vector<cModelObject>& objects);
void drawImmediateTwoTextures(const std::vector<cModelObject>& objects, const cVolumetricFog& fog);
void drawTwoTextures(const std::vector<cModelObject>& objects);
void drawCel(std::vector<cModelObject>& objects, const cVector3& light, bool directional, uint32_t ramp,
             bool recompute);
} // namespace meshDraw
