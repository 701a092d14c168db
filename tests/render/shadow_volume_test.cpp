#include "render/shadow_volume.h"

#include "core/matrix4.h"
#include "models/character_pose.h"
#include "platform/gl_api.h"
#include "support/gl_window.h"
#include "support/test_level.h"

#include <cmath>

namespace {
/// A closed cube around the origin; each face's corners are its own.
cModelObject cube(float half) {
    constexpr uint32_t kQuads[6][4] = {{0, 4, 6, 2}, {1, 3, 7, 5}, {0, 1, 5, 4},
                                       {2, 6, 7, 3}, {0, 2, 3, 1}, {4, 5, 7, 6}};
    cModelObject o;
    for (const auto& q : kQuads) {
        for (const uint32_t i : {q[0], q[1], q[2], q[0], q[2], q[3]})
            o.positions.push_back({i & 1 ? half : -half, i & 2 ? half : -half, i & 4 ? half : -half});
    }
    for (uint32_t i = 0; i < o.positions.size(); i += 3) o.faces.push_back({i, i + 1, i + 2});
    return o;
}

std::vector<FaceIndices> plainNeighbours(const cModelObject& o) {
    std::vector<FaceIndices> result;
    const auto has = [&](size_t f, const cVector3& p) {
        return o.positions[o.faces[f][0]] == p || o.positions[o.faces[f][1]] == p ||
               o.positions[o.faces[f][2]] == p;
    };
    for (size_t f = 0; f < o.faces.size(); ++f) {
        FaceIndices n;
        for (size_t k = 0; k < 3; ++k) {
            const cVector3 &a = o.positions[o.faces[f][k]], &b = o.positions[o.faces[f][(k + 1) % 3]];
            size_t other = 0;
            while (other < o.faces.size() && (other == f || !has(other, a) || !has(other, b))) ++other;
            n[k] = static_cast<uint32_t>(other);
        }
        result.push_back(n);
    }
    return result;
}

using ShadowPass = GlTest;
} // namespace

TEST(ShadowVolume, FastNeighboursEqualPlainOnRandomMeshes) {
    TestRandom random;
    const auto corner = [&] { return static_cast<uint32_t>(random.index(30)); };
    for (int round = 0; round < 80; ++round) {
        cModelObject o;
        for (int i = 0; i < 30; ++i) {
            const auto c = [&] {
                return static_cast<float>(random.index(2 + round % 5)) * (random.index(2) ? 1.f : -1.f);
            };
            o.positions.push_back({c(), c(), 0.0f});
        }
        if (round % 8 == 0) o.positions[5].x = NAN;
        for (int i = 0; i < 40; ++i) o.faces.push_back({corner(), corner(), corner()});
        shadowVolume::computeNeighbours(o);
        ASSERT_EQ(o.neighbours, plainNeighbours(o)) << round;
    }
}

TEST(ShadowVolume, AFaceInItsOwnPlaneCountsAsLit) {
    cModelObject lone;
    lone.positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}};
    lone.faces = {{0, 1, 2}};
    shadowVolume::computeNeighbours(lone);
    for (const float z : {1.0f, 0.0f, -1.0f}) {
        std::vector<cVector3> quads;
        shadowVolume::computeLitFaces(lone, {0, 0, z});
        shadowVolume::silhouetteQuads(lone, lone.positions, lone.litFaces, {0, 0, z}, quads);
        EXPECT_EQ(quads.size(), z >= 0 ? 12u : 0u) << z;
    }
}

/// A cube hovers over a floor seen slantwise, the light above it: the floor is dark below the cube and
/// nowhere else.
TEST_F(ShadowPass, DarkensWhatTheCubeHidesFromTheLight) {
    glEnable(GL_DEPTH_TEST);
    glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(cMatrix4::perspective(45, 1, 0.1f, 3000).m);
    glMatrixMode(GL_MODELVIEW);
    glTranslatef(0, 0, -20);
    glRotatef(60, 1, 0, 0);
    glColor3ub(200, 200, 200);
    glBegin(GL_QUADS);
    for (const auto& [x, z] : {std::pair(-50.f, -50.f), {-50.f, 50.f}, {50.f, 50.f}, {50.f, -50.f}})
        glVertex3f(x, -3, z);
    glEnd();
    const cVector3 light(-6, 4, 0); // casts towards +x
    std::vector<cModelObject> objects{cube(0.5f)};
    shadowVolume::prepare(objects);
    shadowVolume::computeLitFaces(objects, light);
    glEnable(GL_BLEND);
    shadowVolume::begin();
    shadowVolume::draw(objects, light);
    shadowVolume::second();
    shadowVolume::draw(objects, light);
    shadowVolume::end();
    glDisable(GL_BLEND);

    double modelview[16], projection[16], u = 0, v = 0, depth = 0;
    const GLint viewport[4] = {-1, -1, 2, 2};
    glGetDoublev(GL_MODELVIEW_MATRIX, modelview);
    glGetDoublev(GL_PROJECTION_MATRIX, projection);
    // The line from the light through the cube's centre meets the floor at x = 4.5.
    for (const auto& [x, dark] :
         {std::pair(4.5f, true), {4.0f, true}, {-3.0f, false}, {0.0f, false}, {7.5f, false}}) {
        gluProject(x, -3, 0, modelview, projection, viewport, &u, &v, &depth);
        const auto px = static_cast<float>(u), py = static_cast<float>(v);
        EXPECT_EQ(stencil(px, py) != 0, dark) << x;
        EXPECT_NEAR(static_cast<int>(pixel(px, py) & 255), dark ? 125 : 200, 1) << x;
    }
    GLboolean depthWrites = 0, colourWrites[4] = {};
    glGetBooleanv(GL_DEPTH_WRITEMASK, &depthWrites);
    glGetBooleanv(GL_COLOR_WRITEMASK, colourWrites);
    EXPECT_TRUE(depthWrites && colourWrites[0]);
    EXPECT_FALSE(glIsEnabled(GL_STENCIL_TEST) || glIsEnabled(GL_CULL_FACE));
}

/// Two level squares side by side, the second hanging on the first by a tag; both cast straight down.
TEST_F(ShadowPass, ACharactersHeadCastsUnlessToldNotTo) {
    auto model = std::make_shared<cCharacterModel>();
    for (const CharacterPart part : {kLowerPart, kUpperPart}) {
        cAnimMesh mesh;
        mesh.verticesPerFrame = 4;
        mesh.positions = {
            {-0.8f, 0.5f, -0.1f}, {-0.8f, 0.5f, 0.1f}, {-0.2f, 0.5f, 0.1f}, {-0.2f, 0.5f, -0.1f}};
        mesh.faces = {{0, 1, 2}, {0, 2, 3}};
        model->parts[part].meshes = {mesh};
    }
    cTag tag;
    tag.origin = {1, 0, 0};
    model->parts[kLowerPart].tags = {tag};
    model->parts[kLowerPart].tagCount = 1;
    model->parts[kLowerPart].attachments = {kUpperPart};
    cCharacterPose pose(model);
    const cVector3 light(0, 100, 0);
    shadowVolume::begin();
    pose.drawShadowVolume(light, cMatrix4::identity());
    EXPECT_EQ(stencil(-0.5f, -0.5f), 0) << "the model is not prepared";
    model->prepareShadowData();
    pose.setHeadShadow(false);
    pose.drawShadowVolume(light, cMatrix4::identity());
    EXPECT_NE(stencil(-0.5f, -0.5f), 0);
    EXPECT_EQ(stencil(-0.5f, 0.8f), 0) << "nothing above the caster";
    EXPECT_EQ(stencil(0.5f, -0.5f), 0);
    pose.setHeadShadow(true);
    pose.drawShadowVolume(light, cMatrix4::identity());
    EXPECT_NE(stencil(0.5f, -0.5f), 0);
    shadowVolume::end();
}
