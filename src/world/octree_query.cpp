#include "world/octree.h"

namespace {
constexpr float kBodyReach = 1.5f;     ///< radii around a body in which leaves are wanted
constexpr float kSideRounding = 1e-5f; ///< of a distance from a plane, as a part of the coordinates
constexpr float kTraceBlocked = 0.01f; ///< free fraction that counts as none

bool nearOnEachAxis(const cVector3& p, const cVector3& centre, float reach) {
    const cVector3 d = p - centre;
    return std::fabs(d.x) < reach && std::fabs(d.y) < reach && std::fabs(d.z) < reach;
}

/// A sight line and how much of it is free of the triangles that it has met.
struct Trace {
    const cVector3 start, end;
    const cLineReach reach{start, end};
    const float clear; ///< squared distance from a plane at which no rounding changes the side
    float free = 1;

    Trace(const cVector3& from, const cVector3& to)
        : start(from), end(to), clear(clearDistanceSq(reach.bounds())) {}

    static float clearDistanceSq(const cBox& box) {
        float sum = 0;
        for (const cVector3& p : {box.low, box.high}) sum += std::fabs(p.x) + std::fabs(p.y) + std::fabs(p.z);
        return sum * sum * kSideRounding * kSideRounding;
    }

    /// Both ends lie on one side of the triangle's plane; told without the plane's unit normal. Not asked of
    /// what is no number.
    bool staysOnOneSide(const cVector3& a, const cVector3& b, const cVector3& c) const {
        const cVector3 across = (b - a).cross(c - a);
        const float d0 = across.dot(start - a), d1 = across.dot(end - a);
        const float least = clear * across.lengthSq();
        return d0 * d0 > least && d1 * d1 > least && (d0 > 0) == (d1 > 0);
    }

    void meet(const cVector3& a, const cVector3& b, const cVector3& c) {
        if (staysOnOneSide(a, b, c)) return;
        const cPlane plane(a, b, c);
        const float d0 = plane.distance(start), d1 = plane.distance(end);
        if (d0 * d1 > 0 || d0 == d1) return;
        const float t = d0 / (d0 - d1);
        if (t >= 0 && t < free && pointInTriangle(lerp(start, end, t), a, b, c)) free = t;
    }
};
} // namespace

void cOctree::prepareQueries() {
    queryNodes_.clear();
    if (!root_) return;
    queryNodes_.emplace_back();
    addQueryNode(*root_, 0);
}

void cOctree::addQueryNode(const Node& node, size_t at) {
    const size_t first = queryNodes_.size();
    for (const auto& child : node.children) {
        if (child) queryNodes_.emplace_back();
    }
    queryNodes_[at] = {node.centre, node.size / 2, node.model.get(), static_cast<uint32_t>(first),
                       static_cast<uint32_t>(queryNodes_.size() - first)};
    size_t next = first;
    for (const auto& child : node.children) {
        if (child) addQueryNode(*child, next++);
    }
}

template <typename Test> void cOctree::visit(const QueryNode& node, const Test& test, LeafList& out) const {
    if (!test(node.centre, node.half)) return;
    if (node.model) out.push_back(node.model);
    for (uint32_t k = 0; k < node.childCount; ++k) visit(queryNodes_[node.firstChild + k], test, out);
}

template <typename Test> void cOctree::query(const Test& test, LeafList& out) const {
    out.clear();
    if (!queryNodes_.empty()) visit(queryNodes_.front(), test, out);
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
    Trace trace(start, end);
    for (const cModel* leaf : leaves) {
        for (const cModelObject& object : leaf->objects) {
            object.eachFaceNear(trace.reach, [&](const cVector3& a, const cVector3& b, const cVector3& c) {
                trace.meet(a, b, c);
                return trace.free > kTraceBlocked;
            });
            if (trace.free <= kTraceBlocked) return 0;
        }
    }
    return trace.free;
}
