#include "game/sweep.h"

#include <cmath>

namespace {
constexpr float kParallelToPlane = 0.0001f;
constexpr float kShortestFraction = 0.1f; ///< shorter partial moves are not made
constexpr float kBackStep = 0.001f;   ///< how far before its end the penetration of an edge is measured again
constexpr float kEdgeSlack = 0.05f;   ///< radius added when an edge contact is confirmed
constexpr float kVertexSlack = 1.05f; ///< factor on the squared radius

int sign(float v) {
    return v > 0 ? 1 : v < 0 ? -1 : 0;
}

cCapsule movedBy(const cCapsule& k, const cMove& m, float fraction) {
    return k.moved(m.p0 * fraction, m.p1 * fraction);
}

/// Contact times of one triangle, the smallest so far in `best`.
struct TriangleSweep {
    const cCapsule& k;
    const cMove& m;
    const float f;
    const cVector3 (&v)[3];
    const cPlane plane;
    cVector3& normal;
    float best;
    bool considered = false;

    const cVector3& point(int end) const { return end == 0 ? k.p0 : k.p1; }
    const cVector3& displacement(int end) const { return end == 0 ? m.p0 : m.p1; }
    void accept(float t) {
        best = t;
        normal = plane.n;
    }

    void faces() {
        for (int end = 0; end < 2; ++end) {
            const cVector3 &p = point(end), &d = displacement(end);
            const float vn = plane.n.dot(d);
            if (!(std::fabs(vn) > kParallelToPlane)) continue;
            const float t = (k.radius - plane.distance(p)) / vn;
            if (!(0 <= t && t < best)) continue;
            considered = true;
            const bool approaching = std::fabs(plane.distance(p + d)) < std::fabs(plane.distance(p));
            if (approaching && pointInTriangle(p + d * t - plane.n * k.radius, v[0], v[1], v[2])) accept(t);
        }
    }

    /// Where the capsule came through the edge, from its penetration at two moments.
    void edgePenetration(const cSegment& e, float distanceSqA) {
        const cCapsule b = movedBy(k, m, (1 - kBackStep) * f);
        const float penA = k.radius - std::sqrt(distanceSqA);
        const float penB = k.radius - std::sqrt(segmentDistanceSq(b, e));
        const float t = f - penA / (penA - penB) * kBackStep * f;
        if (!(t < best)) return;
        cCapsule there = movedBy(k, m, t);
        there.radius += kEdgeSlack;
        if (capsuleTouchesSegment(there, e)) accept(t);
    }

    /// An end point's path against the cylinder around the edge's line.
    void edgeCylinder(const cSegment& e, const cCapsule& a, int end) {
        const cVector3 w = point(end) - e.p0;
        const cVector3 d = (end == 0 ? a.p0 : a.p1) - point(end);
        const float ed = e.dir.dot(d), ew = e.dir.dot(w);
        const float qa = d.dot(d) - ed * ed;
        const float qb = (d.dot(w) - ew * ed) / qa;
        const float qc = (w.dot(w) - ew * ew - k.radius * k.radius) / qa;
        const float t = (-qb - std::sqrt(qb * qb - qc)) * f;
        if (!(t < best)) return;
        const cVector3 hit = point(end) + displacement(end) * t;
        if ((closestPointOnSegment(e, hit) - hit).lengthSq() < kVertexSlack * k.radius * k.radius) accept(t);
    }

    void vertexSphere(const cVector3& centre, int end) {
        const cVector3 &o = point(end), &d = displacement(end);
        const float dd = d.dot(d);
        const float b = (o.dot(d) - centre.dot(d)) / dd;
        const float c = ((o - centre).lengthSq() - k.radius * k.radius) / dd;
        const float t = -b - std::sqrt(b * b - c);
        if (0 <= t && t < best) accept(t);
    }

    void edges(const cCapsule& a) {
        for (int i = 0; i < 3; ++i) {
            const cSegment e(v[i], v[(i + 1) % 3]);
            const float distanceSq = segmentDistanceSq(a, e);
            if (!(distanceSq < k.radius * k.radius)) continue;
            edgePenetration(e, distanceSq);
            for (int end = 0; end < 2; ++end) edgeCylinder(e, a, end);
            for (int end = 0; end < 2; ++end) vertexSphere(v[i], end);
        }
    }
};

/// Around the whole move, as far as any test reaches.
cBox reachOf(const cCapsule& k, const cMove& m) {
    cBox box = cBox::around(k.p0, k.p1, k.radius + kEdgeSlack);
    const cBox end = cBox::around(k.p0 + m.p0, k.p1 + m.p1, k.radius + kEdgeSlack);
    box.add(end.low);
    box.add(end.high);
    return box;
}

/// 0 no contact, 1 face, 2 edge.
int staticContact(const cCapsule& k, const cVector3 (&v)[3]) {
    const cPlane plane(v[0], v[1], v[2]);
    const float d0 = plane.distance(k.p0), d1 = plane.distance(k.p1);
    cVector3 foot;
    if (d0 * d1 < 0) {
        foot = lerp(k.p0, k.p1, d0 / (d0 - d1));
    } else if (std::fabs(d0) < k.radius) {
        foot = k.p0 - plane.n * d0;
    } else if (std::fabs(d1) < k.radius) {
        foot = k.p1 - plane.n * d1;
    } else {
        return 0;
    }
    if (pointInTriangle(foot, v[0], v[1], v[2])) return 1;
    for (int i = 0; i < 3; ++i) {
        if (segmentDistanceSq(k, cSegment(v[i], v[(i + 1) % 3])) < k.radius * k.radius) return 2;
    }
    return 0;
}

bool sphereTouchesTriangle(const cVector3& c, float r, const cVector3 (&v)[3]) {
    const cPlane plane(v[0], v[1], v[2]);
    const float d = plane.distance(c);
    if (std::fabs(d) <= r && pointInTriangle(c - plane.n * d, v[0], v[1], v[2])) return true;
    for (int i = 0; i < 3; ++i) {
        const cSegment edge(v[i], v[(i + 1) % 3]);
        if ((closestPointOnSegment(edge, c) - c).lengthSq() < r * r) return true;
    }
    return false;
}

/// Calls `test` with the triangles near the box until it answers true.
template <typename Test> bool anyTriangle(const MeshList& meshes, const cBox& box, const Test& test) {
    for (const cModel* mesh : meshes) {
        for (const cModelObject& object : mesh->objects) {
            const bool none =
                object.eachFaceNear(box, [&](const cVector3& a, const cVector3& b, const cVector3& c) {
                    return !test({a, b, c});
                });
            if (!none) return true;
        }
    }
    return false;
}
} // namespace

float sweepTriangle(const cCapsule& k, const cMove& m, float f, const cVector3 (&v)[3], cVector3& normal) {
    TriangleSweep sweep{k, m, f, v, cPlane(v[0], v[1], v[2]), normal, f};
    sweep.faces();
    const cCapsule a = movedBy(k, m, f);
    if (!sweep.considered) {
        const float d0 = sweep.plane.distance(a.p0), d1 = sweep.plane.distance(a.p1);
        if (sign(d0) == sign(d1) && std::fabs(d0) > k.radius && std::fabs(d1) > k.radius) return f;
    }
    sweep.edges(a);
    if (std::isnan(sweep.best) || std::fabs(sweep.best) > f) return 0;
    return sweep.best;
}

float sweepMeshes(const cCapsule& capsule, const cMove& move, const MeshList& meshes, cVector3& normal) {
    float f = 1;
    const bool goesOn = !anyTriangle(meshes, reachOf(capsule, move), [&](const cVector3(&v)[3]) {
        f = sweepTriangle(capsule, move, f, v, normal);
        return f < kShortestFraction;
    });
    return goesOn ? f : 0;
}

bool overlapsMeshes(const cCapsule& capsule, const MeshList& meshes) {
    return anyTriangle(meshes, reachOf(capsule, {}),
                       [&](const cVector3(&v)[3]) { return staticContact(capsule, v) != 0; });
}

bool sphereTouchesMeshes(const cVector3& centre, float radius, const MeshList& meshes) {
    return anyTriangle(meshes, cBox::around(centre, centre, radius + kEdgeSlack),
                       [&](const cVector3(&v)[3]) { return sphereTouchesTriangle(centre, radius, v); });
}

bool capsuleTouchesSegment(const cCapsule& capsule, const cSegment& segment) {
    return segmentDistanceSq(capsule, segment) <= capsule.radius * capsule.radius;
}
