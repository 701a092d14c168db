#pragma once
#include "core/vector3.h"
#include "models/mesh.h"

#include <functional>
#include <string>
#include <vector>

namespace forge {
/// A triangle mesh in system coordinates (y up), one texture coordinate a vertex, faces counter-clockwise
/// seen from outside.
struct Mesh {
    std::vector<cVector3> positions;
    std::vector<TexCoord> texCoords;
    std::vector<FaceIndices> faces;

    uint32_t addVertex(const cVector3& p, float u, float v);
    void addTriangle(uint32_t a, uint32_t b, uint32_t c);
    /// Corners counter-clockwise; texture coordinates (0,0) (uSize,0) (uSize,vSize) (0,vSize).
    void addQuad(const cVector3& a, const cVector3& b, const cVector3& c, const cVector3& d, float uSize = 1,
                 float vSize = 1);
    /// Two triangles a cell between `rows` rows of `columns` vertices each, the first of which is `first`;
    /// counter- clockwise where rows go up and columns to the right.
    void addGrid(uint32_t first, size_t rows, uint32_t columns);
    void append(const Mesh& other);
    Mesh moved(const cVector3& by) const;
    Mesh scaled(const cVector3& by) const;  ///< positive factors
    Mesh turned(float degreesAboutY) const; ///< +x goes towards −z (counter-clockwise from above)
    Mesh tilted(float degreesAboutX) const; ///< +y goes towards +z
    Mesh rolled(float degreesAboutZ) const; ///< +x goes towards +y
    Mesh insideOut() const;
    Mesh mappedTo(const TexCoord& at) const;                   ///< every vertex at one point of the texture
    Mesh mapped(float u0, float v0, float u1, float v1) const; ///< texture square 0..1 into a part of it
    cVector3 low() const;
    cVector3 high() const;
};

/// Faces of a box that are made.
enum BoxSides : unsigned {
    kTop = 1,
    kBottom = 2,
    kEast = 4,
    kWest = 8,
    kNorth = 16,
    kSouth = 32,
    kWalls = kEast | kWest | kNorth | kSouth,
    kAllSides = 63
};
/// Box between two corners; long faces are split so that no edge is longer than `maxEdge`.
Mesh box(const cVector3& low, const cVector3& high, float repeatsPerUnit = 0.5f, unsigned sides = kAllSides,
         float maxEdge = 8);
/// A flat patch of across × along quads over four counter-clockwise corners.
Mesh patch(const cVector3& a, const cVector3& b, const cVector3& c, const cVector3& d, int across, int along,
           float uSize, float vSize);
/// Profile (radius, height) from bottom to top, turned about the y axis. Radius 0 makes a pole.
Mesh lathe(const std::vector<std::pair<float, float>>& profile, int segments, float uRepeats = 1,
           float vRepeats = 1);
Mesh ball(float radius, int segments, int rings);
/// A tube through points with a radius at each.
Mesh tube(const std::vector<cVector3>& path, const std::vector<float>& radii, int segments,
          bool capped = true);
/// Height field over cells of the given size, corner at (x0, z0).
Mesh terrain(float x0, float z0, float cell, int cellsX, int cellsZ,
             const std::function<float(float, float)>& height, float repeatsPerUnit);

/// A mesh with its one material.
struct Part {
    std::string material;
    std::string texture; ///< file name; empty: the plain colour
    cColour4 colour{255, 255, 255, 0};
    Mesh mesh;
};
using Parts = std::vector<Part>;

/// Every face with corners of its own, so that edges stay sharp under smooth normals.
Mesh faceted(const Mesh& mesh);
} // namespace forge
