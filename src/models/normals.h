#pragma once
#include "core/equal_positions.h"
#include "models/mesh.h"

#include <span>

/// Smooth normals, one a vertex: the normalised sum of the (area-weighted) normals of every face with a
/// corner at exactly the vertex's position, so that coincident vertices share one. A vertex without a face
/// gets (0, 0, 0). Every index of `faces` must lie inside `positions`.
std::vector<cVector3> smoothNormals(std::span<const cVector3> positions,
                                    const std::vector<FaceIndices>& faces);
/// The same for one frame of many: appends to `normals`; `equal` is scratch.
void appendSmoothNormals(std::span<const cVector3> positions, const std::vector<FaceIndices>& faces,
                         cEqualPositions& equal, std::vector<cVector3>& normals);
