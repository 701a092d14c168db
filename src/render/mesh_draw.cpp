#include "render/mesh_draw.h"

#include "platform/gl_api.h"

using platform::gl;

float fogCoordinate(float y, const cVolumetricFog& fog) {
    const float range = fog.fogHigh - fog.fogLow;
    return y >= fog.fogHigh || range == 0.0f ? 0.0f : (y - fog.fogLow) / range;
}

void computeShade(std::span<const cVector3> positions, std::span<const cVector3> normals,
                  const cVector3& light, bool directional, std::vector<float>& shade) {
    shade.assign(positions.size(), 0.0f);
    for (size_t i = 0; i < positions.size() && i < normals.size(); ++i) {
        const float s = normals[i].dot(directional ? light : (light - positions[i]).normalized());
        if (s > 0.0f) shade[i] = s;
    }
}

namespace meshDraw {
namespace {
constexpr GLenum kUnit0 = GL_TEXTURE0_ARB;
constexpr GLenum kUnit1 = GL_TEXTURE1_ARB;

void bindMaterial(const cModelObject& o) {
    if (o.mode == kModeColour) {
        glDisable(GL_TEXTURE_2D);
        glColor3ub(o.colour.r, o.colour.g, o.colour.b);
        return;
    }
    glColor3ub(255, 255, 255);
    if (o.texture > 0) {
        glEnable(GL_TEXTURE_2D);
        glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(o.texture));
    } else {
        glDisable(GL_TEXTURE_2D); // the texture has failed to load: plain white
    }
}

/// The arrays are indexed by position, so they serve only where every position has a coordinate.
bool isAligned(const cModelObject& o, size_t vertexCount) {
    return o.texCoords.empty() || o.texCoords.size() >= vertexCount;
}
bool isSecondAligned(const cModelObject& o) {
    return o.vectors.size() >= o.positions.size();
}
bool hasSecond(const cModelObject& o) {
    return o.mode == kModeTwoTextures && o.faceSecond.size() == o.faces.size() && !o.vectors.empty();
}

TexCoord cornerCoord(const cModelObject& o, size_t face, size_t corner) {
    if (face >= o.faceTexCoords.size()) return {};
    const uint32_t i = o.faceTexCoords[face][corner];
    return i < o.texCoords.size() ? o.texCoords[i] : TexCoord{};
}

TexCoord cornerSecond(const cModelObject& o, size_t face, size_t corner) {
    const uint32_t i = o.faceSecond[face][corner];
    return i < o.vectors.size() ? TexCoord{o.vectors[i].x, o.vectors[i].y} : TexCoord{};
}

/// Calls send(face, corner, vertex) for every corner in order inside one triangles block, then sends the
/// position.
template <typename Send>
void sendCorners(const cModelObject& o, std::span<const cVector3> positions, Send send) {
    glBegin(GL_TRIANGLES);
    for (size_t f = 0; f < o.faces.size(); ++f) {
        for (size_t k = 0; k < 3; ++k) {
            const uint32_t v = o.faces[f][k];
            send(f, k, v);
            const cVector3& p = positions[v];
            glVertex3f(p.x, p.y, p.z);
        }
    }
    glEnd();
}

void drawElements(const cModelObject& o, const cVector3* positions) {
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, sizeof(cVector3), positions);
    glDrawElements(GL_TRIANGLES, 3 * o.faceCount(), GL_UNSIGNED_INT, o.faces.data());
    glDisableClientState(GL_VERTEX_ARRAY);
}

void enableTexCoords(const cModelObject& o) {
    if (o.texCoords.empty()) return;
    glEnableClientState(GL_TEXTURE_COORD_ARRAY);
    glTexCoordPointer(2, GL_FLOAT, sizeof(TexCoord), o.texCoords.data());
}
void disableTexCoords() {
    glDisableClientState(GL_TEXTURE_COORD_ARRAY);
}

void selectUnit(GLenum unit) {
    gl.activeTexture(unit);
    gl.clientActiveTexture(unit);
}

/// Turns unit 1 on with the second texture and leaves unit 0 active; false when there is none to add.
bool beginSecond(const cModelObject& o) {
    const int32_t name = o.secondTexture();
    if (name <= 0) return false;
    gl.activeTexture(kUnit1);
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, static_cast<GLuint>(name));
    return true;
}
void endSecond() {
    gl.activeTexture(kUnit1);
    glDisable(GL_TEXTURE_2D);
    gl.activeTexture(kUnit0);
}

/// The block with both units' coordinates, and fog coordinates when a fog is given.
void sendTwoTextures(const cModelObject& o, const cVolumetricFog& fog) {
    const bool foggy = fog.enabled && gl.fogCoordf;
    sendCorners(o, o.positions, [&](size_t f, size_t k, uint32_t v) {
        const TexCoord first = cornerCoord(o, f, k), second = cornerSecond(o, f, k);
        gl.multiTexCoord2f(kUnit0, first.u, first.v);
        gl.multiTexCoord2f(kUnit1, second.u, second.v);
        if (foggy) gl.fogCoordf(fogCoordinate(o.positions[v].y, fog));
    });
    if (foggy) gl.fogCoordf(0.0f);
}

/// A textured mesh: its texture on unit 0, the ramp on unit 1.
void drawCelTextured(const cModelObject& o, std::span<const cVector3> positions,
                     const std::vector<float>& shade, bool arrays) {
    if (arrays) {
        gl.clientActiveTexture(kUnit0);
        enableTexCoords(o);
        gl.clientActiveTexture(kUnit1);
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
        glTexCoordPointer(1, GL_FLOAT, 0, shade.data());
        drawElements(o, positions.data());
        disableTexCoords();
        gl.clientActiveTexture(kUnit0);
        disableTexCoords();
    } else {
        sendCorners(o, positions, [&](size_t f, size_t k, uint32_t v) {
            const TexCoord t = cornerCoord(o, f, k);
            gl.multiTexCoord2f(kUnit0, t.u, t.v);
            gl.multiTexCoord2f(kUnit1, shade[v], 0.0f);
        });
    }
}

void drawShaded(const cModelObject& o, std::span<const cVector3> positions, const std::vector<float>& shade,
                uint32_t ramp, bool arrays) {
    bindMaterial(o);
    const bool textured = o.mode != kModeColour;
    if (textured) gl.activeTexture(kUnit1);
    glEnable(GL_TEXTURE_1D);
    glBindTexture(GL_TEXTURE_1D, ramp);
    if (textured) {
        drawCelTextured(o, positions, shade, arrays);
    } else {
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
        glTexCoordPointer(1, GL_FLOAT, 0, shade.data());
        drawElements(o, positions.data());
        disableTexCoords();
    }
    glDisable(GL_TEXTURE_1D);
    if (textured) selectUnit(kUnit0);
}

bool nothingToDraw(const cModelObject& o) {
    return !platform::hasGlContext() || o.faces.empty();
}
bool nothingToDraw(const cAnimMesh& mesh, std::span<const cVector3> positions) {
    return nothingToDraw(mesh) || positions.size() < static_cast<size_t>(mesh.verticesPerFrame);
}
} // namespace

void draw(const cModelObject& o) {
    if (nothingToDraw(o)) return;
    if (!isAligned(o, o.positions.size())) {
        drawImmediate(o);
        return;
    }
    bindMaterial(o);
    enableTexCoords(o);
    drawElements(o, o.positions.data());
    disableTexCoords();
}

void drawImmediate(const cModelObject& o) {
    if (nothingToDraw(o)) return;
    bindMaterial(o);
    const bool normals = o.hasNormals(), textured = !o.texCoords.empty();
    sendCorners(o, o.positions, [&](size_t f, size_t k, uint32_t v) {
        if (normals) glNormal3f(o.vectors[v].x, o.vectors[v].y, o.vectors[v].z);
        if (!textured) return;
        const TexCoord t = cornerCoord(o, f, k);
        glTexCoord2f(t.u, t.v);
    });
}

void drawImmediateTwoTextures(const cModelObject& o, const cVolumetricFog& fog) {
    if (nothingToDraw(o)) return;
    if (!hasSecond(o) || !gl.hasMultitexture()) {
        drawImmediate(o);
        return;
    }
    gl.activeTexture(kUnit0);
    bindMaterial(o);
    beginSecond(o);
    sendTwoTextures(o, fog);
    endSecond();
}

void drawTwoTextures(const cModelObject& o) {
    if (nothingToDraw(o)) return;
    const bool arrays = isAligned(o, o.positions.size()) && isSecondAligned(o);
    if (o.mode != kModeTwoTextures || !gl.hasMultitexture() || !(arrays || hasSecond(o))) {
        draw(o);
        return;
    }
    gl.activeTexture(kUnit0);
    bindMaterial(o);
    if (beginSecond(o)) glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_ADD);
    if (arrays) {
        gl.clientActiveTexture(kUnit0);
        enableTexCoords(o);
        gl.clientActiveTexture(kUnit1);
        glEnableClientState(GL_TEXTURE_COORD_ARRAY);
        glTexCoordPointer(2, GL_FLOAT, sizeof(cVector3), o.vectors.data());
        drawElements(o, o.positions.data());
        disableTexCoords();
        gl.clientActiveTexture(kUnit0);
        disableTexCoords();
    } else {
        sendTwoTextures(o, {});
    }
    gl.activeTexture(kUnit1);
    glTexEnvi(GL_TEXTURE_ENV, GL_TEXTURE_ENV_MODE, GL_MODULATE);
    endSecond();
}

void drawCel(cModelObject& o, const cVector3& light, bool directional, uint32_t ramp, bool recompute) {
    if (nothingToDraw(o)) return;
    if (recompute || o.shade.size() != o.positions.size()) {
        // With two textures too: what is drawn cel-shaded has had its normals computed, in every mode.
        const bool normals = o.vectors.size() == o.positions.size();
        computeShade(o.positions, std::span<const cVector3>(o.vectors).first(normals ? o.vectors.size() : 0),
                     light, directional, o.shade);
    }
    if (o.mode != kModeColour && !gl.hasMultitexture()) {
        draw(o);
    } else {
        drawShaded(o, o.positions, o.shade, ramp, isAligned(o, o.positions.size()));
    }
}

void drawPosed(const cAnimMesh& mesh, std::span<const cVector3> positions) {
    if (nothingToDraw(mesh, positions)) return;
    glFrontFace(GL_CW);
    bindMaterial(mesh);
    if (isAligned(mesh, positions.size())) {
        enableTexCoords(mesh);
        drawElements(mesh, positions.data());
        disableTexCoords();
    } else {
        sendCorners(mesh, positions, [&](size_t f, size_t k, uint32_t) {
            const TexCoord t = cornerCoord(mesh, f, k);
            glTexCoord2f(t.u, t.v);
        });
    }
    glFrontFace(GL_CCW);
}

void drawCelPosed(const cAnimMesh& mesh, std::span<const cVector3> positions,
                  std::span<const cVector3> normals, const cVector3& light, bool directional, uint32_t ramp) {
    if (nothingToDraw(mesh, positions)) return;
    if (mesh.mode != kModeColour && !gl.hasMultitexture()) {
        drawPosed(mesh, positions);
        return;
    }
    std::vector<float> shade;
    computeShade(positions, normals, light, directional, shade);
    glFrontFace(GL_CW);
    drawShaded(mesh, positions, shade, ramp, isAligned(mesh, positions.size()));
    glFrontFace(GL_CCW);
}

void draw(const std::vector<cModelObject>& objects) {
    for (const cModelObject& o : objects) draw(o);
}

void drawImmediate(const std::vector<cModelObject>& objects) {
    for (const cModelObject& o : objects) drawImmediate(o);
}

void drawImmediateTwoTextures(const std::vector<cModelObject>& objects, const cVolumetricFog& fog) {
    for (const cModelObject& o : objects) drawImmediateTwoTextures(o, fog);
}

void drawTwoTextures(const std::vector<cModelObject>& objects) {
    for (const cModelObject& o : objects) drawTwoTextures(o);
}

void drawCel(std::vector<cModelObject>& objects, const cVector3& light, bool directional, uint32_t ramp,
             bool recompute) {
    for (cModelObject& o : objects) drawCel(o, light, directional, ramp, recompute);
}
} // namespace meshDraw
