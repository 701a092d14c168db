#include "data/binary_reader.h"
#include "models/load_3ds.h"
#include "models/load_obj.h"
#include "models/model.h"
#include "render/texture_cache.h"
#include "support/temp_game.h"
#include "support/test_level.h"

#include <SDL.h>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>

namespace {
const std::string kTga = std::string("\0\0\2\0\0\0\0\0\0\0\0\0\1\0\1\0\x18\0", 18) + "abc";

std::string number16(unsigned v) {
    return {static_cast<char>(v), static_cast<char>(v >> 8)};
}
std::string number32(size_t v) {
    return number16(v & 0xFFFF) + number16(static_cast<unsigned>(v >> 16));
}
std::string floats(std::initializer_list<float> values) {
    cBinaryWriter out;
    for (const float v : values) out.f32(v);
    return {out.bytes().begin(), out.bytes().end()};
}
std::string chunk(unsigned id, const std::string& body) {
    return number16(id) + number32(body.size() + 6) + body;
}
std::string zeroed(const std::string& s) {
    return s + '\0';
}

/// With chunks that are passed over, as files of other makers have them: other colours, other maps, shares.
std::string material(const std::string& name, const std::string& colour, const std::string& map) {
    return chunk(
        0xAFFF,
        chunk(0xA000, zeroed(name)) + chunk(0xA010, chunk(0x0011, "\1\1\1")) +
            chunk(0xA020, chunk(0x0011, colour) + chunk(0x0012, "\2\2\2")) +
            (map.empty() ? "" : chunk(0xA200, chunk(0x0030, number16(100)) + chunk(0xA300, zeroed(map)))) +
            chunk(0xA230, chunk(0xA300, zeroed("bump.tga"))));
}
std::string mesh(const std::string& faceTail, unsigned badIndex = 2) {
    const std::string vertices = number16(3) + floats({1, 2, 3, 4, 5, 6, 7, 8, 9});
    const std::string faces = number16(2) + number16(0) + number16(1) + number16(2) + number16(7) +
                              number16(2) + number16(1) + number16(badIndex) + number16(7);
    const std::string coords = number16(3) + floats({0, 0.25f, 0.5f, 0.75f, 1, 1});
    const std::string flags = chunk(0x4111, number16(3) + std::string(6, '\0')) + chunk(0x4165, "\7"),
                      smoothing = chunk(0x4150, number32(1) + number32(1));
    return chunk(0x4000,
                 zeroed("thing") + chunk(0x4100, chunk(0x4110, vertices) + flags + chunk(0x4140, coords) +
                                                     chunk(0x4120, faces + smoothing + faceTail)));
}
std::string file3ds(const std::string& editor) {
    const std::string keys = chunk(0xB000, chunk(0xB002, chunk(0xB010, zeroed("thing") + "123456")));
    return chunk(0x4D4D,
                 chunk(0x0002, number32(3)) + chunk(0x3D3D, chunk(0x3D3E, number32(3)) + editor) + keys);
}
const std::string kLamp = chunk(0x4000, zeroed("lamp") + chunk(0x4600, floats({1, 2, 3})));
const std::string kGood = file3ds(
    material("red", "\x0A\x14\x1E", "") + material("a wall", "\1\2\3", "a.tga") +
    material("red", "\x28\x32\x3C", "") + mesh(chunk(0x4130, zeroed("a wall") + "xx")) + kLamp +
    mesh(chunk(0x4130, zeroed("a wall")) + chunk(0x4130, zeroed("red")) + chunk(0x4130, zeroed("unknown"))));

class Import : public ::testing::Test {
protected:
    Import() { game.write("3ds/a.tga", kTga); }
    ~Import() override { cTextureCache::instance().releaseAll(); }
    int read3ds(const std::string& bytes) {
        game.write("3ds/x.3ds", bytes);
        return model.load("3ds\\x.3ds", false);
    }
    int readObj(const std::string& text) {
        game.write("3ds/x.obj", text);
        return model.load("3ds\\x.obj", false);
    }
    TempGame game;
    cModel model;
};
} // namespace

TEST_F(Import, ThreeDsMeshesAndMaterials) {
    ASSERT_EQ(read3ds(kGood + "trailing bytes"), 0);
    ASSERT_EQ(model.objects.size(), 2u) << "a lamp is no mesh";
    const cModelObject &o = model.objects[0], &second = model.objects[1];
    EXPECT_EQ(o.positions[0], cVector3(1, 3, -2)) << "z up becomes y up";
    EXPECT_EQ(o.faces, (std::vector<FaceIndices>{{0, 1, 2}, {2, 1, 2}}));
    EXPECT_EQ(o.faceTexCoords, o.faces);
    EXPECT_EQ(o.texCoords[0].v, 0.25f);
    EXPECT_EQ(o.mode, kModeTexture);
    EXPECT_EQ(cTextureCache::instance().fileName(o.texture), "3ds\\a.tga");
    EXPECT_EQ(o.colour, (cColour4{1, 2, 3, 0}));
    EXPECT_EQ(second.mode, kModeColour);
    EXPECT_EQ(second.texture, kNoTexture);
    EXPECT_EQ(second.colour, (cColour4{40, 50, 60, 0}))
        << "the last chunk, and the last material of its name";
    EXPECT_TRUE(TempGame::errors().empty()) << "other maps are not loaded";
}

TEST_F(Import, ThreeDsFailures) {
    EXPECT_EQ(model.load("3ds\\none.3ds", true), -1);
    EXPECT_STREQ(SDL_GetError(), "Couldn't find file \"none.3ds\"");
    EXPECT_EQ(read3ds(chunk(0x4D4E, "")), -1);
    EXPECT_STREQ(SDL_GetError(), "File \"x.3ds\" is corrupt");
    ASSERT_EQ(read3ds(file3ds(mesh("", 3))), 0);
    EXPECT_EQ(model.objects[0].faces.size(), 1u) << "a face that names a missing vertex is dropped";
    const auto bare = [](const std::string& editor) {
        return chunk(0x4D4D, chunk(0x3D3D, chunk(0x3D3E, "") + editor));
    };
    const std::string cut = bare(mesh("") + mesh(""));
    ASSERT_EQ(read3ds(cut.substr(0, cut.size() - 20)), 0);
    EXPECT_EQ(model.objects.size(), 1u) << "what stands before the cut is kept";
    std::string deep;
    for (int i = 0; i < 5000; ++i) deep = chunk(0x4100, deep);
    EXPECT_EQ(read3ds(file3ds(chunk(0x4000, zeroed("") + deep))), 0);
    // A name without its zero ends with its chunk and spoils nothing behind it.
    const std::string open = chunk(0xAFFF, chunk(0xA000, "open") + chunk(0xA020, chunk(0x0011, "\1\2\3")));
    ASSERT_EQ(read3ds(bare(open + chunk(0x4000, "open") + mesh("") + mesh(chunk(0x4130, "open")))), 0);
    ASSERT_EQ(model.objects.size(), 2u);
    EXPECT_EQ(model.objects[1].colour, (cColour4{1, 2, 3, 0}));
}

TEST_F(Import, ObjGroupsCountTheirOwnIndices) {
    game.write("3ds/x.mtl", "newmtl other\r\nKd  1 1 1\r\nnewmtl first\r\nKd  0.5 1.0 0.25\r\n"
                            "map_Kd -s 2 3 1 a.tga\r\nnewmtl last\r\nmap_Kd a.tga\r\n");
    ASSERT_EQ(
        readObj("# comment\r\nmtllib x.mtl\r\nv 1 2 3\r\nv 0 0 0\r\nv 1 0 0\r\nvt 0.5 0.25\r\nvt 1 1\r\n"
                "usemtl first\r\nf 1/1 2/2 3/1\r\nf 3/1 2/2 1/1\r\n"
                "v 5 0 0\r\nv 6 0 0\r\nv 7 0 0\r\nvn 1 0 0\r\nf 4 5 6\r\nf 4 5 1\r\nf 4 5 7\r\nf 4 5\r\n"),
        0);
    ASSERT_EQ(model.objects.size(), 2u);
    const cModelObject &first = model.objects[0], &second = model.objects[1];
    EXPECT_EQ(first.positions[0], cVector3(1, 3, -2));
    EXPECT_EQ(first.faces, (std::vector<FaceIndices>{{0, 1, 2}, {2, 1, 0}}));
    EXPECT_EQ(first.faceTexCoords[0], (FaceIndices{0, 1, 0}));
    EXPECT_EQ(first.colour, (cColour4{128, 0, 64, 0})) << "a full component wraps to 0";
    EXPECT_EQ(first.mode, kModeTexture);
    EXPECT_EQ(first.texCoords[0].u, 1.0f);
    EXPECT_EQ(first.texCoords[0].v, 0.75f);
    EXPECT_EQ(second.faces, (std::vector<FaceIndices>{{0, 1, 2}}))
        << "faces with foreign indices are dropped";
    EXPECT_EQ(second.texture, kNoTexture) << "the material's name is forgotten with its object";
}

TEST_F(Import, ObjMaterialIsTheOneInForceAtTheNextVertex) {
    game.write("3ds/x.mtl", "newmtl a\nKd 0.5 0 0\nnewmtl b\nKd 0.25 0 0\n");
    const std::string triangle = "v 0 0 0\nv 1 0 0\nv 0 1 0\n";
    ASSERT_EQ(readObj("mtllib x.mtl\nusemtl a\n" + triangle + "f 1 2 3\nusemtl b\n" + triangle + "f 4 5 6\n"),
              0);
    ASSERT_EQ(model.objects.size(), 2u);
    EXPECT_EQ(model.objects[0].colour.r, 64);
    EXPECT_EQ(model.objects[1].colour.r, 255);
    EXPECT_EQ(readObj("f 1 2 3\nv 1\nf 9999999999 -1 2\n" + std::string(600, 'g') + " v 1 1 1"), 0);
    EXPECT_TRUE(model.objects.empty());
    EXPECT_EQ(model.load("3ds\\none.obj", true), -1);
}

TEST_F(Import, ObjOfAnotherMaker) {
    game.write("3ds/x.mtl", "# made elsewhere\r\nnewmtl wall\r\n\tNs 10\r\n\tKd 0.5 0.25 0.125\r\n"
                            "\tillum 2\r\nnewmtl wall\r\nKd 0.75 0 0\r\nmap_Kd none.tga");
    const std::string corners = "v 1 2 3\r\nv 0 0 0 1.0\r\nv  1.5e0 0 -0\r\n";
    const std::string longLine = "# " + std::string(254, 'x') + "v 9 9 9 f 1 2 3\r\n";
    const struct {
        const char* what;
        std::string text;
        size_t objects;
        uint8_t red;
    } rows[] = {
        {"a triangle", corners + "f 1 2 3\r\n", 1, 255},
        {"no newline at the end", corners + "f 1 2 3", 1, 255},
        {"other keywords",
         "o Box\r\ng all\r\ns 1\r\n\r\nmg 1 0.5\r\n" + corners + "vn 0 0 1\r\nvp 1\r\nf 1 2 3\r\n", 1, 255},
        {"a long line is one line", longLine + corners + longLine + "f 1 2 3\r\n" + longLine, 1, 255},
        {"the first three corners of a quad", corners + "v 4 4 4\r\nf 1 2 3 4\r\n", 1, 255},
        {"normals without coordinates", corners + "vn 0 0 1\r\nf 1//1 2//1 3//1\r\n", 0, 0},
        {"three indices a corner", corners + "vt 0 0\r\nvn 0 0 1\r\nf 1/1/1 2/1/1 3/1/1\r\n", 0, 0},
        {"backward indices", corners + "f -3 -2 -1\r\n", 0, 0},
        {"the first block of a material", "mtllib x.mtl\r\nusemtl wall\r\n" + corners + "f 1 2 3\r\n", 1,
         128},
        {"names left out", "mtllib x.mtl\r\nmtllib\r\nusemtl wall\r\nusemtl \r\n" + corners + "f 1 2 3\r\n",
         1, 128},
        {"a library's name with a blank", "mtllib my x.mtl\r\nusemtl wall\r\n" + corners + "f 1 2 3\r\n", 1,
         255},
        {"no library", "mtllib none.mtl\r\nusemtl wall\r\n" + corners + "f 1 2 3\r\n", 1, 255},
    };
    for (const auto& row : rows) {
        ASSERT_EQ(readObj(row.text), 0) << row.what;
        ASSERT_EQ(model.objects.size(), row.objects) << row.what;
        if (row.objects == 0) continue;
        const cModelObject& o = model.objects[0];
        EXPECT_EQ(o.positions[0], cVector3(1, 3, -2)) << row.what;
        EXPECT_EQ(o.positions[2].x, 1.5f) << row.what;
        EXPECT_EQ(o.faces, (std::vector<FaceIndices>{{0, 1, 2}})) << row.what;
        EXPECT_EQ(o.colour.r, row.red) << row.what;
        EXPECT_EQ(o.mode, kModeColour) << row.what;
    }
    EXPECT_TRUE(TempGame::errors().empty()) << "no picture was asked for";
}

TEST_F(Import, ObjReadsSoManyLibrariesAndNoMore) {
    game.write("3ds/one.mtl", "newmtl m\nKd 0.25 0 0\n");
    game.write("3ds/two.mtl", "newmtl m\nKd 0.5 0 0\n");
    const std::string group = "v 1 2 3\nv 0 0 0\nv 1 0 0\nusemtl m\nf 1 2 3\n";
    for (const auto& [before, red] : {std::pair{255, 128}, {256, 64}}) {
        std::string text;
        for (int i = 0; i < before; ++i) text += "mtllib one.mtl\n";
        ASSERT_EQ(readObj(text + "mtllib two.mtl\n" + group), 0);
        EXPECT_EQ(model.objects[0].colour.r, red) << before;
    }
}

namespace {
/// Now and then something else than a number.
template <size_t kCount>
std::string oddWord(TestRandom& random, const char* const (&odd)[kCount], const std::string& usual) {
    return random.index(3) ? usual : odd[static_cast<size_t>(random.index(kCount))];
}
std::string oddNumber(TestRandom& random) {
    constexpr const char* kOdd[] = {"1e",   "+3",   ".5",    "-.25", "0x1F",       "nan", "inf",
                                    "1e99", "-",    "1e-50", "5.",   "1.5f",       "--1", "1,5",
                                    "7\v",  "12/3", "/",     "",     "99999999999"};
    return oddWord(random, kOdd, std::to_string(random.number(-900, 900)));
}
std::string oddIndex(TestRandom& random) {
    constexpr const char* kOdd[] = {"1", "+2",  "0",  "-1",   "4294967297", "3x",
                                    "",  "2.0", " 3", "1//1", "1/",         "2/1/1"};
    return oddWord(random, kOdd, std::to_string(1 + random.index(3)));
}
const char* blank(TestRandom& random) {
    constexpr const char* kBlanks[] = {" ", " ", " ", "  ", "\t", "", "/"};
    return kBlanks[static_cast<size_t>(random.index(std::size(kBlanks)))];
}
} // namespace

TEST(Obj, NumbersReadAsScanfReadsThem) {
    TempGame game;
    TestRandom random;
    for (int round = 0; round < 300; ++round) {
        std::string text;
        std::vector<cVector3> expected;
        for (int i = 0; i < 60; ++i) {
            std::string line;
            for (int k = 0; k < 3; ++k) line += oddNumber(random) + blank(random);
            float x = 0, z = 0, y = 0;
            std::sscanf(line.c_str(), "%f %f %f", &x, &z, &y);
            expected.push_back({x, y, -z});
            text += "v " + line + "\n";
        }
        game.write("odd.obj", text + "f 1 2 3\n");
        cModel model;
        ASSERT_EQ(loadObj("odd.obj", model), 0);
        ASSERT_EQ(model.objects.at(0).positions.size(), expected.size());
        ASSERT_EQ(std::memcmp(model.objects[0].positions.data(), expected.data(),
                              expected.size() * sizeof(cVector3)),
                  0)
            << round;
    }
}

TEST(Obj, FacesReadAsScanfReadsThem) {
    TempGame game;
    TestRandom random;
    using Numbers = std::array<int32_t, 3>;
    const auto inside = [](const Numbers& n) {
        return std::ranges::all_of(n, [](int32_t i) { return i >= 1 && i <= 3; });
    };
    const auto indices = [](const Numbers& n) {
        return FaceIndices{uint32_t(n[0] - 1), uint32_t(n[1] - 1), uint32_t(n[2] - 1)};
    };
    int kept = 0;
    for (int round = 0; round < 600; ++round) {
        const bool textured = round % 2;
        std::string text = "v 0 0 0\nv 1 0 0\nv 0 1 0\n";
        if (textured) text += "vt 0 0\nvt 1 0\nvt 0 1\n";
        std::vector<FaceIndices> faces, coords;
        for (int i = 0; i <= 40; ++i) {
            std::string line = blank(random);
            for (int k = 0; k < 3; ++k)
                line += oddIndex(random) + (textured ? "/" + oddIndex(random) : "") + blank(random);
            if (i == 0) line = textured ? " 1/1 2/2 3/3" : " 1 2 3"; // so that there is an object
            text += "f" + line + "\n";
            Numbers p{}, t{1, 1, 1};
            if (textured) {
                t = {};
                std::sscanf(line.c_str(), "%d/%d %d/%d %d/%d", &p[0], &t[0], &p[1], &t[1], &p[2], &t[2]);
            } else {
                std::sscanf(line.c_str(), "%d %d %d", &p[0], &p[1], &p[2]);
            }
            if (!inside(p) || !inside(t)) continue;
            faces.push_back(indices(p));
            coords.push_back(indices(t));
            ++kept;
        }
        game.write("odd.obj", text);
        cModel model;
        ASSERT_EQ(loadObj("odd.obj", model), 0);
        ASSERT_EQ(model.objects.at(0).faces, faces) << text;
        ASSERT_EQ(model.objects[0].faceTexCoords, coords) << text;
    }
    EXPECT_GT(kept, 1100);
}
