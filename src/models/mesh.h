#pragma once
#include "core/face_boxes.h"
#include "core/vector3.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <vector>

/// Plain mesh records: filled by the readers of models/, drawn by render/.

struct TexCoord {
    float u = 0, v = 0;
};
using FaceIndices = std::array<uint32_t, 3>;

/// Whether every index is below `count`.
inline bool liesWithin(const std::vector<FaceIndices>& faces, size_t count) {
    return std::all_of(faces.begin(), faces.end(), [count](const FaceIndices& f) {
        return f[0] < count && f[1] < count && f[2] < count;
    });
}

constexpr int32_t kNoTexture = -1;     ///< a texture handle that means none
constexpr int32_t kTextureFailed = -2; ///< failed, not to be tried again

enum MaterialMode : uint8_t { kModeColour = 0, kModeTexture = 1, kModeTwoTextures = 2 };

/// Red, green, blue and a spare byte. With two textures r and g hold the second texture's name, low byte
/// first.
struct cColour4 {
    uint8_t r = 255, g = 255, b = 255, spare = 0;
    bool operator==(const cColour4&) const = default;
};

/// One indexed triangle mesh with one material. Counts are the arrays' own lengths. Readers guarantee that
/// position indices lie inside `positions` and that the other index arrays are as long as `faces`, with
/// indices inside their arrays unless those are empty.
struct cModelObject {
    cColour4 colour;
    int32_t texture = kNoTexture; ///< GL texture name
    uint8_t mode = kModeColour;   ///< as read: values above 2 are kept
    std::vector<cVector3> positions;
    /// Modes 0 and 1: one normal a vertex, or empty. Mode 2: the second texture's coordinates (u, v, 0).
    std::vector<cVector3> vectors;
    std::vector<TexCoord> texCoords;
    std::vector<FaceIndices> faces;         ///< position indices
    std::vector<FaceIndices> faceTexCoords; ///< texture coordinate indices
    std::vector<FaceIndices> faceSecond;    ///< indices into `vectors`; empty unless mode 2

    // Filled by drawing (render/shadow_volume.h, render/mesh_draw.h).
    struct Plane {
        cVector3 n;
        float d = 0;
    };
    std::vector<float> shade; ///< cel ramp coordinate of each vertex
    /// Face across the edge from corner k to k + 1; faceCount() when none.
    std::vector<FaceIndices> neighbours;
    std::vector<Plane> facePlanes;
    std::vector<uint8_t> litFaces;
    cFaceBoxes faceBoxes; ///< filled in the leaves of octrees

    int32_t vertexCount() const { return static_cast<int32_t>(positions.size()); }
    int32_t faceCount() const { return static_cast<int32_t>(faces.size()); }
    int32_t texCoordCount() const { return static_cast<int32_t>(texCoords.size()); }
    /// Normals that can be used: modes 0 and 1 with one a vertex.
    bool hasNormals() const { return mode < kModeTwoTextures && vectors.size() == positions.size(); }
    int32_t secondTexture() const { return colour.r + 256 * colour.g; }
    /// Calls visit(corner, corner, corner) in the faces' order for those that can touch the shape (cBox,
    /// cLineReach), for all without `faceBoxes`, until it answers false. False when it did.
    template <typename Shape, typename Visit>
    bool eachFaceNear(const Shape& shape, const Visit& visit) const {
        const auto visitFace = [&](size_t f) {
            return visit(positions[faces[f][0]], positions[faces[f][1]], positions[faces[f][2]]);
        };
        if (faceBoxes.count() == faces.size()) return faceBoxes.eachTouching(shape, visitFace);
        for (size_t f = 0; f < faces.size(); ++f) {
            if (!visitFace(f)) return false;
        }
        return true;
    }
    /// And the mode that shows it; negative: the plain colour.
    void setTexture(int32_t name) {
        texture = name;
        mode = name >= 0 ? kModeTexture : kModeColour;
    }
    void setSecondTexture(int32_t name) {
        colour.r = static_cast<uint8_t>(name % 256);
        colour.g = static_cast<uint8_t>(name / 256);
    }
};

/// A mesh whose positions and normals are stored for every frame, frame-major: frame f occupies entries
/// f · verticesPerFrame onwards. Front faces are clockwise.
struct cAnimMesh : cModelObject {
    std::vector<cVector3> frameNormals; ///< laid out like positions
    int32_t verticesPerFrame = 0;
};
