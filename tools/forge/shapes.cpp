#include "forge/shapes.h"

#include <algorithm>
#include <cmath>

namespace forge {
namespace {
constexpr float kTurn = 6.28318531f;

float radians(float degrees) {
    return degrees * kTurn / 360;
}

template <typename F> Mesh transformed(const Mesh& mesh, F f) {
    Mesh result = mesh;
    for (cVector3& p : result.positions) p = f(p);
    return result;
}
} // namespace

uint32_t Mesh::addVertex(const cVector3& p, float u, float v) {
    positions.push_back(p);
    texCoords.push_back({u, v});
    return static_cast<uint32_t>(positions.size() - 1);
}

void Mesh::addTriangle(uint32_t a, uint32_t b, uint32_t c) {
    const cVector3 &pa = positions[a], &pb = positions[b], &pc = positions[c];
    // Slivers and faces without area are no use to the collision and have no normal.
    if ((pb - pa).cross(pc - pa).length() > 1e-6f) faces.push_back({a, b, c});
}

void Mesh::addQuad(const cVector3& a, const cVector3& b, const cVector3& c, const cVector3& d, float uSize,
                   float vSize) {
    const uint32_t i = addVertex(a, 0, 0);
    addVertex(b, uSize, 0);
    addVertex(c, uSize, vSize);
    addVertex(d, 0, vSize);
    addTriangle(i, i + 1, i + 2);
    addTriangle(i, i + 2, i + 3);
}

void Mesh::addGrid(uint32_t first, size_t rows, uint32_t columns) {
    for (uint32_t j = 0; j + 1 < rows; ++j)
        for (uint32_t i = 0; i + 1 < columns; ++i) {
            const uint32_t k = first + j * columns + i;
            addTriangle(k, k + 1, k + columns + 1);
            addTriangle(k, k + columns + 1, k + columns);
        }
}

void Mesh::append(const Mesh& other) {
    const auto base = static_cast<uint32_t>(positions.size());
    positions.insert(positions.end(), other.positions.begin(), other.positions.end());
    texCoords.insert(texCoords.end(), other.texCoords.begin(), other.texCoords.end());
    for (const FaceIndices& f : other.faces) faces.push_back({f[0] + base, f[1] + base, f[2] + base});
}

Mesh Mesh::moved(const cVector3& by) const {
    return transformed(*this, [&](const cVector3& p) { return p + by; });
}

Mesh Mesh::scaled(const cVector3& by) const {
    return transformed(*this,
                       [&](const cVector3& p) { return cVector3(p.x * by.x, p.y * by.y, p.z * by.z); });
}

Mesh Mesh::turned(float degrees) const {
    const float c = std::cos(radians(degrees)), s = std::sin(radians(degrees));
    return transformed(
        *this, [=](const cVector3& p) { return cVector3(p.x * c + p.z * s, p.y, p.z * c - p.x * s); });
}

Mesh Mesh::tilted(float degrees) const {
    const float c = std::cos(radians(degrees)), s = std::sin(radians(degrees));
    return transformed(
        *this, [=](const cVector3& p) { return cVector3(p.x, p.y * c - p.z * s, p.z * c + p.y * s); });
}

Mesh Mesh::rolled(float degrees) const {
    const float c = std::cos(radians(degrees)), s = std::sin(radians(degrees));
    return transformed(
        *this, [=](const cVector3& p) { return cVector3(p.x * c - p.y * s, p.y * c + p.x * s, p.z); });
}

Mesh Mesh::insideOut() const {
    Mesh result = *this;
    for (FaceIndices& f : result.faces) std::swap(f[1], f[2]);
    return result;
}

Mesh Mesh::mappedTo(const TexCoord& at) const {
    Mesh result = *this;
    for (TexCoord& t : result.texCoords) t = at;
    return result;
}

Mesh Mesh::mapped(float u0, float v0, float u1, float v1) const {
    Mesh result = *this;
    for (TexCoord& t : result.texCoords) t = {u0 + (u1 - u0) * t.u, v0 + (v1 - v0) * t.v};
    return result;
}

cVector3 Mesh::low() const {
    cVector3 r = positions.empty() ? cVector3() : positions.front();
    for (const cVector3& p : positions)
        for (int k = 0; k < 3; ++k) r[k] = std::min(r[k], p[k]);
    return r;
}

cVector3 Mesh::high() const {
    cVector3 r = positions.empty() ? cVector3() : positions.front();
    for (const cVector3& p : positions)
        for (int k = 0; k < 3; ++k) r[k] = std::max(r[k], p[k]);
    return r;
}

Mesh patch(const cVector3& a, const cVector3& b, const cVector3& c, const cVector3& d, int across, int along,
           float uSize, float vSize) {
    Mesh mesh;
    for (int j = 0; j <= along; ++j)
        for (int i = 0; i <= across; ++i) {
            const float s = static_cast<float>(i) / static_cast<float>(across);
            const float t = static_cast<float>(j) / static_cast<float>(along);
            mesh.addVertex(lerp(lerp(a, b, s), lerp(d, c, s), t), s * uSize, t * vSize);
        }
    mesh.addGrid(0, static_cast<size_t>(along + 1), static_cast<uint32_t>(across + 1));
    return mesh;
}

Mesh box(const cVector3& low, const cVector3& high, float repeats, unsigned sides, float maxEdge) {
    const auto pieces = [&](float length) {
        return std::max(1, static_cast<int>(std::ceil(length / maxEdge)));
    };
    const cVector3 size = high - low;
    const auto corner = [&](bool x, bool y, bool z) {
        return cVector3(x ? high.x : low.x, y ? high.y : low.y, z ? high.z : low.z);
    };
    const auto side = [&](const cVector3& a, const cVector3& b, const cVector3& c, const cVector3& d) {
        const float across = (b - a).length(), along = (d - a).length();
        return patch(a, b, c, d, pieces(across), pieces(along), across * repeats, along * repeats);
    };
    Mesh mesh;
    if (size.x <= 0 || size.y <= 0 || size.z <= 0) return mesh;
    if (sides & kTop) mesh.append(side(corner(0, 1, 1), corner(1, 1, 1), corner(1, 1, 0), corner(0, 1, 0)));
    if (sides & kBottom)
        mesh.append(side(corner(0, 0, 0), corner(1, 0, 0), corner(1, 0, 1), corner(0, 0, 1)));
    if (sides & kSouth) mesh.append(side(corner(0, 0, 1), corner(1, 0, 1), corner(1, 1, 1), corner(0, 1, 1)));
    if (sides & kNorth) mesh.append(side(corner(1, 0, 0), corner(0, 0, 0), corner(0, 1, 0), corner(1, 1, 0)));
    if (sides & kEast) mesh.append(side(corner(1, 0, 1), corner(1, 0, 0), corner(1, 1, 0), corner(1, 1, 1)));
    if (sides & kWest) mesh.append(side(corner(0, 0, 0), corner(0, 0, 1), corner(0, 1, 1), corner(0, 1, 0)));
    return mesh;
}

Mesh lathe(const std::vector<std::pair<float, float>>& profile, int segments, float uRepeats,
           float vRepeats) {
    Mesh mesh;
    for (size_t j = 0; j < profile.size(); ++j)
        for (int i = 0; i <= segments; ++i) {
            const float u = static_cast<float>(i) / static_cast<float>(segments);
            // The last column repeats the first exactly: equal positions share their normals.
            const float angle = kTurn * static_cast<float>(i % segments) / static_cast<float>(segments);
            const float v = static_cast<float>(j) / static_cast<float>(profile.size() - 1);
            const float r = profile[j].first;
            mesh.addVertex({r * std::sin(angle), profile[j].second, r * std::cos(angle)}, u * uRepeats,
                           v * vRepeats);
        }
    mesh.addGrid(0, profile.size(), static_cast<uint32_t>(segments + 1));
    return mesh;
}

Mesh ball(float radius, int segments, int rings) {
    std::vector<std::pair<float, float>> profile;
    for (int j = 0; j <= rings; ++j) {
        const float a = kTurn / 2 * static_cast<float>(j) / static_cast<float>(rings);
        profile.emplace_back(j == 0 || j == rings ? 0.0f : radius * std::sin(a), -radius * std::cos(a));
    }
    return lathe(profile, segments);
}

Mesh tube(const std::vector<cVector3>& path, const std::vector<float>& radii, int segments, bool capped) {
    Mesh mesh;
    const auto row = static_cast<uint32_t>(segments + 1);
    const size_t n = path.size();
    for (size_t j = 0; j < n; ++j) {
        const cVector3 ahead = (path[std::min(j + 1, n - 1)] - path[j > 0 ? j - 1 : 0]).normalized();
        const cVector3 helper = std::fabs(ahead.y) < 0.9f ? cVector3(0, 1, 0) : cVector3(0, 0, 1);
        const cVector3 side = ahead.cross(helper).normalized(), other = side.cross(ahead);
        for (int i = 0; i <= segments; ++i) {
            const float angle = kTurn * static_cast<float>(i % segments) / static_cast<float>(segments);
            const cVector3 p = path[j] + (side * std::cos(angle) + other * -std::sin(angle)) * radii[j];
            mesh.addVertex(p, static_cast<float>(i) / static_cast<float>(segments),
                           static_cast<float>(j) / static_cast<float>(n - 1));
        }
    }
    for (uint32_t j = 0; j + 1 < n; ++j)
        for (uint32_t i = 0; i + 1 < row; ++i) {
            const uint32_t k = j * row + i;
            mesh.addTriangle(k, k + row + 1, k + 1);
            mesh.addTriangle(k, k + row, k + row + 1);
        }
    if (!capped) return mesh;
    const uint32_t first = mesh.addVertex(path.front(), 0.5f, 0), last = mesh.addVertex(path.back(), 0.5f, 1);
    const auto top = static_cast<uint32_t>(n - 1) * row;
    for (uint32_t i = 0; i + 1 < row; ++i) {
        mesh.addTriangle(first, i, i + 1);
        mesh.addTriangle(last, top + i + 1, top + i);
    }
    return mesh;
}

Mesh terrain(float x0, float z0, float cell, int cellsX, int cellsZ,
             const std::function<float(float, float)>& height, float repeats) {
    Mesh mesh;
    for (int j = 0; j <= cellsZ; ++j)
        for (int i = 0; i <= cellsX; ++i) {
            const float x = x0 + cell * static_cast<float>(i), z = z0 + cell * static_cast<float>(j);
            mesh.addVertex({x, height(x, z), z}, x * repeats, -z * repeats);
        }
    const auto row = static_cast<uint32_t>(cellsX + 1);
    for (uint32_t j = 0; j < static_cast<uint32_t>(cellsZ); ++j)
        for (uint32_t i = 0; i < static_cast<uint32_t>(cellsX); ++i) {
            const uint32_t k = j * row + i;
            // The diagonal follows the smaller height difference, which keeps ridges and rims smooth.
            const auto& p = mesh.positions;
            const float falling = std::fabs(p[k].y - p[k + row + 1].y),
                        rising = std::fabs(p[k + 1].y - p[k + row].y);
            if (falling <= rising) {
                mesh.addTriangle(k, k + row, k + row + 1);
                mesh.addTriangle(k, k + row + 1, k + 1);
            } else {
                mesh.addTriangle(k, k + row, k + 1);
                mesh.addTriangle(k + 1, k + row, k + row + 1);
            }
        }
    return mesh;
}

Mesh faceted(const Mesh& mesh) {
    Mesh result;
    for (const FaceIndices& f : mesh.faces) {
        uint32_t corners[3];
        for (size_t k = 0; k < 3; ++k)
            corners[k] =
                result.addVertex(mesh.positions[f[k]], mesh.texCoords[f[k]].u, mesh.texCoords[f[k]].v);
        result.addTriangle(corners[0], corners[1], corners[2]);
    }
    return result;
}
} // namespace forge
