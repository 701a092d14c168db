#include "game/sweep.h"

#include "support/test_level.h"

#include <cstring>
#include <gtest/gtest.h>
#include <span>

namespace {
constexpr float kRoot2 = 1.41421356f;

cMove both(const cVector3& d) {
    return {d, d};
}
cCapsule sphere(const cVector3& at, float radius) {
    return {at, at, radius};
}

/// The sweep without boxes: every triangle, in order.
float plainSweep(const cCapsule& k, const cMove& m, const MeshList& meshes, cVector3& normal) {
    float f = 1;
    for (const cModel* mesh : meshes) {
        for (const cModelObject& o : mesh->objects) {
            for (const FaceIndices& i : o.faces) {
                const cVector3 v[3] = {o.positions[i[0]], o.positions[i[1]], o.positions[i[2]]};
                f = sweepTriangle(k, m, f, v, normal);
                if (f < 0.1f) return 0;
            }
        }
    }
    return f;
}

/// As the leaves of an octree have them.
void addBoxes(std::span<TestLevel> levels) {
    for (TestLevel& level : levels) {
        cModelObject& o = level.model.objects[0];
        o.faceBoxes.build(o.positions, o.faces);
    }
}

bool sameBits(const cVector3& a, const cVector3& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

float sweepOne(const TestLevel& level, const cCapsule& k, const cMove& m, cVector3& normal) {
    return sweepMeshes(k, m, {&level.model}, normal);
}
} // namespace

TEST(Sweep, PassingOverFarTrianglesChangesNoBit) {
    TestRandom random;
    int blocked = 0, partial = 0;
    for (int scene = 0; scene < 400; ++scene) {
        TestLevel levels[2];
        const float size = random.number(0.1f, 8);
        for (int i = 0; i < 12; ++i) {
            cVector3 at = random.vector(5), b = at + random.vector(size), c = at + random.vector(size);
            if (i == 7 && scene % 3 == 0) c = lerp(at, b, 0.5f); // without area
            if (i == 8 && scene % 5 == 0) b.y = NAN;
            levels[i % 2].addTriangle(at, b, c);
        }
        const MeshList meshes = {&levels[0].model, &levels[1].model};
        addBoxes(levels);
        for (int i = 0; i < 50; ++i) {
            const cVector3 at = random.vector(5), move = random.vector(i % 2 ? 0.2f : 4);
            const cCapsule k(at, at + (i % 3 ? random.vector(1.5f) : cVector3()), random.number(0.05f, 1));
            const cMove m = i % 5 ? both(move) : cMove{move, random.vector(2)};
            cVector3 fastNormal, plainNormal;
            const float fast = sweepMeshes(k, m, meshes, fastNormal),
                        plain = plainSweep(k, m, meshes, plainNormal);
            ASSERT_EQ(fast, plain) << scene << ' ' << i;
            ASSERT_TRUE(sameBits(fastNormal, plainNormal)) << scene << ' ' << i;
            ASSERT_TRUE(fast >= 0 && fast <= 1);
            blocked += fast == 0;
            partial += fast > 0 && fast < 1;
        }
    }
    EXPECT_GT(blocked, 1000);
    EXPECT_GT(partial, 1000);
}

TEST(StandingShapes, PassingOverFarTrianglesChangesNoAnswer) {
    TestRandom random;
    int touching = 0;
    for (int scene = 0; scene < 3000; ++scene) {
        TestLevel plain[1];
        for (int i = 0; i < 9; ++i) {
            const cVector3 at = random.vector(5);
            plain[0].addTriangle(at, at + random.vector(3), at + random.vector(3));
        }
        if (scene % 7 == 0) plain[0].model.objects[0].positions[4].z = NAN;
        TestLevel boxed[1] = {plain[0]};
        addBoxes(boxed);
        const cVector3 at = random.vector(5);
        const cCapsule k(at, at + random.vector(1.5f), random.number(0.05f, 1));
        const bool overlaps = overlapsMeshes(k, {&plain[0].model});
        const bool touches = sphereTouchesMeshes(at, k.radius, {&plain[0].model});
        ASSERT_EQ(overlapsMeshes(k, {&boxed[0].model}), overlaps) << scene;
        ASSERT_EQ(sphereTouchesMeshes(at, k.radius, {&boxed[0].model}), touches) << scene;
        touching += overlaps + touches;
    }
    EXPECT_GT(touching, 400);
}

TEST(Sweep, FractionsAgainstOneFace) {
    TestLevel floor;
    floor.addFloor(-10, -10, 10, 10, 0);
    for (const auto& [k, move, fraction] :
         {std::tuple(sphere({0, 2, 1}, 0.5f), cVector3(0, -2, 0), 0.75f),
          {sphere({0, 2, 1}, 0.5f), {0, -16, 0}, 1},      // ends farther away than it began: passes through
          {sphere({0, 2, 1}, 0.5f), {0, -1, 0}, 1},       // stops short
          {sphere({0, 2, 1}, 0.5f), {0, 2, 0}, 1},        // moves away
          {sphere({0, 2, 1}, 0.5f), {3, 0, 0}, 1},        // moves along
          {sphere({0, 0.4f, 1}, 0.5f), {0, -0.2f, 0}, 1}, // inside the reach already
          {sphere({0, -2, 1}, 0.5f), {0, 2, 0}, 1},       // from behind to the face
          {sphere({0, 0.6f, 1}, 0.5f), {0, -1, 0}, 0.1f},
          {sphere({0, 0.59f, 1}, 0.5f), {0, -1, 0}, 0}, // less than a tenth counts as none
          {cCapsule({0, 3, 1}, {0, 2, 1}, 0.5f), {0, -2, 0}, 0.75f},
          {cCapsule({0, 2, 1}, {0, 3, 1}, 0.5f), {1, -2, 0}, 0.75f},
          {sphere({12, 2, 1}, 0.5f), {0, -2.5f, 0}, 1}}) { // beside the floor
        SCOPED_TRACE(std::to_string(k.p0.y) + " by " + std::to_string(move.y));
        cVector3 normal;
        EXPECT_NEAR(sweepOne(floor, k, both(move), normal), fraction, 1e-5f);
        EXPECT_EQ(normal, fraction < 1 ? cVector3(0, 1, 0) : cVector3());
    }
}

TEST(Sweep, EdgesAndCornersStopWhatTheFaceLets) {
    TestLevel wall; // facing −x, its upper edge at y = 1, its near corner at z = 1
    wall.addQuad({3, 0, 1}, {3, 1, 1}, {3, 1, -1}, {3, 0, -1});
    for (const auto& [at, way] : {std::pair(cVector3(0, 0.5f, 0), 2.5f),   // the face
                                  {{0, 1.2f, 0}, 3 - std::sqrt(0.21f)},    // the upper edge
                                  {{0, 1.3f, 1.3f}, 3 - std::sqrt(0.07f)}, // the corner
                                  {{0, 1.51f, 0}, 3.1f},                   // above it
                                  {{0, 1.4f, 1.4f}, 3.1f}}) {              // past the corner
        cVector3 normal;
        EXPECT_NEAR(sweepOne(wall, sphere(at, 0.5f), both({3.1f, 0, 0}), normal) * 3.1f, way, 0.01f) << at.y;
        EXPECT_EQ(normal, way < 3.1f ? cVector3(-1, 0, 0) : cVector3())
            << "the triangle's plane, at edges too";
    }
}

TEST(Sweep, TheFirstOfTwoFacesAtAnEdgeReportsTheContact) {
    const auto normalWith = [](bool topFirst) {
        TestLevel step;
        if (topFirst) step.addFloor(1, -5, 5, 5, 0);
        step.addQuad({1, -2, 5}, {1, 0, 5}, {1, 0, -5}, {1, -2, -5});
        if (!topFirst) step.addFloor(1, -5, 5, 5, 0);
        cVector3 normal;
        EXPECT_LT(sweepOne(step, sphere({0.8f, 0.5f, 0.3f}, 0.4f), both({0, -0.3f, 0}), normal), 1);
        return normal;
    };
    EXPECT_EQ(normalWith(true), cVector3(0, 1, 0));
    EXPECT_EQ(normalWith(false), cVector3(-1, 0, 0));
}

TEST(Sweep, TrianglesWithoutAreaOrNumbersBlockOrDoNothing) {
    TestLevel line, nan;
    line.addTriangle({2, -1, 0}, {2, 0, 0}, {2, 1, 0});
    nan.addTriangle({2, NAN, 0}, {2, NAN, 1}, {2, NAN, 2});
    cVector3 normal(7, 7, 7);
    const float f = sweepOne(line, sphere({0, 0.5f, 0}, 0.5f), both({1.8f, 0, 0}), normal);
    EXPECT_NEAR(f * 1.8f, 1.5f, 0.01f);
    EXPECT_EQ(normal, cVector3(0, 0, 0));
    EXPECT_EQ(sweepOne(nan, sphere({0, 0.5f, 0}, 0.5f), both({4, 0, 0}), normal), 1);
    EXPECT_EQ(sweepOne(line, sphere({NAN, 0, 0}, 0.5f), both({4, 0, 0}), normal), 1);
}

TEST(StandingCapsule, OverlapsFacesAndEdges) {
    TestLevel floor;
    floor.addFloor(-2, -2, 2, 2, 0);
    for (const auto& [k, overlaps] : {std::pair(cCapsule({0, 1, 0.5f}, {0, 3, 0.5f}, 0.9f), false),
                                      {{{0, 1, 0.5f}, {0, 3, 0.5f}, 1.1f}, true},
                                      {{{0, 3, 0.5f}, {0, 1, 0.5f}, 1.1f}, true},
                                      {{{0, 1, 0.5f}, {0, -1, 0.5f}, 0.1f}, true},
                                      {{{2.5f, 1, 0}, {2.5f, -1, 0}, 0.4f}, false},
                                      {{{2.5f, 1, 0}, {2.5f, -1, 0}, 0.6f}, true},
                                      {{{9, 0.1f, 0}, {9, 0.2f, 0}, 0.4f}, false},
                                      {{{0, -1, 0.5f}, {0, -3, 0.5f}, 1.1f}, true}})
        EXPECT_EQ(overlapsMeshes(k, {&floor.model}), overlaps) << k.p0.x << ' ' << k.radius;
}

TEST(Sphere, TouchesFacesInclusivelyAndEdgesStrictly) {
    TestLevel floor;
    floor.addFloor(-2, -2, 2, 2, 0);
    for (const auto& [at, radius, touches] : {std::tuple(cVector3(0, 1, 0.5f), 1.0f, true),
                                              {{0, 1, 0.5f}, 0.99f, false},
                                              {{0, -1, 0.5f}, 1, true},
                                              {{3, 0, 0}, 1, false},
                                              {{3, 0, 0}, 1.01f, true},
                                              {{3, 0, 3}, kRoot2 - 0.01f, false},
                                              {{3, 0, 3}, kRoot2 + 0.01f, true}})
        EXPECT_EQ(sphereTouchesMeshes(at, radius, {&floor.model}), touches) << at.x << ' ' << radius;
}

TEST(Capsule, TouchesASegmentAtItsRadius) {
    const cCapsule k({0, 0, 0}, {0, 2, 0}, 1);
    EXPECT_TRUE(capsuleTouchesSegment(k, {{1, 1, -3}, {1, 1, 3}}));
    EXPECT_FALSE(capsuleTouchesSegment(k, {{1.01f, 1, -3}, {1.01f, 1, 3}}));
    EXPECT_TRUE(capsuleTouchesSegment(k, {{0, 3, 0}, {0, 9, 0}}));
}
