#include "core/geometry.h"

namespace {
constexpr double kInsideAngle = 6.220353627204895; ///< 0.99 × 2π in single precision
constexpr float kParallel = 0.00001f;              ///< 1 − cos² below which two axes count as parallel

/// Clamped to the segment's parameter range, measured from p1 towards p0.
float clampToLength(float t, float length) {
    return t < 0 ? 0 : t > length ? length : t;
}
} // namespace

cVector3 closestPointOnSegment(const cSegment& s, const cVector3& p) {
    return s.p1 + s.dir * clampToLength(s.dir.dot(p - s.p1), s.length);
}

// Ericson, Real-Time Collision Detection, 5.1.9, with unit directions.
float segmentDistanceSq(const cSegment& a, const cSegment& b) {
    const cVector3 between = a.p1 - b.p1;
    const float cosine = a.dir.dot(b.dir);
    const float alongA = a.dir.dot(between), alongB = b.dir.dot(between);
    const float denominator = 1 - cosine * cosine;
    float s = 0;
    if (a.length > 0 && b.length > 0 && denominator >= kParallel) {
        s = clampToLength((cosine * alongB - alongA) / denominator, a.length);
    }
    float t = cosine * s + alongB;
    const float tClamped = clampToLength(t, b.length);
    if (tClamped != t || denominator < kParallel || a.length == 0 || b.length == 0) {
        s = clampToLength(cosine * tClamped - alongA, a.length);
        t = clampToLength(cosine * s + alongB, b.length);
    }
    return (between + a.dir * s - b.dir * t).lengthSq();
}

bool pointInTriangle(const cVector3& p, const cVector3& a, const cVector3& b, const cVector3& c) {
    const cVector3 toA = (a - p).normalized(), toB = (b - p).normalized(), toC = (c - p).normalized();
    // No clamping: an angle that is no number fails the comparison, and the point counts as outside.
    const float sum = std::acos(toA.dot(toB)) + std::acos(toB.dot(toC)) + std::acos(toC.dot(toA));
    return static_cast<double>(sum) >= kInsideAngle;
}
