#include "render/shadow_volume.h"

#include "core/equal_positions.h"
#include "core/geometry.h"
#include "platform/gl_api.h"

#include <algorithm>
#include <bit>

namespace shadowVolume {
namespace {
constexpr GLubyte kDarkness = 96; ///< alpha of the black laid over shadowed pixels
constexpr GLfloat kQuadDepth = -0.1f;

/// The two lowest faces at an edge are enough: one of them is not the face that asks.
struct EdgeFaces {
    uint32_t first, second;
};

uint64_t edgeKey(uint32_t a, uint32_t b) {
    return a < b ? static_cast<uint64_t>(a) << 32 | b : static_cast<uint64_t>(b) << 32 | a;
}

/// Faces by edge: a hash table with open addressing, never more than half full.
class cEdgeMap {
public:
    cEdgeMap(uint32_t noFace, size_t mostEdges)
        : slots_(std::bit_ceil(mostEdges * 2 + 2), Slot{kFree, {noFace, noFace}}),
          shift_(64 - std::countr_zero(slots_.size())) {}

    void add(uint32_t face, uint32_t a, uint32_t b) {
        if (a == kNoPosition || b == kNoPosition) return;
        Slot& slot = slots_[slotOf(edgeKey(a, b))];
        if (slot.key == kFree) slot = {edgeKey(a, b), {face, slot.faces.second}};
        EdgeFaces& e = slot.faces;
        if (e.first < face && e.second > face) e.second = face;
    }
    /// The lowest other face at the edge, `noFace` without one.
    uint32_t other(uint32_t face, uint32_t a, uint32_t b) const {
        const EdgeFaces& e = slots_[slotOf(edgeKey(a, b))].faces; // a free slot holds no faces
        return e.first != face ? e.first : e.second;
    }

private:
    static constexpr uint64_t kFree = UINT64_MAX; ///< the key of two positions that are no number
    struct Slot {
        uint64_t key;
        EdgeFaces faces;
    };
    size_t slotOf(uint64_t key) const {
        auto at = static_cast<size_t>(key * 0x9E3779B97F4A7C15ull >> shift_);
        while (slots_[at].key != key && slots_[at].key != kFree) at = (at + 1) & (slots_.size() - 1);
        return at;
    }
    std::vector<Slot> slots_;
    int shift_;
};

/// An edge between equal positions.
bool hasEdgeWithoutLength(const std::vector<FaceIndices>& faces, const std::vector<uint32_t>& group) {
    return std::any_of(faces.begin(), faces.end(), [&](const FaceIndices& f) {
        const uint32_t a = group[f[0]], b = group[f[1]], c = group[f[2]];
        return a == b || b == c || c == a;
    });
}
} // namespace

void computeNeighbours(cModelObject& o) {
    size_t used = 0; // an animated mesh has more positions than its faces name
    for (const FaceIndices& f : o.faces)
        used = std::max<size_t>(used, std::max({f[0], f[1], f[2]}) + size_t{1});
    const auto group = firstEqualPositions(std::span<const cVector3>(o.positions).first(used));
    const auto faceCount = static_cast<uint32_t>(o.faces.size());
    const bool points = hasEdgeWithoutLength(o.faces, group);
    cEdgeMap edges(faceCount, size_t{faceCount} * (points ? 6 : 3));
    for (uint32_t f = 0; f < faceCount; ++f) {
        for (size_t k = 0; k < 3; ++k) {
            const uint32_t a = group[o.faces[f][k]];
            edges.add(f, a, group[o.faces[f][(k + 1) % 3]]);
            if (points) edges.add(f, a, a); // such an edge has every face at its point for a neighbour
        }
    }
    o.neighbours.resize(faceCount);
    for (uint32_t f = 0; f < faceCount; ++f) {
        for (size_t k = 0; k < 3; ++k) {
            o.neighbours[f][k] = edges.other(f, group[o.faces[f][k]], group[o.faces[f][(k + 1) % 3]]);
        }
    }
}

void computeFacePlanes(cModelObject& o) {
    o.facePlanes.clear();
    for (const FaceIndices& f : o.faces) {
        const cPlane plane(o.positions[f[0]], o.positions[f[1]], o.positions[f[2]]);
        o.facePlanes.push_back({plane.n, plane.d});
    }
}

void computeLitFaces(const cModelObject& o, const cVector3& light, std::vector<uint8_t>& lit) {
    lit.resize(o.facePlanes.size());
    for (size_t f = 0; f < lit.size(); ++f) {
        lit[f] = o.facePlanes[f].n.dot(light) + o.facePlanes[f].d >= 0.0f ? 1 : 0;
    }
}

void computeLitFaces(cModelObject& o, const cVector3& light) {
    if (o.facePlanes.size() != o.faces.size()) computeFacePlanes(o);
    computeLitFaces(o, light, o.litFaces);
}

void silhouetteQuads(const cModelObject& o, std::span<const cVector3> positions,
                     const std::vector<uint8_t>& lit, const cVector3& light, std::vector<cVector3>& quads) {
    if (o.neighbours.size() != o.faces.size() || lit.size() != o.faces.size()) return;
    const auto extrude = [&](const cVector3& p) { return p + (p - light) * kExtrusion; };
    for (size_t f = 0; f < o.faces.size(); ++f) {
        for (size_t k = 0; lit[f] && k < 3; ++k) {
            const uint32_t neighbour = o.neighbours[f][k];
            if (neighbour < lit.size() && lit[neighbour]) continue;
            const uint32_t i = o.faces[f][k], j = o.faces[f][(k + 1) % 3];
            if (i >= positions.size() || j >= positions.size()) continue;
            const cVector3 &a = positions[i], &b = positions[j];
            quads.insert(quads.end(), {b, a, extrude(a), extrude(b)});
        }
    }
}

void draw(const cModelObject& o, std::span<const cVector3> positions, const std::vector<uint8_t>& lit,
          const cVector3& light) {
    if (!platform::hasGlContext()) return;
    std::vector<cVector3> quads;
    silhouetteQuads(o, positions, lit, light, quads);
    if (quads.empty()) return;
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, sizeof(cVector3), quads.data());
    glDrawArrays(GL_QUADS, 0, static_cast<GLsizei>(quads.size()));
    glDisableClientState(GL_VERTEX_ARRAY);
}

void draw(cModelObject& o, const cVector3& light) {
    if (o.neighbours.size() != o.faces.size()) computeNeighbours(o);
    draw(o, o.positions, o.litFaces, light);
}

void prepare(std::vector<cModelObject>& objects) {
    for (cModelObject& o : objects) {
        computeNeighbours(o);
        computeFacePlanes(o);
    }
}

void computeLitFaces(std::vector<cModelObject>& objects, const cVector3& light) {
    for (cModelObject& o : objects) computeLitFaces(o, light);
}

void draw(std::vector<cModelObject>& objects, const cVector3& light) {
    for (cModelObject& o : objects) draw(o, light);
}

void begin() {
    if (!platform::hasGlContext()) return;
    glPushAttrib(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT | GL_ENABLE_BIT | GL_POLYGON_BIT |
                 GL_STENCIL_BUFFER_BIT);
    glColorMask(GL_FALSE, GL_FALSE, GL_FALSE, GL_FALSE);
    glEnable(GL_STENCIL_TEST);
    glDisable(GL_LIGHTING);
    glDepthMask(GL_FALSE);
    glEnable(GL_CULL_FACE);
    glCullFace(GL_BACK);
    glStencilFunc(GL_ALWAYS, 1, ~0u);
    glStencilOp(GL_KEEP, GL_KEEP, GL_INCR);
}

void second() {
    if (!platform::hasGlContext()) return;
    glCullFace(GL_FRONT);
    glStencilOp(GL_KEEP, GL_KEEP, GL_DECR);
}

void end() {
    if (!platform::hasGlContext()) return;
    glCullFace(GL_BACK);
    glColorMask(GL_TRUE, GL_TRUE, GL_TRUE, GL_TRUE);
    glStencilFunc(GL_NOTEQUAL, 0, ~0u);
    glStencilOp(GL_KEEP, GL_KEEP, GL_KEEP);
    glDisable(GL_CULL_FACE);
    // Nothing but the stencil may decide here: the scene's depth, texture and fog stay out of it.
    glDisable(GL_DEPTH_TEST);
    glDisable(GL_TEXTURE_2D);
    glDisable(GL_FOG);
    // An identity projection: with the scene's own the quad would lie on the near plane, and rounding clip it
    // away.
    glMatrixMode(GL_PROJECTION);
    glPushMatrix();
    glLoadIdentity();
    glMatrixMode(GL_MODELVIEW);
    glPushMatrix();
    glLoadIdentity();
    glColor4ub(0, 0, 0, kDarkness);
    glBegin(GL_QUADS);
    glVertex3f(-1, -1, kQuadDepth);
    glVertex3f(1, -1, kQuadDepth);
    glVertex3f(1, 1, kQuadDepth);
    glVertex3f(-1, 1, kQuadDepth);
    glEnd();
    glColor4ub(255, 255, 255, 255);
    glPopMatrix();
    glMatrixMode(GL_PROJECTION);
    glPopMatrix();
    glMatrixMode(GL_MODELVIEW);
    glPopAttrib();
}
} // namespace shadowVolume
