#include "render/mesh_draw.h"

#include "models/character_pose.h"
#include "models/model.h"
#include "platform/gl_api.h"
#include "render/texture_cache.h"
#include "support/gl_window.h"

#include <algorithm>
#include <tuple>

namespace {
/// Two triangles over the clip area x0 … x1, full height, with aligned texture coordinates.
cModelObject strip(float x0, float x1) {
    cModelObject o;
    o.positions = {{x0, -1, 0}, {x1, -1, 0}, {x1, 1, 0}, {x0, 1, 0}};
    o.faces = o.faceTexCoords = {{0, 1, 2}, {0, 2, 3}};
    o.texCoords = {{0, 0}, {1, 0}, {1, 1}, {0, 1}};
    o.vectors.assign(4, {0, 0, 1});
    return o;
}

int32_t plainTexture(uint8_t r, uint8_t g, uint8_t b) {
    const uint8_t pixels[] = {r, g, b, r, g, b, r, g, b, r, g, b};
    return cTextureCache::instance().create(2, 2, 24, pixels);
}

cModelObject twoTextures(int32_t first, int32_t second) {
    cModelObject o = strip(-1, 1);
    o.mode = kModeTwoTextures;
    o.texture = first;
    o.setSecondTexture(second);
    o.faceSecond = o.faces;
    return o;
}

class MeshDraw : public GlTest {
protected:
    void SetUp() override {
        GlTest::SetUp();
        uint8_t texels[16 * 3];
        for (int i = 0; i < 16; ++i)
            std::fill_n(texels + i * 3, 3, uint8_t(i < 5 ? 0x80 : i < 8 ? 0xC0 : 0xFF));
        ramp = static_cast<uint32_t>(cTextureCache::instance().create1D(texels, 16));
    }
    /// What stands at a place; then all is black again.
    static uint32_t shown(float x = 0, float y = 0) {
        const uint32_t colour = pixel(x, y);
        glClear(GL_COLOR_BUFFER_BIT);
        return colour;
    }
    void TearDown() override {
        cTextureCache::instance().releaseAll();
        GlTest::TearDown();
    }
    uint32_t ramp = 0;
};
} // namespace

TEST_F(MeshDraw, CelShadingFollowsTheRampsBands) {
    const struct {
        cVector3 light;
        bool directional;
        uint32_t brightness; // of white
    } rows[] = {{{0, 0, -1}, true, 0x80},    {{0, 0, 0.30f}, true, 0x80}, {{0, 0, 0.33f}, true, 0xC0},
                {{0, 0, 0.49f}, true, 0xC0}, {{0, 0, 0.51f}, true, 0xFF}, {{0, 0, 1}, true, 0xFF},
                {{0, 0, 5}, false, 0xFF},    {{50, 0, 5}, false, 0x80}};
    const int32_t blue = plainTexture(0, 0, 255);
    for (const auto& row : rows) {
        cModelObject plain = strip(-1, 0), textured = strip(0, 1);
        plain.colour = {255, 0, 0, 0};
        textured.mode = kModeTexture;
        textured.texture = blue;
        meshDraw::drawCel(plain, row.light, row.directional, ramp, true);
        meshDraw::drawCel(textured, row.light, row.directional, ramp, true);
        EXPECT_EQ(pixel(-0.5f, 0), row.brightness << 16) << row.light.z;
        EXPECT_EQ(shown(0.5f), row.brightness) << row.light.z;
        textured.texCoords.resize(2); // no longer one a position
        textured.faceTexCoords = {{0, 1, 1}, {0, 1, 0}};
        meshDraw::drawCel(textured, row.light, row.directional, ramp, false);
        EXPECT_EQ(shown(0.5f), row.brightness) << row.light.z << " corner by corner";
    }
}

TEST_F(MeshDraw, CelShadingTakesComputedNormalsInEveryModeAndKeepsTheShadeUntilTold) {
    for (const uint8_t mode : {kModeTexture, kModeTwoTextures}) {
        cModel model;
        model.objects = {strip(-1, 1)};
        model.objects[0].mode = mode;
        model.objects[0].texture = plainTexture(255, 255, 255);
        model.objects[0].vectors.clear();
        model.computeNormals();
        for (const auto& [z, recompute, seen] :
             {std::tuple(1.f, true, 0xFFFFFFu), {-1.f, false, 0xFFFFFFu}, {-1.f, true, 0x808080u}}) {
            meshDraw::drawCel(model.objects, {0, 0, z}, true, ramp, recompute);
            EXPECT_EQ(shown(), seen) << int{mode} << ' ' << z << ' ' << recompute;
        }
    }
}

TEST_F(MeshDraw, PosedMeshesWithTooFewCoordinatesAreSentByCorner) {
    cAnimMesh mesh;
    static_cast<cModelObject&>(mesh) = strip(-1, 1);
    for (FaceIndices& f : mesh.faces) std::swap(f[1], f[2]); // clockwise
    mesh.faceTexCoords = {{1, 1, 1}, {1, 1, 1}};
    mesh.texCoords = {{0, 0}, {0.75f, 0.75f}};
    mesh.verticesPerFrame = 4;
    mesh.mode = kModeTexture;
    const uint8_t pixels[] = {0, 0, 0, 0, 0, 0, 0, 0, 0, 255, 255, 255}; // white at three quarters
    mesh.texture = cTextureCache::instance().create(2, 2, 24, pixels);
    std::vector<cVector3> posed = mesh.positions;
    for (cVector3& p : posed) p.x = p.x / 2 + 0.5f; // the right half
    glTexCoord2f(0, 0);
    glEnable(GL_CULL_FACE);
    const auto right = [&] {
        EXPECT_EQ(pixel(-0.5f, 0), 0u) << "the pose counts";
        return static_cast<int>(shown(0.5f) & 255);
    };
    meshDraw::drawPosed(mesh, posed);
    const int plain = right();
    EXPECT_GT(plain, 0xE0);
    meshDraw::drawCelPosed(mesh, posed, mesh.vectors, {0, 0, 1}, true, ramp);
    EXPECT_EQ(right(), plain);
    meshDraw::drawCelPosed(mesh, posed, mesh.vectors, {0, 0, -1}, true, ramp);
    EXPECT_NEAR(right(), plain / 2, 2);
}

TEST_F(MeshDraw, StateIsLeftAsItWas) {
    const cModelObject two = twoTextures(plainTexture(255, 255, 255), plainTexture(10, 10, 10));
    cModelObject textured = two;
    textured.mode = kModeTexture;
    meshDraw::drawCel(textured, {0, 0, 1}, true, ramp, true);
    meshDraw::drawTwoTextures(two);
    meshDraw::drawImmediateTwoTextures(two, {true, 0, 1});
    GLint value = 0;
    for (const GLenum unit : {GLenum(GL_ACTIVE_TEXTURE), GLenum(GL_CLIENT_ACTIVE_TEXTURE)}) {
        glGetIntegerv(unit, &value);
        EXPECT_EQ(value, GL_TEXTURE0);
    }
    EXPECT_FALSE(glIsEnabled(GL_VERTEX_ARRAY) || glIsEnabled(GL_TEXTURE_COORD_ARRAY));
    platform::gl.activeTexture(GL_TEXTURE1);
    platform::gl.clientActiveTexture(GL_TEXTURE1);
    EXPECT_FALSE(glIsEnabled(GL_TEXTURE_1D) || glIsEnabled(GL_TEXTURE_2D) ||
                 glIsEnabled(GL_TEXTURE_COORD_ARRAY));
    glGetTexEnviv(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, &value);
    EXPECT_EQ(value, GL_MODULATE);
    platform::gl.activeTexture(GL_TEXTURE0);
    platform::gl.clientActiveTexture(GL_TEXTURE0);
}

TEST_F(MeshDraw, PlainDrawsTakeTextureOrColour) {
    cModelObject o = strip(-1, 1);
    o.colour = {0x10, 0x20, 0x30, 0};
    const int32_t green = plainTexture(0, 200, 0);
    for (const auto& [mode, texture, expected] : {std::tuple(kModeColour, green, 0x102030u),
                                                  {kModeTexture, green, 0x00C800u},
                                                  {kModeTexture, kNoTexture, 0xFFFFFFu}}) {
        o.mode = mode;
        o.texture = texture;
        meshDraw::draw(o);
        EXPECT_EQ(shown(), expected);
        meshDraw::drawImmediate(o);
        EXPECT_EQ(shown(), expected);
    }
}

TEST_F(MeshDraw, SecondTexturesModulateOrAdd) {
    cModelObject o = twoTextures(plainTexture(100, 0, 255), plainTexture(100, 50, 128));
    o.vectors.assign(4, {0.5f, 0.5f, 0});
    meshDraw::drawImmediateTwoTextures(o, {});
    EXPECT_EQ(shown(), 0x270080u);
    meshDraw::drawTwoTextures(o);
    EXPECT_EQ(shown(), 0xC832FFu);
    o.vectors.resize(1); // no longer one a position
    o.faceSecond = {{0, 0, 0}, {0, 0, 0}};
    meshDraw::drawTwoTextures(o);
    EXPECT_EQ(shown(), 0xC832FFu);
    o.vectors.clear();
    meshDraw::drawTwoTextures(o);
    EXPECT_EQ(shown(), 0x6400FFu) << "nothing to lay on top";
}

TEST_F(MeshDraw, FogCoordinatesFollowTheHeight) {
    const cVolumetricFog fog{true, 2, 6};
    for (const auto& [height, coordinate] : {std::pair(2.f, 0.f), {4.f, 0.5f}, {6.f, 0.f}, {9.f, 0.f}})
        EXPECT_EQ(fogCoordinate(height, fog), coordinate) << height;
    EXPECT_EQ(fogCoordinate(1, {true, 2, 2}), 0.0f) << "no height range";

    ASSERT_TRUE(platform::gl.fogCoordf);
    glEnable(GL_FOG);
    glFogi(GL_FOG_MODE, GL_LINEAR);
    glFogf(GL_FOG_START, 0);
    glFogf(GL_FOG_END, 1);
    glFogi(GL_FOG_COORDINATE_SOURCE_EXT, GL_FOG_COORDINATE_EXT);
    const float black[4] = {};
    glFogfv(GL_FOG_COLOR, black);
    const int32_t white = plainTexture(255, 255, 255);
    for (const bool enabled : {true, false}) {
        // Heights −1 … 1 lie in the lower half of the fog: from clear to half fogged.
        meshDraw::drawImmediateTwoTextures(twoTextures(white, white), {enabled, -1, 3});
        EXPECT_NEAR(static_cast<int>(pixel(0.5f, -0.95f) & 255), enabled ? 252 : 255, 4);
        EXPECT_NEAR(static_cast<int>(shown(0.5f, 0.95f) & 255), enabled ? 131 : 255, 4);
    }
    GLfloat coordinate = 1;
    glGetFloatv(GL_CURRENT_FOG_COORDINATE_EXT, &coordinate);
    EXPECT_EQ(coordinate, 0.0f);
}

TEST_F(MeshDraw, ACharactersPartsHangOnTheirTags) {
    auto model = std::make_shared<cCharacterModel>();
    for (const CharacterPart part : {kLowerPart, kUpperPart}) {
        cAnimMesh mesh;
        static_cast<cModelObject&>(mesh) = strip(-1, -0.5f);
        mesh.verticesPerFrame = 4;
        mesh.frameNormals.assign(8, {0, 0, 1});
        for (int i = 0; i < 4; ++i)
            mesh.positions.push_back(mesh.positions[static_cast<size_t>(i)] + cVector3(0.5f, 0, 0));
        for (FaceIndices& f : mesh.faces) std::swap(f[1], f[2]); // clockwise
        mesh.colour = part == kLowerPart ? cColour4{255, 0, 0, 0} : cColour4{0, 255, 0, 0};
        model->parts[part].meshes = {mesh};
        model->parts[part].frameCount = 2;
        model->parts[part].animations = {{"ONE", 1, 2, 0, 10}};
    }
    cTag tag;
    tag.origin = {1, 0, 0};
    model->parts[kLowerPart].tags = {tag, tag};
    model->parts[kLowerPart].tagCount = 1;
    model->parts[kLowerPart].attachments = {kUpperPart};
    cCharacterPose pose(model);
    glEnable(GL_CULL_FACE);
    const auto expectShown = [](uint32_t first, uint32_t second, uint32_t third, uint32_t fourth) {
        EXPECT_EQ(pixel(-0.75f, 0), first);
        EXPECT_EQ(pixel(-0.25f, 0), second);
        EXPECT_EQ(pixel(0.25f, 0), third);
        EXPECT_EQ(shown(0.75f), fourth);
    };
    pose.draw(cMatrix4::identity());
    expectShown(0xFF0000, 0, 0x00FF00, 0);
    pose.setAnimation("one", "one"); // starts in the second frame
    pose.drawCel({0, 0, 0.4f}, true, ramp, cMatrix4::identity());
    expectShown(0, 0xC00000, 0, 0x00C000);
    pose.draw(cMatrix4::identity(), true);
    expectShown(0, 0xFF0000, 0, 0x00FF00);
    GLint face = 0;
    glGetIntegerv(GL_FRONT_FACE, &face);
    EXPECT_EQ(face, GL_CCW);
}
