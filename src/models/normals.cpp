#include "models/normals.h"

void appendSmoothNormals(std::span<const cVector3> positions, const std::vector<FaceIndices>& faces,
                         cEqualPositions& equal, std::vector<cVector3>& all) {
    const std::vector<uint32_t>& group = equal.find(positions);
    all.resize(all.size() + positions.size());
    const std::span<cVector3> normals = std::span(all).last(positions.size());
    // Faces are added in ascending order and once per position: the sums then round as if each vertex had
    // walked over all faces itself.
    for (const FaceIndices& f : faces) {
        const cVector3 n = (positions[f[1]] - positions[f[0]]).cross(positions[f[2]] - positions[f[0]]);
        const uint32_t a = group[f[0]], b = group[f[1]], c = group[f[2]];
        if (a != kNoPosition) normals[a] += n;
        if (b != kNoPosition && b != a) normals[b] += n;
        if (c != kNoPosition && c != a && c != b) normals[c] += n;
    }
    for (size_t i = 0; i < normals.size(); ++i) {
        if (group[i] == i) {
            normals[i] = normals[i].normalized();
        } else if (group[i] != kNoPosition) {
            normals[i] = normals[group[i]]; // its first equal lies before it and is finished
        }
    }
}

std::vector<cVector3> smoothNormals(std::span<const cVector3> positions,
                                    const std::vector<FaceIndices>& faces) {
    cEqualPositions equal;
    std::vector<cVector3> normals;
    appendSmoothNormals(positions, faces, equal, normals);
    return normals;
}
