#include "world/octree.h"

#include "data/binary_reader.h"
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

TEST(Octree, FloorsInDividingPlanesAreHeldOnBothSidesWhateverTheRounding) {
    TestRandom random;
    for (int i = 0; i < 300; ++i) {
        const float extent = random.number(1, 300), low = random.number(0.2f, 0.9f) * extent;
        const float y = (extent - low) / 2; // the box's middle
        TestLevel level;
        level.addFloor(-extent, -extent, extent, extent, y);
        addSmall(level, {0, extent - 0.2f, 0});
        addSmall(level, {0, -low, 0});
        const cVector3 centre = level.model.centre();
        for (cVector3& p : level.model.objects[0].positions) p.y = p.y == y ? centre.y : p.y;
        cOctree octree;
        octree.build(level.model, 1, 1, true);
        size_t holders = 0;
        for (const cModel* leaf : allLeaves(octree))
            holders += facesOf({leaf}).count({-extent, centre.y, -extent});
        EXPECT_EQ(holders, 8u) << i;
    }
}

TEST(Octree, ReadsBackWhatItWroteByteForByte) {
    const TestLevel level = soup(200, 4);
    const cMaterialList materials = materialsOf(level);
    for (const int minFaces : {10, 1000}) {
        cOctree octree, copy;
        for (int round = 0; round < 2; ++round) octree.build(level.model, minFaces, 3, true);
        const platform::Bytes bytes = written(octree, materials);
        cBinaryReader in(bytes);
        ASSERT_TRUE(copy.read(in, materials));
        EXPECT_EQ(in.left(), 0u);
        EXPECT_EQ(written(copy, materials), bytes);
        const auto leaves = allLeaves(octree).size();
        const std::string stats = "Total Nodes: " + std::to_string(leaves) + ", last drawn: 0 Last Trace: ";
        EXPECT_EQ(copy.stats(), stats + "0") << "a second build starts anew";
        EXPECT_EQ(octree.stats(), stats + std::to_string(leaves));
    }
}

TEST(Octree, AnEmptyTreeAndOneAMillionDeep) {
    cOctree octree;
    EXPECT_EQ(written(octree, {}), (platform::Bytes{2, 0, 0, 0}));
    EXPECT_EQ(octree.trace({0, 0, 0}, {1, 1, 1}), 1);
    octree.build(framed().model, 1, 1, true);
    cBinaryReader none(platform::Bytes{2, 0, 0, 0});
    EXPECT_TRUE(octree.read(none, {}) && octree.empty() && octree.totalNodes() == 0);
    cBinaryWriter deep;
    for (int i = 0; i < 1000000; ++i) {
        deep.i32(0); // a node with children
        deep.vector3({0, 0, 0});
        deep.f32(1);
    }
    octree.build(framed().model, 1, 1, true);
    cBinaryReader in(deep.bytes());
    EXPECT_FALSE(octree.read(in, {}) || !octree.empty());
}

TEST(Octree, QueriesReturnEveryFaceThatIsNear) {
    const TestLevel level = soup(500, 2);
    const auto& p = level.model.objects[0].positions;
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
            const std::array<float, 3> key{p[f[0]].x, p[f[0]].y, p[f[0]].z};
            // A few points of the triangle stand for all of it.
            for (int k = 0; k < 25; ++k) {
                const float s = static_cast<float>(k / 5) / 4, t = static_cast<float>(k % 5) / 4 * (1 - s);
                const cVector3 q = p[f[0]] + (p[f[1]] - p[f[0]]) * s + (p[f[2]] - p[f[0]]) * t;
                const float beside = (closestPointOnSegment(cSegment(a, b), q) - q).length();
                EXPECT_TRUE((q - a).length() >= radius * 0.99f || inSphere.count(key)) << i;
                EXPECT_TRUE((q - b).length() >= radius * 0.99f || inBodies.count(key)) << i;
                EXPECT_TRUE(beside >= 1e-3f || onSegment.count(key)) << i;
            }
        }
    }
    EXPECT_GT(shorter, 300) << "queries leave out what is far";
}

TEST(Octree, TheBodyQueryReachesOneAndAHalfRadiiStrictly) {
    cOctree octree;
    octree.build(framed().model, 100, 1, true); // the cube reaches from −10 to 10
    const cCapsule far({50, 0, 0}, {50, 0, 0}, 1);
    for (const auto& [x, found] : {std::pair(11.49f, 1u), {11.5f, 0u}, {-11.49f, 1u}, {-11.5f, 0u}}) {
        const cCapsule upright({x, 3, 0}, {x, -3, 0}, 1);
        LeafList first, second, sphere;
        octree.queryBodies(upright, far, first);
        octree.queryBodies(far, upright, second);
        octree.querySphere({x, 0, 0}, 1.5f, sphere);
        for (const LeafList& leaves : {first, second, sphere}) EXPECT_EQ(leaves.size(), found) << x;
    }
}

TEST(Octree, ATraceGivesTheFreeFraction) {
    TestLevel level = framed();
    level.addWall(2, 5, 2, -5, -5, 5);
    level.addWall(6, 5, 6, -5, -5, 5);
    cOctree octree;
    octree.build(level.model, 1, 3, true);
    const struct {
        cVector3 start, end;
        float free;
    } rows[] = {
        {{0, 0, 0}, {8, 0, 0}, 0.25f}, {{8, 0, 0}, {0, 0, 0}, 0.25f}, // the nearest of two, from both sides
        {{0, 0, 0}, {2, 0, 0}, 1},     {{1.99f, 0, 0}, {4, 0, 0}, 0}, // ends on it; starts within 1 %
        {{0, 0, 7}, {9, 0, 7}, 1},     {{0, 4, 4}, {4, 2, 2}, 0.5f},  // beside it; aslant
        {{1, 1, 1}, {1, 1, 1}, 1},     {{2, 9, 0}, {2, -9, 0}, 1},    // no length; within the wall's plane
    };
    for (const auto& row : rows)
        EXPECT_NEAR(octree.trace(row.start, row.end), row.free, 1e-5f) << row.start.x << ' ' << row.end.x;
}

TEST(DropOctree, ChecksItsArgumentsAndSaysWhatItDid) {
    TempGame game;
    game.write("in.obj", "v 0 0 0\nv 8 0 0\nv 0 4 0\nf 1 2 3\n");
    const std::string saved = "Octree saved to file out.oct", invalid = "Invalid parameters";
    const struct {
        std::vector<std::string> params;
        std::string message;
    } rows[] = {
        {{"in.obj", "out.oct", "10", "20", "0", "1"}, saved}, // all corners in one point
        {{"in.obj", "out.oct", "10", "0", "50", "1"}, invalid},
        {{"in.obj", "oct", "10", "1", "50", "1"}, invalid},
        {{"obj", "out.oct", "10", "1", "50", "1"}, invalid},
        {{"in.obj", "none.obj", "out.oct", "10", "1", "50", "1"}, saved},
        {{"bad.obj", "out.oct", "10", "1", "50", "1"}, "No face could be read from file \"bad.obj\""},
        {{"bare.obj", "out.oct", "10", "1", "50", "1"}, "No face could be read from file \"bare.obj\""},
    };
    // Of each reason another number; what is known and passed over is none.
    game.write("bad.obj", "# a\no b\n\ng c\ns 1\nv 0 0 0\nv 8 0 0\nv 0 4 0\nvt 0 0\nf 1/1/1 2/1/1 3/1/1\n"
                          "f 1 2 3\nf 1/1 2/1 4/1\nf 1/1 2/1 9/1\nf 1/2 2/1 3/1\nxyz 1\n");
    game.write("bare.obj", "");
    for (const auto& row : rows) {
        platform::writeFile("out.oct", {});
        const DropOctreeResult result = dropOctree(row.params);
        EXPECT_EQ(result.message, row.message);
        EXPECT_EQ(result.done, row.message == saved);
        EXPECT_EQ(!game.read("out.oct").empty(), result.done) << row.message;
    }
    EXPECT_EQ(TempGame::errorCount("bad.obj gives no face: 2 faces whose corners are neither v nor, with vt "
                                   "lines, v/vt, 3 faces with indices out of range, 1 lines not understood"),
              1);
    EXPECT_EQ(TempGame::errorCount("bare.obj gives no face: it holds none"), 1);
    ASSERT_TRUE(dropOctree(rows[4].params).done);
    cBinaryReader in("out.oct");
    cMaterialList materials;
    cOctree octree;
    ASSERT_TRUE(materials.read(in) && octree.read(in, materials));
    const LeafList leaves = allLeaves(octree);
    ASSERT_EQ(leaves.size(), 1u);
    EXPECT_FLOAT_EQ(leaves[0]->extent(), 50);
    EXPECT_TRUE(leaves[0]->centre().isNear({0, 0, 0}));
}
