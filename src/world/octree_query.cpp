#include "world/octree.h"

namespace {
constexpr float kBodyReach = 1.5f;     ///< radii around a body in which leaves are wanted
constexpr float kTraceBlocked = 0.01f; ///< free fraction that counts as none

using Node = cOctree::Node;

template <typename Test> void visit(const Node& node, const Test& test, cOctree::LeafList& out) {
    if (!test(node.centre, node.size / 2)) return;
    if (node.model) out.push_back(node.model.get());
    for (const auto& child : node.children) {
        if (child) visit(*child, test, out);
    }
}

bool nearOnEachAxis(const cVector3& p, const cVector3& centre, float reach) {
    const cVector3 d = p - centre;
    return std::fabs(d.x) < reach && std::fabs(d.y) < reach && std::fabs(d.z) < reach;
}

/// Fraction of the way from start to end at which the triangle is crossed; 1 when it is not.
float crossing(const cVector3& start, const cVector3& end, const cVector3& a, const cVector3& b,
               const cVector3& c) {
    const cPlane plane(a, b, c);
    const float d0 = plane.distance(start), d1 = plane.distance(end);
    if (d0 * d1 > 0 || d0 == d1) return 1;
    const float t = d0 / (d0 - d1);
    if (!(t >= 0 && t < 1)) return 1;
    return pointInTriangle(lerp(start, end, t), a, b, c) ? t : 1;
}
} // namespace

template <typename Test> void cOctree::query(const Test& test, LeafList& out) const {
    out.clear();
    if (root_) visit(*root_, test, out);
    lastTrace_ = static_cast<int32_t>(out.size());
}

void cOctree::queryBodies(const cCapsule& a, const cCapsule& b, LeafList& out) const {
    query(
        [&](const cVector3& centre, float half) {
            return nearOnEachAxis(closestPointOnSegment(a, centre), centre, half + kBodyReach * a.radius) ||
                   nearOnEachAxis(closestPointOnSegment(b, centre), centre, half + kBodyReach * b.radius);
        },
        out);
}

void cOctree::querySphere(const cVector3& sphereCentre, float radius, LeafList& out) const {
    query([&](const cVector3& centre,
              float half) { return nearOnEachAxis(sphereCentre, centre, half + radius); },
          out);
}

void cOctree::querySegment(const cSegment& s, LeafList& out) const {
    const cVector3 middle = (s.p0 + s.p1) / 2;
    const cVector3 d(std::fabs(s.dir.x), std::fabs(s.dir.y), std::fabs(s.dir.z));
    const float l = s.length / 2;
    query(
        [&](const cVector3& centre, float h) {
            const cVector3 m = middle - centre;
            if (std::fabs(m.x) > d.x * l + h || std::fabs(m.y) > d.y * l + h || std::fabs(m.z) > d.z * l + h)
                return false;
            const cVector3 c = m.cross(s.dir);
            return std::fabs(c.x) <= h * (d.y + d.z) && std::fabs(c.y) <= h * (d.x + d.z) &&
                   std::fabs(c.z) <= h * (d.x + d.y);
        },
        out);
}

float cOctree::trace(const cVector3& start, const cVector3& end) const {
    LeafList leaves;
    querySegment(cSegment(start, end), leaves);
    float free = 1;
    for (const cModel* leaf : leaves) {
        for (const cModelObject& object : leaf->objects) {
            for (const FaceIndices& f : object.faces) {
                const float t = crossing(start, end, object.positions[f[0]], object.positions[f[1]],
                                         object.positions[f[2]]);
                if (t < free) free = t;
                if (free <= kTraceBlocked) return 0;
            }
        }
    }
    return free;
}
