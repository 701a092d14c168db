#pragma once
#include "core/vector3.h"

/// Two points and their derived axis. World units.
struct cSegment {
    cVector3 p0, p1;
    cVector3 dir;     ///< unit vector from p1 to p0; (0, 0, 0) when the points coincide
    float length = 0; ///< distance between the points

    cSegment() = default;
    cSegment(const cVector3& a, const cVector3& b) : p0(a), p1(b) { update(); }
    /// Recomputes dir and length from the two points.
    void update() {
        const cVector3 d = p0 - p1;
        length = d.length();
        dir = length > 0.0f ? d / length : cVector3{};
    }
};

/// All points within `radius` of the segment; a sphere has p0 = p1.
struct cCapsule : cSegment {
    float radius = 0;

    cCapsule() = default;
    cCapsule(const cVector3& a, const cVector3& b, float r) : cSegment(a, b), radius(r) {}
    cCapsule moved(const cVector3& d0, const cVector3& d1) const {
        cCapsule c = *this;
        c.p0 += d0;
        c.p1 += d1;
        c.update();
        return c;
    }
};

/// n·x + d = 0 with n of unit length; a triangle without area gives n = (0, 0, 0), d = 0.
struct cPlane {
    cVector3 n;
    float d = 0;

    cPlane() = default;
    cPlane(const cVector3& a, const cVector3& b, const cVector3& c)
        : n((b - a).cross(c - a).normalized()), d(-n.dot(a)) {}
    float distance(const cVector3& p) const { return n.dot(p) + d; }
};

/// The point of the segment nearest to p.
cVector3 closestPointOnSegment(const cSegment& s, const cVector3& p);
/// Squared distance between two segments, exact also for parallel and zero-length ones.
float segmentDistanceSq(const cSegment& a, const cSegment& b);
/// True when the angles between p and consecutive corners add up to at least 0.99 of a full turn. An angle
/// that is no number means outside.
bool pointInTriangle(const cVector3& p, const cVector3& a, const cVector3& b, const cVector3& c);
