#include "models/model.h"

#include "data/binary_reader.h"
#include "models/normals.h"
#include "render/texture_cache.h"
#include "support/temp_game.h"
#include "support/test_level.h"

#include <SDL.h>
#include <algorithm>
#include <gtest/gtest.h>

namespace {
/// A 1 × 1 picture.
const std::string kTga = std::string("\0\0\2\0\0\0\0\0\0\0\0\0\1\0\1\0\x18\0", 18) + "abc";

cModelObject triangle(uint8_t red, float x = 0) {
    cModelObject o;
    o.colour = {red, 20, 30, 0};
    o.positions = {{x, 0, 0}, {x + 1, 0, 0}, {x, 1, 0}};
    o.faces = {{0, 1, 2}};
    o.faceTexCoords = {{0, 1, 2}};
    return o;
}

cModelObject textured(int32_t texture, uint8_t red) {
    cModelObject o = triangle(red);
    o.mode = kModeTexture;
    o.texture = texture;
    o.texCoords = {{0, 0}, {0.5f, 0.25f}, {1, 1}};
    o.vectors = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    return o;
}

cModelObject twoTextured(int32_t first, int32_t second) {
    cModelObject o = textured(first, 0);
    o.mode = kModeTwoTextures;
    o.setSecondTexture(second);
    o.vectors = {{0.5f, 0.75f, 0}, {0.25f, 0, 0}};
    o.faceSecond = {{1, 0, 1}};
    return o;
}

class CpmFile : public ::testing::Test {
protected:
    CpmFile() {
        game.write("img/a.tga", kTga);
        game.write("img/b.tga", kTga);
        a = cTextureCache::instance().load("img\\a.tga");
        b = cTextureCache::instance().load("img\\b.tga");
    }
    ~CpmFile() override { cTextureCache::instance().releaseAll(); }
    TempGame game;
    int32_t a = 0, b = 0;
};

std::vector<cVector3> plainNormals(const std::vector<cVector3>& p, const std::vector<FaceIndices>& faces) {
    std::vector<cVector3> result;
    for (const cVector3& at : p) {
        cVector3 sum;
        for (const FaceIndices& f : faces) {
            if (p[f[0]] == at || p[f[1]] == at || p[f[2]] == at) {
                sum += (p[f[1]] - p[f[0]]).cross(p[f[2]] - p[f[0]]);
            }
        }
        result.push_back(sum.normalized());
    }
    return result;
}
} // namespace

TEST_F(CpmFile, ComesBackAsItWasWritten) {
    cModel model;
    model.objects = {triangle(1), textured(a, 255), twoTextured(a, b)};
    ASSERT_TRUE(model.saveCpm("s_mdl\\x.cpm"));
    cModel back;
    ASSERT_EQ(back.load("s_mdl\\x.CPM", false), 0);
    ASSERT_EQ(back.objects.size(), 3u);
    for (size_t i = 0; i < 3; ++i) {
        const cModelObject &m = model.objects[i], &n = back.objects[i];
        EXPECT_TRUE(n.mode == m.mode && n.texture == m.texture && n.colour == m.colour) << i;
        EXPECT_EQ(n.positions, m.positions) << i;
        EXPECT_EQ(n.vectors, m.vectors) << i;
        EXPECT_EQ(n.faces, m.faces) << i;
        EXPECT_EQ(n.faceTexCoords, m.faceTexCoords) << i;
        EXPECT_EQ(n.faceSecond, m.faceSecond) << i;
        ASSERT_EQ(n.texCoordCount(), m.texCoordCount()) << i;
    }
    EXPECT_EQ(back.objects[1].texCoords[1].v, 0.25f);
    ASSERT_TRUE(back.saveCpm("s_mdl\\y.cpm"));
    EXPECT_EQ(game.read("s_mdl\\y.cpm"), game.read("s_mdl\\x.cpm"));
}

TEST_F(CpmFile, HasTheBytesOfItsLayout) {
    cModel model;
    model.objects = {twoTextured(a, b)};
    ASSERT_TRUE(model.saveCpm("x.cpm"));
    cBinaryReader in("x.cpm");
    EXPECT_EQ(in.u32(), 1u);
    EXPECT_EQ(in.u8(), b);
    in.skip(2);
    EXPECT_EQ(in.u8(), 1) << "two textures";
    EXPECT_EQ(in.u8(), 20);
    EXPECT_EQ(in.zeroText(100), "img\\a.tga?img\\b.tga");
    for (const uint32_t expected : {1u, 0u, 3u, 1u, 3u}) EXPECT_EQ(in.u32(), expected);
    EXPECT_EQ(in.u8(), 2);
    EXPECT_EQ(in.u32(), 2u) << "second coordinates";
    in.skip(3 * 12);
    EXPECT_TRUE(in.vector3() == cVector3(0.5f, 0.75f, 0)) << "mode 2 has no normals flag";
    in.skip(12 + 3 * 8 + 12 + 12);
    for (const uint32_t expected : {1u, 0u, 1u}) EXPECT_EQ(in.u32(), expected);
    EXPECT_EQ(in.left(), 0u);
    EXPECT_TRUE(in.good());
}

TEST_F(CpmFile, MaterialsAreSharedInOrder) {
    struct Row {
        const char* what;
        std::vector<cModelObject> objects;
        size_t materials;
    } rows[] = {
        {"one colour twice", {triangle(1), triangle(1)}, 1},
        {"two colours", {triangle(1), triangle(2)}, 2},
        {"one texture, two colours", {textured(a, 1), textured(a, 2)}, 1},
        {"two textures, one colour", {textured(a, 1), textured(b, 1)}, 2},
        {"a material without texture takes its colour's textured objects", {triangle(1), textured(a, 1)}, 1},
        {"but not the other way round", {textured(a, 1), triangle(1)}, 2},
        {"second textures count", {twoTextured(a, b), twoTextured(a, b), twoTextured(a, a)}, 2},
        {"one and two textures never share", {textured(a, 1), twoTextured(a, b)}, 2},
    };
    for (const Row& row : rows) {
        cModel model;
        model.objects = row.objects;
        cMaterialList list;
        list.addFrom(model);
        EXPECT_EQ(list.records.size(), row.materials) << row.what;
    }
    cModel model;
    model.objects = {textured(a, 1), textured(a, 2)};
    ASSERT_TRUE(model.saveCpm("x.cpm"));
    ASSERT_EQ(model.load("x.cpm", false), 0);
    EXPECT_EQ(model.objects[1].colour.r, 1) << "the shared material has the first object's colour";
}

TEST_F(CpmFile, NamesAreCutToWhatTheirLengthByteHolds) {
    for (const size_t length : {size_t{0}, size_t{1}, size_t{254}, size_t{300}}) {
        cMaterialList list, back;
        list.records.push_back({{}, 1, std::string(length, 'x'), false});
        cBinaryWriter out;
        list.write(out);
        cBinaryReader in(out.bytes());
        ASSERT_TRUE(back.read(in));
        EXPECT_EQ(back.records[0].name.size(), std::min<size_t>(length, 254));
        EXPECT_EQ(in.left(), 0u);
    }
}

TEST_F(CpmFile, TheFilePartDecidesTheReader) {
    cModel model;
    model.objects = {triangle(1)};
    ASSERT_TRUE(model.saveCpm("x.obj.d\\x.cpm"));
    EXPECT_EQ(model.load("x.obj.d/x.cpm", false), 0);
    EXPECT_EQ(model.objects.size(), 1u);
    EXPECT_EQ(model.load("x.obj.d/x.Cpm", false), -1);
    EXPECT_STREQ(SDL_GetError(), "Unsupported file \"x.obj.d/x.Cpm\"");
    EXPECT_TRUE(model.objects.empty());
    EXPECT_TRUE(TempGame::errors().empty());
    EXPECT_EQ(model.load("none.cpm", false), -1);
    EXPECT_EQ(TempGame::errorCount("Failed to load model file none.cpm"), 1);
}

TEST_F(CpmFile, LoadsWithAnotherMaterial) {
    cModel model;
    model.objects = {textured(a, 9)};
    ASSERT_TRUE(model.saveCpm("x.cpm"));
    EXPECT_EQ(model.loadWithColour("x.cpm", 1, 2, 3), 0);
    const cModelObject& o = model.objects[0];
    EXPECT_TRUE(o.mode == kModeColour && o.texture == kNoTexture);
    EXPECT_EQ(o.colour, (cColour4{1, 2, 3, 0}));
    EXPECT_EQ(o.vectors[0], cVector3(0, 0, 1));
    for (const char* picture : {"img/b.tga", "none.tga"}) {
        EXPECT_EQ(model.loadWithTextureFile("x.cpm", picture), 0);
        const cModelObject& read = model.objects[0];
        EXPECT_TRUE(read.mode == kModeTexture && read.colour.r == 9);
        EXPECT_EQ(read.texture == a, picture == std::string("none.tga"))
            << "another separator is another name, a picture that fails changes nothing";
    }
}

TEST(Normals, FastEqualsPlainOnRandomMeshes) {
    TestRandom random;
    const auto corner = [&] { return static_cast<uint32_t>(random.index(40)); };
    for (int round = 0; round < 60; ++round) {
        std::vector<cVector3> positions;
        // Few distinct places, so that many coincide; zeros of both signs, and one that is no number.
        for (int i = 0; i < 40; ++i) {
            const auto c = [&] {
                return static_cast<float>(random.index(4) - 1) * (random.index(2) ? 0.37f : -0.37f);
            };
            positions.push_back({c(), c(), c()});
        }
        if (round % 8 == 0) positions[3].y = NAN;
        std::vector<FaceIndices> faces;
        for (int i = 0; i < 70; ++i) faces.push_back({corner(), corner(), corner()});
        const std::vector<cVector3> fast = smoothNormals(positions, faces),
                                    plain = plainNormals(positions, faces);
        for (size_t i = 0; i < fast.size(); ++i) {
            const bool bothNan = !fast[i].isFinite() && !plain[i].isFinite();
            ASSERT_TRUE(bothNan || fast[i] == plain[i]) << round << " vertex " << i;
        }
    }
}

TEST(ModelGeometry, CentreExtentAndScale) {
    cModel model;
    EXPECT_EQ(model.extent(), 0.0f);
    model.moveToCentre();
    model.scaleToExtent(5);
    for (const cModelObject& o : {triangle(1, -6), triangle(2, 3), cModelObject{}}) model.add(o);
    EXPECT_EQ(model.objects.size(), 2u) << "nothing to add";
    EXPECT_EQ(model.extent(), 6.0f);
    EXPECT_EQ(model.centre(), cVector3(-1, 0.5f, 0));
    model.moveToCentre();
    model.scaleToExtent(10);
    EXPECT_EQ(model.objects[0].positions[0], cVector3(-10, -1, 0));
    EXPECT_EQ(model.totalFaces(), 2);
    EXPECT_EQ(model.totalVertices(), 6);
}

TEST(SecondTexture, FastEqualsPlainOnRandomMeshes) {
    TempGame game;
    TestRandom random;
    const auto corner = [&] { return static_cast<uint32_t>(random.index(30)); };
    for (int round = 0; round < 30; ++round) {
        cModelObject a, b;
        for (cModelObject* o : {&a, &b}) {
            o->texture = 1;
            // Around cell borders, some nearer than 0.001 to another and some not.
            const auto c = [&] {
                return static_cast<float>(random.index(3) - 1) * 0.01f +
                       static_cast<float>(random.index(5) - 2) * 0.0006f;
            };
            for (int i = 0; i < 30; ++i) o->positions.push_back({c(), c(), 0});
            for (int i = 0; i < 60; ++i) o->faces.push_back({corner(), corner(), corner()});
            for (int i = 0; i < 60; ++i) o->faceTexCoords.push_back({corner(), corner(), corner()});
            for (int i = 0; i < 30; ++i) o->texCoords.push_back({random.number(0, 1), random.number(0, 1)});
        }
        b.texture = 300;
        cModel first, second;
        first.objects = {triangle(1), a};
        second.objects = {b};
        TempGame::clearErrors();
        first.applySecondTexture(second);
        EXPECT_EQ(TempGame::errors(), std::vector<std::string>{"Failed to apply second texture"});
        EXPECT_EQ(first.objects[0].mode, kModeColour) << "no object has as many faces";
        const cModelObject& result = first.objects[1];
        EXPECT_TRUE(result.mode == kModeTwoTextures && result.secondTexture() == 300);
        ASSERT_EQ(result.vectors.size(), 30u);
        EXPECT_EQ(result.vectors[7], cVector3(b.texCoords[7].u, b.texCoords[7].v, 0));
        std::vector<FaceIndices> plain(a.faces.size());
        for (size_t f = 0; f < b.faces.size(); ++f) {
            const FaceIndices &bf = b.faces[f], &coords = b.faceTexCoords[f];
            const auto near = [&](uint32_t i, uint32_t j) { return a.positions[i].isNear(b.positions[j]); };
            const auto match = std::find_if(a.faces.begin(), a.faces.end(), [&](const FaceIndices& af) {
                return std::all_of(af.begin(), af.end(), [&](uint32_t i) {
                    return near(i, bf[0]) || near(i, bf[1]) || near(i, bf[2]);
                });
            });
            for (size_t k = 0; match != a.faces.end() && k < 9; ++k) {
                if (near((*match)[k / 3], bf[k % 3]))
                    plain[size_t(match - a.faces.begin())][k / 3] = coords[k % 3];
            }
        }
        ASSERT_EQ(result.faceSecond, plain) << round;
    }
}
