#include "core/name_hash.h"
#include "data/binary_reader.h"
#include "models/cff.h"
#include "models/character_pose.h"
#include "models/md3.h"
#include "render/texture_cache.h"
#include "support/temp_game.h"

#include <SDL.h>
#include <cstring>
#include <gtest/gtest.h>

namespace {
const std::string kTga = std::string("\0\0\2\0\0\0\0\0\0\0\0\0\1\0\1\0\x18\0", 18) + "abc";

/// Two frames of one triangle; a tag per name.
cAnimModel part(std::initializer_list<const char*> tagNames) {
    cAnimModel p;
    cAnimMesh mesh;
    mesh.verticesPerFrame = 3;
    mesh.positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 4}, {1, 2, 4}, {0, 1, 4}};
    mesh.frameNormals = {{0, 0, 1}, {0, 0, 1}, {0, 0, 1}, {0, 1, 0}, {0, 1, 0}, {0, 1, 0}};
    mesh.texCoords = {{0, 0}, {1, 0}, {0, 1}};
    mesh.faces = {{0, 1, 2}};
    p.meshes = {mesh};
    p.meshTextures = {{"body", ""}};
    p.frameCount = 2;
    p.tagCount = static_cast<int32_t>(tagNames.size());
    for (const float z : {3.0f, 4.0f}) {
        for (const char* name : tagNames) {
            p.tags.emplace_back().origin = {1, 2, z};
            std::strncpy(p.tags.back().name.data(), name, p.tags[0].name.size() - 1);
        }
    }
    p.tagBlockSize = static_cast<int32_t>(p.tags.size()) * kTagBytes;
    p.attachments.assign(tagNames.size(), cAnimModel::kNothing);
    p.animations = {{"FIRST", 0, 2, 0, 20}, {"SECOND", 1, 2, 1, 10}, {"THIRD", 0, 1, 0, 0}};
    return p;
}

/// Surfaces u_0, u_1, … of one triangle each, one tag, two frames. What follows a name's zero is no part of
/// it.
platform::Bytes md3(int32_t version = 15, uint32_t lastIndex = 2, int32_t surfaces = 1, int32_t shaders = 1) {
    cBinaryWriter out;
    const int32_t surfaceAt = 108 + 2 * 56 + 2 * kTagBytes;
    out.raw("IDP3", 4);
    out.i32(version);
    out.fixedText("model", 64);
    for (const int32_t v : {0, 2, 1, surfaces, 0, 108, 108 + 2 * 56, surfaceAt, 0}) out.i32(v);
    for (int i = 0; i < 2 * 56; ++i) out.u8(0x77);
    for (int frame = 0; frame < 2; ++frame) {
        constexpr char kName[64] = "Tag_Torso\0_left over from a longer name";
        out.raw(kName, sizeof kName);
        for (const float v : {1.f, 2.f, 3.f, 1.f, 0.f, 0.f, 0.f, 1.f, 0.f, 0.f, 0.f, 1.f}) out.f32(v);
    }
    for (int32_t surface = 0; surface < surfaces; ++surface) {
        out.raw("IDP3", 4);
        out.fixedText("u_" + std::to_string(surface), 64);
        // flags, frames, shaders, vertices, triangles, and where each section lies
        const int32_t faces = 108 + 68 * shaders;
        for (const int32_t v : {0, 2, shaders, 3, 1, faces, 108, faces + 12, faces + 36, faces + 84})
            out.i32(v);
        for (int32_t i = 0; i < shaders; ++i) out.fixedText("shader", 68);
        for (const uint32_t i : {0u, 1u, lastIndex}) out.u32(i);
        for (const float v : {0.f, 0.25f, 0.5f, 0.75f, 1.f, 1.f}) out.f32(v);
        for (int frame = 0; frame < 2; ++frame) {
            for (const int v : {64, -128, 32, 0, 128, -128, 32, 0, 64, -64, 32, 0})
                out.u16(static_cast<uint16_t>(v + 64 * surface));
        }
    }
    return out.bytes();
}

class Parts : public ::testing::Test {
protected:
    ~Parts() override { cTextureCache::instance().releaseAll(); }
    TempGame game;
    cAnimModel read;
};
} // namespace

TEST_F(Parts, CffComesBackByteForByte) {
    cAnimModel written = part({"tag_a", "tag_b"});
    written.meshes.push_back(written.meshes[0]);
    written.meshTextures.push_back({"second", "none.tga"});
    std::memcpy(written.tags[0].name.data() + 40, "kept", 4);
    ASSERT_TRUE(writeCff(written, "x.cff"));
    const std::string bytes = game.read("x.cff");
    EXPECT_EQ(bytes.size(), 24u + 4 * 112 + 3 * 276 + 2 * (16 + 512 + 6 * 12 + 6 * 12 + 3 * 8 + 12));
    ASSERT_TRUE(readCffRaw(read, "x.cff"));
    EXPECT_EQ(read.currentMesh, "second");
    EXPECT_EQ(TempGame::errors().size(), 1u) << "an empty texture path is not asked for, a missing one is";
    ASSERT_TRUE(writeCff(read, "y.cff"));
    EXPECT_EQ(game.read("y.cff"), bytes);
    ASSERT_TRUE(readCff(read, "x.cff"));
    EXPECT_EQ(read.meshes[0].positions[4], cVector3(-2, 4, -1));
    EXPECT_EQ(read.tags[0].origin, cVector3(-2, 3, -1));
    EXPECT_EQ(read.tags[0].axis[2], cVector3(0, 0, 1)) << "axes and normals stay as stored";
    EXPECT_EQ(read.meshes[0].frameNormals[3], cVector3(0, 1, 0));
    EXPECT_FALSE(readCff(read, "none.cff"));
}

TEST_F(Parts, CffRefusesWhatCannotBe) {
    ASSERT_TRUE(writeCff(part({"tag_a"}), "good.cff"));
    const std::string good = game.read("good.cff");
    const size_t mesh = 24 + 2 * 112 + 3 * 276;
    const struct {
        const char* what;
        size_t at;
        int32_t value;
    } rows[] = {{"no frames", 8, 0},
                {"frames not tags / tag count", 8, 4},
                {"tag block too large", 20, 225},
                {"negative tag block", 20, -1},
                {"vertices not a multiple", mesh, 5},
                {"huge count", mesh + 4, 1 << 30},
                {"index behind a frame", good.size() - 4, 3}};
    for (const auto& row : rows) {
        std::string bytes = good;
        std::memcpy(bytes.data() + row.at, &row.value, 4);
        game.write("x.cff", bytes);
        EXPECT_FALSE(readCff(read, "x.cff")) << row.what;
    }
}

TEST_F(Parts, Md3ImportOfSeveralSurfacesWithTheirSkin) {
    platform::writeFile("m\\x.md3", md3(15, 2, 3, 2));
    ASSERT_TRUE(loadMd3(read, "m\\x.md3"));
    ASSERT_EQ(read.meshes.size(), 3u);
    for (size_t i = 0; i < 3; ++i) {
        const cAnimMesh& mesh = read.meshes[i];
        const float moved = static_cast<float>(i);
        EXPECT_EQ(mesh.positions.size(), 6u) << i;
        EXPECT_EQ(mesh.positions[0], cVector3(1 + moved, -2 + moved, 0.5f + moved)) << i;
        EXPECT_EQ(mesh.texCoords[1].u, 0.5f) << i;
        EXPECT_EQ(mesh.texCoords[1].v, -0.75f) << i;
        EXPECT_EQ(mesh.frameNormals[3], cVector3(0, 0, 1))
            << "the ordinary cross product, whatever the winding means";
        EXPECT_EQ(mesh.faces[0], (FaceIndices{0, 1, 2})) << i;
        EXPECT_EQ(read.meshTextures[i].meshName, "u_" + std::to_string(i));
    }
    EXPECT_EQ(read.currentMesh, "u_2");
    EXPECT_EQ(read.tagBlockSize, 2 * kTagBytes);
    EXPECT_EQ(read.findTag("TAG_TORSO"), 0);

    game.write("dir/head.tga", kTga);
    game.write("x.skin", "tag_head,\r\nu_1,models/none.tga\r\nu_2,models/players/head.tga\r\n");
    ASSERT_TRUE(loadSkin(read, "dir", "x.skin"));
    EXPECT_TRUE(TempGame::errors().empty()) << "only the last mesh's line counts";
    for (const cAnimMesh& mesh : read.meshes)
        EXPECT_EQ(cTextureCache::instance().fileName(mesh.texture), "dir/head.tga");
    ASSERT_EQ(read.meshTextures.size(), 1u);
    EXPECT_EQ(read.meshTextures[0].texturePath, "dir/head.tga");
    ASSERT_TRUE(writeCff(read, "x.cff"));
    ASSERT_TRUE(readCff(read, "x.cff"));
    EXPECT_EQ(read.meshes[0].positions[0], cVector3(2, 0.5f, -1));
    EXPECT_EQ(read.meshes[1].mode, kModeTexture) << "the last mesh's record decides";
}

TEST_F(Parts, WhatCannotBeImportedIsNamed) {
    EXPECT_FALSE(loadMd3(read, "none.md3"));
    EXPECT_STREQ(SDL_GetError(), "Did not find none.md3!");
    for (const platform::Bytes& bad : {md3(16), md3(15, 3)}) {
        platform::writeFile("y.md3", bad);
        EXPECT_FALSE(loadMd3(read, "y.md3"));
        EXPECT_STREQ(SDL_GetError(), "The file y.md3!");
    }
    EXPECT_FALSE(loadSkin(read, "dir", "none.skin"));
    EXPECT_STREQ(SDL_GetError(), "Could not load skin: none.skin");
    EXPECT_FALSE(loadShader(read, "dir", "none.shader"));
    EXPECT_STREQ(SDL_GetError(), "Could not load shader file: none.shader");
}

TEST_F(Parts, PosesBetweenFrames) {
    const cAnimModel p = part({});
    const struct {
        int32_t a, b;
        float t;
        cVector3 position, normal;
    } rows[] = {{0, 1, 0, {1, 0, 0}, {0, 0, 1}},
                {0, 1, 1, {1, 2, 4}, {0, 1, 0}},
                {0, 1, 0.5f, {1, 1, 2}, {0, 0.70710678f, 0.70710678f}},
                {1, 2, 0.5f, {1, 2, 4}, {0, 1, 0}},
                {-3, -3, 0.5f, {1, 0, 0}, {0, 0, 1}}};
    std::vector<cVector3> positions, normals;
    for (const auto& row : rows) {
        ASSERT_EQ(poseMesh(p.meshes[0], row.a, row.b, row.t, positions, normals), 3u);
        EXPECT_TRUE(positions[1].isNear(row.position)) << row.a << " " << row.b << " " << row.t;
        EXPECT_TRUE(normals[1].isNear(row.normal)) << row.a << " " << row.b << " " << row.t;
    }
}

TEST_F(Parts, TagsTurnAlongTheShorterArc) {
    const cVector3 p(3, 5, 7);
    for (const float degrees : {0.0f, 1.0f, 80.0f, 170.0f, -170.0f}) {
        for (const auto turn : {&cMatrix4::rotationX, &cMatrix4::rotationY, &cMatrix4::rotationZ}) {
            const cMatrix4 turned = turn(degrees);
            const float* m = turned.m;
            read = part({"t"});
            read.tags[1].axis = {cVector3{m[0], m[1], m[2]}, {m[4], m[5], m[6]}, {m[8], m[9], m[10]}};
            for (const float t : {0.0f, 0.25f, 0.5f, 1.0f}) {
                const cVector3 expected = turn(degrees * t).transformDirection(p) + cVector3(1, 2, 3 + t);
                EXPECT_TRUE(read.tagTransform(0, 0, 1, t).transformPoint(p).isNear(expected))
                    << m[0] << " " << m[5] << " " << degrees << " " << t;
            }
        }
    }
}

namespace {
class Characters : public Parts {
protected:
    Characters() {
        writeCff(part({"TAG_torso"}), "c/x_lower.cff");
        writeCff(part({"other", "tag_HEAD"}), "c/x_upper.cff");
        writeCff(part({}), "c/x_head.cff");
    }
    /// The lower body's frameA after each 50 ms.
    static std::string frames(cCharacterPose& pose, int steps) {
        std::string result;
        for (int i = 1; i <= steps; ++i) {
            pose.advance(static_cast<uint32_t>(i) * 50);
            result += std::to_string(pose.getState(kLowerPart).frameA) + " ";
        }
        return result;
    }
    cCharacterModel model;
};
} // namespace

TEST_F(Characters, LoadAttachesAndReportsTheMissingPart) {
    ASSERT_TRUE(model.loadCff("c", "x"));
    EXPECT_EQ(model.partCount, 3);
    EXPECT_EQ(model.parts[kLowerPart].attachments, std::vector<int>{kUpperPart});
    EXPECT_EQ(model.parts[kUpperPart].attachments, (std::vector<int>{cAnimModel::kNothing, kHeadPart}));
    EXPECT_TRUE(model.carriesOnFirstTag(kLowerPart));
    EXPECT_FALSE(model.carriesOnFirstTag(kUpperPart));
    EXPECT_TRUE(model.writeCff("d/y"));
    EXPECT_TRUE(platform::fileExists("d/y_head.cff"));
    EXPECT_FALSE(cCharacterModel{}.writeCff("d/z"));
    cCharacterModel broken;
    writeCff(part({}), "c/z_head.cff");
    EXPECT_FALSE(broken.loadCff("c", "z"));
    EXPECT_EQ(broken.partCount, 1);
    EXPECT_STREQ(SDL_GetError(), "Cannot load the Upper model: \"c\\z_upper.cff\"");
    EXPECT_FALSE(broken.loadWeapon("c", "gun"));
    EXPECT_STREQ(SDL_GetError(), "Cannot load the Weapon model: \"c\\gun.md3\"");
}

TEST_F(Characters, Md3SetNeedsSkinsAndAnimations) {
    const std::string bodies[] = {"lower", "upper", "head"};
    for (const std::string& body : bodies) platform::writeFile("m/x_" + body + ".md3", md3());
    EXPECT_FALSE(model.loadMd3("m", "x"));
    EXPECT_STREQ(SDL_GetError(), "Cannot load the Lower skin: \"m\\lower_default.skin\"");
    for (const std::string& body : bodies) game.write("m/" + body + "_default.skin", "");
    EXPECT_FALSE(cCharacterModel{}.loadMd3("m", "x"));
    game.write("m/animation.cfg", "0 1 0 20 // BOTH_X\n");
    cCharacterModel whole;
    ASSERT_TRUE(whole.loadMd3("m", "x"));
    EXPECT_EQ(whole.parts[kLowerPart].attachments[0], kUpperPart);
    whole.scale(2);
    EXPECT_EQ(whole.parts[kHeadPart].meshes[0].positions[0], cVector3(2, -4, 1));
    EXPECT_EQ(whole.parts[kHeadPart].tags[0].origin, cVector3(2, 4, 6));
}

TEST_F(Characters, AnimationTable) {
    std::string text = "// comment 1 2 3\r\nsex\tm\r\n\r\nheadoffset 0 0 0\r\nfootsteps normal\r\n";
    const auto add = [&](const std::string& kind, int count, int first) {
        for (int i = 0; i < count; ++i) {
            text += std::to_string(first + i * 10) + "\t10 5 20\t// " + kind + std::to_string(i) +
                    "\t\t(MUST NOT CHANGE -- 3 20 1)\r\n";
        }
    };
    add("BOTH_", 6, 0);
    add("TORSO_", 7, 60);
    add("LEGS_", 4, 130);
    game.write("animation.cfg", text);
    ASSERT_TRUE(model.readAnimations("animation.cfg"));
    const auto &upper = model.parts[kUpperPart].animations, &lower = model.parts[kLowerPart].animations;
    ASSERT_EQ(upper.size(), 13u);
    ASSERT_EQ(lower.size(), 10u);
    EXPECT_EQ(upper[6].name, "TORSO_0");
    EXPECT_EQ(lower[6].firstFrame, 60) << "legs follow the shared frames";
    EXPECT_EQ(lower[9].endFrame, 100);
    EXPECT_EQ(lower[9].fps, 20);
    EXPECT_FALSE(model.readAnimations("none.cfg"));

    cCharacterModel many, early;
    text.clear();
    add("BOTH_", 40, 0);
    game.write("animation.cfg", text);
    ASSERT_TRUE(many.readAnimations("animation.cfg"));
    EXPECT_EQ(many.parts[kLowerPart].animations.size(), 32u);
    game.write("animation.cfg", "5 2 0 10 // LEGS_A\n9 99999999999 0");
    ASSERT_TRUE(early.readAnimations("animation.cfg"));
    EXPECT_EQ(early.parts[kLowerPart].animations[0].firstFrame, 5);
}

TEST_F(Characters, AnimationsAreFoundByNameAndHash) {
    ASSERT_TRUE(model.loadCff("c", "x"));
    const auto shared = std::make_shared<cCharacterModel>(model);
    cCharacterPose pose(shared), other(shared);
    EXPECT_TRUE(pose.setAnimation(kLowerPart, "second"));
    EXPECT_EQ(pose.getCurrentAnimation(), nameHash("SECOND")) << "the name as it stands in the table";
    EXPECT_EQ(pose.getState(kLowerPart).frameA, 1);
    EXPECT_FALSE(pose.isPlaying()) << "only the animation is set";
    EXPECT_FALSE(pose.setAnimation("FIRST", "nothing"));
    EXPECT_EQ(pose.getState(kLowerPart).current, 0);
    EXPECT_TRUE(pose.setAnimationByHash(nameHash("THIRD"), nameHash("SECOND")));
    EXPECT_EQ(pose.getState(kUpperPart).current, 1);
    EXPECT_FALSE(pose.setAnimationByIndex(kLowerPart, 3));
    EXPECT_EQ(other.getState(kUpperPart).current, 0) << "each pose is its own";
    EXPECT_FALSE(cCharacterPose().setAnimation(kLowerPart, "FIRST"));
    cCharacterPose().advance(5);
}

TEST_F(Characters, PlaysLoopsAndEnds) {
    const auto playing = std::make_shared<cCharacterModel>();
    playing->parts[kLowerPart].animations = playing->parts[kUpperPart].animations = {{"RUN", 10, 14, 0, 20}};
    cCharacterPose pose(playing);
    pose.setAnimation("RUN", "RUN");
    EXPECT_EQ(frames(pose, 2), "10 10 ") << "nothing moves before it is set playing";
    pose.setPlaying(true);
    pose.setLooping(true);
    EXPECT_EQ(frames(pose, 6), "11 12 13 10 11 12 ");
    pose.advance(325);
    EXPECT_FLOAT_EQ(pose.getState(kLowerPart).t, 0.5f);
    EXPECT_EQ(pose.getState(kLowerPart).frameB, 13);

    pose = cCharacterPose(playing);
    pose.setAnimation("RUN", "RUN");
    pose.setPlaying(true);
    std::vector<uint32_t> ends;
    for (uint32_t step = 1; step <= 8; ++step) pose.advance(step * 50, [&] { ends.push_back(step); });
    EXPECT_EQ(ends, std::vector<uint32_t>{4})
        << "where frameB leaves the animation, for legs and torso at once";
    EXPECT_FALSE(pose.isPlaying());
    playing->parts[kLowerPart].animations[0].fps = 0;
    pose.setAnimation(kLowerPart, "RUN");
    pose.setPlaying(true);
    EXPECT_EQ(frames(pose, 3), "10 10 10 ") << "no speed, no movement";
}
