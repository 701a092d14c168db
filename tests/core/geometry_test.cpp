#include "core/geometry.h"

#include <gtest/gtest.h>
#include <random>

namespace {
struct Point {
    double x, y, z;
};
Point along(const cSegment& s, double t) {
    return {s.p0.x + (double(s.p1.x) - s.p0.x) * t, s.p0.y + (double(s.p1.y) - s.p0.y) * t,
            s.p0.z + (double(s.p1.z) - s.p0.z) * t};
}
double squared(const Point& a, const Point& b) {
    return (a.x - b.x) * (a.x - b.x) + (a.y - b.y) * (a.y - b.y) + (a.z - b.z) * (a.z - b.z);
}
template <typename Function> double least(Function f) {
    double low = 0, high = 1;
    for (int i = 0; i < 80; ++i) {
        const double a = low + (high - low) / 3, b = high - (high - low) / 3;
        (f(a) < f(b) ? high : low) = f(a) < f(b) ? b : a;
    }
    return f((low + high) / 2);
}
/// The distance is convex in both parameters: searched in doubles.
double searchedDistance(const cSegment& a, const cSegment& b) {
    return std::sqrt(
        least([&](double s) { return least([&](double t) { return squared(along(a, s), along(b, t)); }); }));
}
} // namespace

TEST(SegmentDistance, EqualsASearchForAnyTwoSegments) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> coordinate(-5, 5), tiny(-0.01f, 0.01f);
    const auto point = [&] { return cVector3(coordinate(random), coordinate(random), coordinate(random)); };
    for (int i = 0; i < 3000; ++i) {
        cSegment a(point(), point()), b(point(), point());
        switch (i % 7) {
        case 1:
            b = cSegment(b.p0, b.p0 + (a.p1 - a.p0) * coordinate(random));
            break; // parallel
        case 2:
            b = cSegment(b.p0, b.p0);
            break;
        case 3:
            a = cSegment(a.p0, a.p0), b = cSegment(b.p0, b.p0);
            break;
        case 4:
            b = cSegment(lerp(a.p0, a.p1, 0.3f) + point() * 0.3f, lerp(a.p0, a.p1, 0.6f));
            break;
        case 5: // nearly parallel
            b = cSegment(a.p0 + point() * 0.2f, a.p1 + cVector3(tiny(random), tiny(random), tiny(random)));
            break;
        case 6: // in one line, apart or overlapping
            b = cSegment(lerp(a.p0, a.p1, coordinate(random)), lerp(a.p0, a.p1, coordinate(random)));
            break;
        default:
            break;
        }
        EXPECT_NEAR(std::sqrt(segmentDistanceSq(a, b)), searchedDistance(a, b), 2e-3) << i;
        EXPECT_NEAR(std::sqrt(segmentDistanceSq(b, a)), searchedDistance(a, b), 2e-3) << i;
    }
}

TEST(Segment, DirectionLeadsFromTheSecondPointToTheFirst) {
    const cSegment s({1, 5, 2}, {1, 2, 2});
    EXPECT_EQ(s.dir, cVector3(0, 1, 0));
    EXPECT_EQ(s.length, 3);
    EXPECT_EQ(closestPointOnSegment(s, {9, 4, 2}), cVector3(1, 4, 2));
    EXPECT_EQ(closestPointOnSegment(s, {9, 40, 2}), s.p0);
    EXPECT_EQ(closestPointOnSegment(s, {9, -4, 2}), s.p1);
    const cSegment point({1, 2, 3}, {1, 2, 3});
    EXPECT_EQ(point.dir, cVector3(0, 0, 0));
    EXPECT_EQ(closestPointOnSegment(point, {9, 9, 9}), point.p0);
}

TEST(PointInTriangle, ReachesAPartOfAPercentBeyondTheEdges) {
    const cVector3 a(0, 0, 0), b(10, 0, 0), c(0, 0, 10);
    const struct {
        cVector3 p;
        bool inside;
    } rows[] = {
        {{2, 0, 2}, true},     {{5, 0, 0.001f}, true}, {{5, 0, -0.07f}, true}, {{5, 0, -0.09f}, false},
        {{5, 0.05f, 3}, true}, {{2, 2, 2}, false},     {{6, 0, 6}, false},     {{-5, 0, 5}, false},
        {{0, 0, 0}, false}, // a corner has no direction to itself
    };
    for (const auto& row : rows)
        EXPECT_EQ(pointInTriangle(row.p, a, b, c), row.inside) << row.p.x << ' ' << row.p.z;
    EXPECT_FALSE(pointInTriangle({NAN, 0, 0}, a, b, c));
}

TEST(Plane, FollowsTheWindingAndSurvivesNoArea) {
    const cPlane floor({0, 2, 0}, {0, 2, 1}, {1, 2, 0});
    EXPECT_EQ(floor.n, cVector3(0, 1, 0));
    EXPECT_FLOAT_EQ(floor.distance({7, 5, 7}), 3);
    const cPlane none({1, 1, 1}, {2, 2, 2}, {3, 3, 3});
    EXPECT_EQ(none.n, cVector3(0, 0, 0));
    EXPECT_EQ(none.distance({7, 5, 7}), 0);
}
