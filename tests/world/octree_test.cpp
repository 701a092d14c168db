#include "world/octree.h"

#include "data/binary_reader.h"
#include "support/damage.h"
#include "support/temp_game.h"
#include "support/test_level.h"
#include "world/drop_octree.h"

#include <gtest/gtest.h>
#include <set>

namespace {
using LeafList = cOctree::LeafList;
const cCapsule kEverywhere({0, 0, 0}, {0, 0, 0}, 1e6f);

LeafList allLeaves(const cOctree& octree) {
    LeafList leaves;
    octree.queryBodies(kEverywhere, kEverywhere, leaves);
    return leaves;
}

platform::Bytes written(const cOctree& octree, const cMaterialList& materials) {
    cBinaryWriter out;
    octree.write(out, materials);
    return out.bytes();
}

/// Faces are told apart by their first corner.
std::set<std::array<float, 3>> facesOf(const LeafList& leaves) {
    std::set<std::array<float, 3>> found;
    for (const cModel* leaf : leaves) {
        for (const cModelObject& o : leaf->objects) {
            for (const FaceIndices& f : o.faces) {
                const cVector3& p = o.positions[f[0]];
                found.insert({p.x, p.y, p.z});
            }
        }
    }
    return found;
}

TestLevel soup(int faces, float edge) {
    TestLevel level;
    TestRandom random;
    for (int i = 0; i < faces; ++i) {
        const cVector3 at = random.vector(10);
        level.addTriangle(at, at + random.vector(edge), at + random.vector(edge));
    }
    return level;
}

/// A triangle around a point, in a plane x = const.
void addSmall(TestLevel& level, const cVector3& at, float size = 0.2f) {
    level.addTriangle(at, at + cVector3(0, size, 0), at + cVector3(0, 0, size));
}

/// Two corners that make the extent 10 and the centre 0.
TestLevel framed() {
    TestLevel level;
    addSmall(level, {10, 9.8f, 9.8f});
    addSmall(level, {-10, -10, -10});
    return level;
}

cMaterialList materialsOf(const TestLevel& level) {
    cMaterialList materials;
    materials.addFrom(level.model);
    return materials;
}
} // namespace

TEST(Octree, SplitsOnlyAboveTheFaceLimitAndToTheGenerationLimit) {
    TestLevel level;
    for (int k = 0; k < 8; ++k) {
        for (int i = 0; i < 5; ++i) {
            const auto side = [&](int bit) { return (k & bit ? -1.0f : 1.0f) * static_cast<float>(3 + i); };
            addSmall(level, {side(2), side(4), side(1)});
        }
    }
    const struct {
        int minFaces, generations, leaves;
    } rows[] = {{40, 4, 1}, {39, 1, 8}, {39, 0, 1}, {39, 9, 8}, {5, 9, 8}};
    for (const bool triangles : {false, true}) {
        for (const auto& row : rows) {
            cOctree octree;
            octree.build(level.model, row.minFaces, row.generations, triangles);
            EXPECT_EQ(octree.totalNodes(), row.leaves) << row.minFaces << ' ' << row.generations;
            octree.build(level.model, row.minFaces, row.generations, triangles);
            EXPECT_EQ(octree.totalNodes(), row.leaves) << "a second build starts anew";
        }
    }
}

TEST(Octree, CornersOrTrianglesDecideWhoReceivesAFace) {
    const struct {
        cVector3 a, b, c;
        int byCorners, byTriangle; // leaves that hold the face
    } rows[] = {
        {{5, 5, 5}, {6, 5, 5}, {5, 5, 6}, 1, 1},    {{-5, 5, 5}, {6, 5, 5}, {6, 5, 6}, 2, 2},
        {{5, 0, 5}, {6, 0, 5}, {5, 0, 6}, 2, 2},    // in a dividing plane
        {{0, 0, 0}, {6, 0, 0}, {6, 0, 0.5f}, 8, 8}, // a corner in the centre
        {{9, 1, -9}, {9, 1, 9}, {-9, 1, 8}, 3, 4},  // crosses an octant without a corner in it
    };
    for (const auto& row : rows) {
        for (const bool triangles : {false, true}) {
            TestLevel level = framed();
            level.addTriangle(row.a, row.b, row.c);
            cOctree octree;
            octree.build(level.model, 1, 1, triangles);
            int holders = 0;
            for (const cModel* leaf : allLeaves(octree)) {
                for (const auto& p : facesOf({leaf}))
                    holders += p == std::array<float, 3>{row.a.x, row.a.y, row.a.z};
            }
            EXPECT_EQ(holders, triangles ? row.byTriangle : row.byCorners) << row.a.x << ' ' << triangles;
        }
    }
}

TEST(Octree, FloorsInDividingPlanesAreHeldOnBothSidesWhateverTheRounding) {
    TestRandom random;
    for (int i = 0; i < 300; ++i) {
        const float extent = random.number(1, 300);
        TestLevel level;
        const float low = random.number(0.2f, 0.9f) * extent, y = (extent - low) / 2; // the box's middle
        level.addFloor(-extent, -extent, extent, extent, y);
        addSmall(level, {0, extent - 0.2f, 0});
        addSmall(level, {0, -low, 0});
        const cVector3 centre = level.model.centre();
        for (cVector3& p : level.model.objects[0].positions) p.y = p.y == y ? centre.y : p.y;
        cOctree octree;
        octree.build(level.model, 1, 1, true);
        int holders = 0;
        for (const cModel* leaf : allLeaves(octree))
            holders += facesOf({leaf}).count({-extent, centre.y, -extent}) > 0;
        EXPECT_EQ(holders, 8) << i;
    }
}

TEST(Octree, LosesNoFaceAndKeepsTheirOrder) {
    const TestLevel level = soup(400, 3);
    for (const bool triangles : {false, true}) {
        cOctree octree;
        octree.build(level.model, 10, 4, triangles);
        const LeafList leaves = allLeaves(octree);
        EXPECT_EQ(static_cast<int>(leaves.size()), octree.totalNodes());
        EXPECT_EQ(facesOf(leaves).size(), 400u);
        for (const cModel* leaf : leaves) {
            const cModelObject& o = leaf->objects.at(0);
            EXPECT_EQ(o.positions.size(), o.faces.size() * 3) << "unused corners are gone";
            const auto& all = level.model.objects[0].positions;
            auto last = all.begin();
            for (const FaceIndices& f : o.faces) {
                const auto at = std::find(last, all.end(), o.positions[f[0]]);
                ASSERT_NE(at, all.end()) << "faces changed places";
                last = at;
            }
        }
    }
}

TEST(Octree, LeavesAreCompactedWithTheirMaterialsAndCoordinates) {
    TestLevel level = framed();
    cModelObject second = level.model.objects[0];
    second.mode = kModeTwoTextures;
    second.texture = 7;
    second.colour = {9, 0, 1, 0};
    second.texCoords = {{0, 0}, {1, 0}, {0, 1}, {5, 5}};
    second.faceTexCoords = {{0, 1, 2}, {3, 3, 3}};
    second.vectors = {{0.5f, 0.5f, 0}, {0.25f, 0, 0}};
    second.faceSecond = {{0, 0, 0}, {1, 1, 0}};
    level.model.objects.push_back(second);
    level.model.objects[0].vectors.assign(6, {0, 1, 0});
    level.model.objects[0].vectors[3] = {1, 0, 0};
    cOctree octree;
    octree.build(level.model, 1, 1, true);
    const LeafList leaves = allLeaves(octree);
    ASSERT_EQ(leaves.size(), 2u);
    const cModel &high = *leaves[0], &low = *leaves[1];
    ASSERT_EQ(low.objects.size(), 2u);
    EXPECT_EQ(low.objects[0].vectors.size(), 3u);
    EXPECT_EQ(low.objects[0].vectors[0], cVector3(1, 0, 0));
    EXPECT_EQ(low.objects[1].mode, kModeTwoTextures);
    EXPECT_EQ(low.objects[1].texture, 7);
    EXPECT_EQ(low.objects[1].secondTexture(), 9);
    EXPECT_EQ(low.objects[1].texCoordCount(), 1);
    EXPECT_EQ(low.objects[1].texCoords[0].u, 5);
    EXPECT_EQ(low.objects[1].vectors.size(), 2u);
    EXPECT_EQ(low.objects[1].faceSecond[0], (FaceIndices{1, 1, 0}));
    EXPECT_EQ(high.objects[1].texCoordCount(), 3);
    EXPECT_EQ(high.objects[1].vectors.size(), 1u);
}

TEST(Octree, ReadsBackWhatItWroteByteForByte) {
    const TestLevel level = soup(200, 4);
    const cMaterialList materials = materialsOf(level);
    for (const int minFaces : {10, 1000}) {
        cOctree octree, copy;
        octree.build(level.model, minFaces, 3, true);
        const platform::Bytes bytes = written(octree, materials);
        cBinaryReader in(bytes);
        ASSERT_TRUE(copy.read(in, materials));
        EXPECT_EQ(in.left(), 0u);
        EXPECT_EQ(copy.totalNodes(), octree.totalNodes());
        EXPECT_EQ(written(copy, materials), bytes);
        EXPECT_EQ(copy.stats(),
                  "Total Nodes: " + std::to_string(octree.totalNodes()) + ", last drawn: 0 Last Trace: 0");
    }
}

TEST(Octree, TheFileFormat) {
    TestLevel level = framed();
    cOctree octree;
    octree.build(level.model, 1, 1, true);
    cBinaryReader in(written(octree, materialsOf(level)));
    EXPECT_EQ(in.i32(), 0);
    EXPECT_EQ(in.vector3(), cVector3(0, 0, 0));
    EXPECT_EQ(in.f32(), 20);
    EXPECT_EQ(in.i32(), 1); // child 0: +x +y +z
    EXPECT_EQ(in.vector3(), cVector3(5, 5, 5));
    EXPECT_EQ(in.f32(), 10);
    EXPECT_EQ(in.i32(), 1);
    const platform::Bytes bytes = written(octree, materialsOf(level));
    const auto objectBytes = (bytes.size() - 20 - 2 * 24 - 6 * 4) / 2;
    in.skip(objectBytes);
    for (int k = 1; k < 7; ++k) EXPECT_EQ(in.i32(), 2) << k;
    EXPECT_EQ(in.i32(), 1);
    EXPECT_EQ(in.vector3(), cVector3(-5, -5, -5));
    cOctree empty;
    EXPECT_EQ(written(empty, {}), (platform::Bytes{2, 0, 0, 0}));
    cBinaryReader none(platform::Bytes{2, 0, 0, 0});
    EXPECT_TRUE(octree.read(none, {}));
    EXPECT_TRUE(octree.empty());
    EXPECT_EQ(octree.totalNodes(), 0);
}

TEST(Octree, DamagedDataGivesAnEmptyTreeOrAUsableOne) {
    const TestLevel level = soup(30, 4);
    const cMaterialList materials = materialsOf(level);
    cOctree octree;
    octree.build(level.model, 10, 2, true);
    const platform::Bytes good = written(octree, materials);
    readDamaged(good, 2000, [&](const platform::Bytes& bytes) {
        cBinaryReader in(bytes);
        cOctree damaged;
        const bool ok = damaged.read(in, materials);
        EXPECT_FALSE(ok && bytes.size() < good.size());
        EXPECT_EQ(ok, !damaged.empty());
        const float free = damaged.trace({-20, 1, 2}, {20, 3, 1});
        EXPECT_TRUE(free >= 0 && free <= 1);
    });
    // Inner nodes within inner nodes, a million deep.
    cBinaryWriter deep;
    for (int i = 0; i < 1000000; ++i) {
        deep.i32(0);
        deep.vector3({0, 0, 0});
        deep.f32(1);
    }
    cBinaryReader in(deep.bytes());
    EXPECT_FALSE(octree.read(in, materials));
    EXPECT_TRUE(octree.empty());
}

TEST(Octree, QueriesReturnEveryFaceThatIsNear) {
    const TestLevel level = soup(500, 2);
    cOctree octree;
    octree.build(level.model, 10, 4, true);
    TestRandom random;
    int shorter = 0;
    for (int i = 0; i < 400; ++i) {
        const cVector3 a = random.vector(10), b = a + random.vector(3);
        const float radius = random.number(0, 1);
        LeafList sphere, bodies, segment;
        octree.querySphere(a, radius, sphere);
        EXPECT_EQ(octree.lastTrace(), static_cast<int>(sphere.size()));
        octree.queryBodies(cCapsule(a, a, radius), cCapsule(b, b, radius), bodies);
        octree.querySegment(cSegment(a, b), segment);
        shorter += static_cast<int>(segment.size()) < octree.totalNodes() / 2;
        const auto inSphere = facesOf(sphere), inBodies = facesOf(bodies), onSegment = facesOf(segment);
        for (const FaceIndices& f : level.model.objects[0].faces) {
            const auto& p = level.model.objects[0].positions;
            const std::array<float, 3> key{p[f[0]].x, p[f[0]].y, p[f[0]].z};
            // A few points of the triangle stand for all of it.
            for (int s = 0; s <= 4; ++s) {
                for (int t = 0; s + t <= 4; ++t) {
                    const cVector3 q = p[f[0]] + (p[f[1]] - p[f[0]]) * (static_cast<float>(s) / 4) +
                                       (p[f[2]] - p[f[0]]) * (static_cast<float>(t) / 4);
                    EXPECT_TRUE((q - a).length() >= radius * 0.99f || inSphere.count(key)) << i;
                    EXPECT_TRUE((q - b).length() >= radius * 0.99f || inBodies.count(key)) << i;
                    if ((closestPointOnSegment(cSegment(a, b), q) - q).length() < 1e-3f) {
                        EXPECT_TRUE(onSegment.count(key)) << i;
                    }
                }
            }
        }
    }
    EXPECT_GT(shorter, 300) << "queries leave out what is far";
    LeafList none;
    octree.querySphere({100, 0, 0}, 1, none);
    EXPECT_TRUE(none.empty());
    EXPECT_EQ(octree.lastTrace(), 0);
}

TEST(Octree, TheBodyQueryReachesOneAndAHalfRadiiStrictly) {
    TestLevel level = framed(); // the cube reaches from −10 to 10
    cOctree octree;
    octree.build(level.model, 100, 1, true);
    const cCapsule far({50, 0, 0}, {50, 0, 0}, 1);
    const struct {
        float x;
        size_t leaves;
    } rows[] = {{11.49f, 1}, {11.5f, 0}, {-11.49f, 1}, {-11.5f, 0}};
    for (const auto& row : rows) {
        LeafList leaves;
        const cCapsule upright({row.x, 3, 0}, {row.x, -3, 0}, 1);
        octree.queryBodies(upright, far, leaves);
        EXPECT_EQ(leaves.size(), row.leaves) << row.x;
        octree.queryBodies(far, upright, leaves);
        EXPECT_EQ(leaves.size(), row.leaves) << row.x;
        octree.querySphere({row.x, 0, 0}, 1.5f, leaves);
        EXPECT_EQ(leaves.size(), row.leaves) << row.x;
    }
}

TEST(Octree, ATraceGivesTheFreeFraction) {
    TestLevel level = framed();
    level.addWall(2, 5, 2, -5, -5, 5);
    level.addWall(6, 5, 6, -5, -5, 5);
    const struct {
        cVector3 start, end;
        float free;
    } rows[] = {
        {{0, 0, 0}, {4, 0, 0}, 0.5f},  {{4, 0, 0}, {0, 0, 0}, 0.5f},    // from both sides
        {{0, 0, 0}, {8, 0, 0}, 0.25f}, {{8, 0, 0}, {0, 0, 0}, 0.25f},   // the nearest of two
        {{0, 0, 0}, {1.9f, 0, 0}, 1},  {{3, 0, 0}, {5, 0, 0}, 1},       // nothing between
        {{0, 0, 0}, {2, 0, 0}, 1},     {{1.99f, 0, 0}, {4, 0, 0}, 0},   // ends on it; starts within 1 %
        {{0, 0, 7}, {9, 0, 7}, 1},     {{0, 4, 4}, {4, 2, 2}, 0.5f},    // beside it; aslant
        {{1, 1, 1}, {1, 1, 1}, 1},     {{40, 40, 40}, {50, 40, 40}, 1}, // no length; outside
        {{2, 9, 0}, {2, -9, 0}, 1},                                     // within the wall's plane
    };
    for (const int minFaces : {1, 100}) {
        cOctree octree;
        octree.build(level.model, minFaces, 3, true);
        for (const auto& row : rows) {
            EXPECT_NEAR(octree.trace(row.start, row.end), row.free, 1e-5f) << row.start.x << ' ' << row.end.x;
        }
    }
    cOctree none;
    EXPECT_EQ(none.trace({0, 0, 0}, {1, 1, 1}), 1);
}

TEST(DropOctree, ChecksItsArgumentsAndSaysWhatItDid) {
    TempGame game;
    game.write("in.obj", "v 0 0 0\nv 8 0 0\nv 0 4 0\nf 1 2 3\n");
    const std::string invalid = "Invalid parameters";
    const struct {
        std::vector<std::string> params;
        std::string message;
    } rows[] = {
        {{"in.obj", "out.oct", "10", "1", "50", "1"}, "Octree saved to file out.oct"},
        {{"in.obj", "none.obj", "out.oct", "10", "1", "50", "1"}, "Octree saved to file out.oct"},
        {{"in.obj", "out.oct", "9", "1", "50", "1"}, invalid},
        {{"in.obj", "out.oct", "10", "0", "50", "1"}, invalid},
        {{"in.obj", "oct", "10", "1", "50", "1"}, invalid},
        {{"obj", "out.oct", "10", "1", "50", "1"}, invalid},
        {{"none.obj", "out.oct", "10", "1", "50", "1"}, "Could not find file \"none.obj\""},
        {{"in.obj", "out.oct", "10", "20", "0", "1"},
         "Octree saved to file out.oct"}, // all corners in one point
    };
    for (const auto& row : rows) {
        platform::writeFile("out.oct", {});
        const DropOctreeResult result = dropOctree(row.params);
        EXPECT_EQ(result.message, row.message);
        const bool saved = row.message.rfind("Octree saved", 0) == 0;
        EXPECT_EQ(result.done, saved);
        EXPECT_EQ(!game.read("out.oct").empty(), saved) << row.message;
    }
    ASSERT_TRUE(dropOctree(rows[0].params).done);
    cBinaryReader in("out.oct");
    cMaterialList materials;
    cOctree octree;
    ASSERT_TRUE(materials.read(in) && octree.read(in, materials));
    LeafList leaves;
    octree.querySphere({0, 0, 0}, 1, leaves);
    ASSERT_EQ(leaves.size(), 1u);
    EXPECT_FLOAT_EQ(leaves[0]->extent(), 50);
    EXPECT_TRUE(leaves[0]->centre().isNear({0, 0, 0}));
}
