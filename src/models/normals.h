#pragma once
#include "models/mesh.h"

#include <span>

/// Smooth normals, one a vertex: the normalised sum of the (area-weighted) normals of every face with a
/// corner at exactly the vertex's position, so that coincident vertices share one. A vertex without a face
/// gets (0, 0, 0). Every index of `faces` must lie inside `positions`.
std::vector<cVector3> smoothNormals(std::span<const cVector3> positions,
                                    const std::vector<FaceIndices>& faces);
