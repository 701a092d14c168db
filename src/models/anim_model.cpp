#include "models/anim_model.h"

#include "core/name_hash.h"
#include "data/binary_reader.h"
#include "data/text_lines.h"
#include "platform/files.h"
#include "render/texture_cache.h"

#include <SDL.h>
#include <algorithm>
#include <cmath>

namespace {
struct Quaternion {
    float x = 0, y = 0, z = 0, w = 1;

    float dot(const Quaternion& o) const { return x * o.x + y * o.y + z * o.z + w * o.w; }
    Quaternion operator*(float s) const { return {x * s, y * s, z * s, w * s}; }
    Quaternion operator+(const Quaternion& o) const { return {x + o.x, y + o.y, z + o.z, w + o.w}; }
};

/// Columns of the rotation are the three axes. The largest component is taken from the root, which keeps
/// precision.
Quaternion fromAxes(const std::array<cVector3, 3>& axis) {
    const cVector3 &a = axis[0], &b = axis[1], &c = axis[2];
    const float trace = a.x + b.y + c.z;
    if (trace > 0.0f) {
        const float s = 2.0f * std::sqrt(trace + 1.0f);
        return {(b.z - c.y) / s, (c.x - a.z) / s, (a.y - b.x) / s, s / 4};
    }
    if (a.x >= b.y && a.x >= c.z) {
        const float s = 2.0f * std::sqrt(1.0f + a.x - b.y - c.z);
        return {s / 4, (b.x + a.y) / s, (c.x + a.z) / s, (b.z - c.y) / s};
    }
    if (b.y >= c.z) {
        const float s = 2.0f * std::sqrt(1.0f + b.y - a.x - c.z);
        return {(b.x + a.y) / s, s / 4, (c.y + b.z) / s, (c.x - a.z) / s};
    }
    const float s = 2.0f * std::sqrt(1.0f + c.z - a.x - b.y);
    return {(c.x + a.z) / s, (c.y + b.z) / s, s / 4, (a.y - b.x) / s};
}

/// Along the shorter arc; unit length.
Quaternion slerp(const Quaternion& a, Quaternion b, float t) {
    constexpr float kNearlyEqual = 0.9995f; // the sines below would lose their digits
    float cosine = a.dot(b);
    if (cosine < 0.0f) {
        b = b * -1.0f;
        cosine = -cosine;
    }
    float wa = 1.0f - t, wb = t;
    if (cosine < kNearlyEqual) {
        const float angle = std::acos(cosine);
        wa = std::sin(wa * angle) / std::sin(angle);
        wb = std::sin(wb * angle) / std::sin(angle);
    }
    const Quaternion q = a * wa + b * wb;
    const float length = std::sqrt(q.dot(q));
    return length > 0.0f ? q * (1.0f / length) : Quaternion{};
}

cMatrix4 rotationAt(const Quaternion& q, const cVector3& origin) {
    const float x = q.x, y = q.y, z = q.z, w = q.w;
    return cMatrix4::basis({1 - 2 * (y * y + z * z), 2 * (x * y + w * z), 2 * (x * z - w * y)},
                           {2 * (x * y - w * z), 1 - 2 * (x * x + z * z), 2 * (y * z + w * x)},
                           {2 * (x * z + w * y), 2 * (y * z - w * x), 1 - 2 * (x * x + y * y)}, origin);
}

size_t heldFrame(int32_t frame, size_t frameCount) {
    return static_cast<size_t>(std::clamp<int64_t>(frame, 0, static_cast<int64_t>(frameCount) - 1));
}

void growTo(std::vector<cVector3>& vectors, size_t count) {
    if (vectors.size() < count) vectors.resize(count);
}

/// A mesh's frames as offsets into its arrays.
struct FrameLayout {
    explicit FrameLayout(const cAnimMesh& mesh)
        : stride(mesh.verticesPerFrame > 0 ? static_cast<size_t>(mesh.verticesPerFrame) : 0),
          frames(stride > 0 ? mesh.positions.size() / stride : 0),
          hasNormals(mesh.frameNormals.size() >= frames * stride) {}
    size_t stride, frames;
    bool hasNormals;
};
} // namespace

std::string_view cTag::text() const {
    const std::string_view all(name.data(), name.size());
    return all.substr(0, all.find('\0'));
}

void cAnimModel::setTexture(int32_t texture) {
    for (cAnimMesh& mesh : meshes) mesh.setTexture(texture);
}

void cAnimModel::scale(float factor) {
    for (cAnimMesh& mesh : meshes) {
        for (cVector3& p : mesh.positions) p *= factor;
    }
    for (cTag& tag : tags) tag.origin *= factor;
}

int32_t cAnimModel::findTag(std::string_view name) const {
    const auto count = std::min(tags.size(), static_cast<size_t>(std::max(tagCount, 0)));
    for (size_t i = 0; i < count; ++i) {
        if (platform::equalIgnoringCase(tags[i].text(), name)) return static_cast<int32_t>(i);
    }
    return -1;
}

int32_t cAnimModel::findAnimation(std::string_view name) const {
    for (size_t i = 0; i < animations.size(); ++i) {
        if (platform::equalIgnoringCase(animations[i].name, name)) return static_cast<int32_t>(i);
    }
    return -1;
}

int32_t cAnimModel::findAnimation(int32_t nameCode) const {
    for (size_t i = 0; i < animations.size(); ++i) {
        if (nameHash(animations[i].name) == nameCode) return static_cast<int32_t>(i);
    }
    return -1;
}

bool cAnimModel::readTags(cBinaryReader& in, int32_t frames, int32_t tagsPerFrame) {
    const int64_t count = static_cast<int64_t>(frames) * tagsPerFrame;
    if (!in.canHold(count, kTagBytes)) return false;
    tags.resize(static_cast<size_t>(count));
    for (cTag& tag : tags) {
        in.raw(tag.name.data(), tag.name.size());
        tag.origin = in.vector3();
        for (cVector3& axis : tag.axis) axis = in.vector3();
    }
    attachments.assign(static_cast<size_t>(tagsPerFrame), kNothing);
    tagCount = tagsPerFrame;
    frameCount = frames;
    return in.good();
}

cMatrix4 cAnimModel::tagTransform(int32_t index, int32_t frameA, int32_t frameB, float t) const {
    const auto perFrame = static_cast<size_t>(std::max(tagCount, 0));
    const size_t frames = perFrame > 0 ? tags.size() / perFrame : 0;
    if (index < 0 || index >= tagCount || frames == 0) return cMatrix4::identity();
    const cTag& a = tags[heldFrame(frameA, frames) * perFrame + static_cast<size_t>(index)];
    const cTag& b = tags[heldFrame(frameB, frames) * perFrame + static_cast<size_t>(index)];
    return rotationAt(slerp(fromAxes(a.axis), fromAxes(b.axis), t), lerp(a.origin, b.origin, t));
}

size_t poseMesh(const cAnimMesh& mesh, int32_t frameA, int32_t frameB, float t,
                std::vector<cVector3>& positions, std::vector<cVector3>& normals) {
    const FrameLayout layout(mesh);
    if (layout.frames == 0) return 0;
    growTo(positions, layout.stride);
    growTo(normals, layout.stride);
    const size_t a = heldFrame(frameA, layout.frames) * layout.stride;
    const size_t b = heldFrame(frameB, layout.frames) * layout.stride;
    for (size_t i = 0; i < layout.stride; ++i) {
        positions[i] = lerp(mesh.positions[a + i], mesh.positions[b + i], t);
        normals[i] = layout.hasNormals
                         ? lerp(mesh.frameNormals[a + i], mesh.frameNormals[b + i], t).normalized()
                         : cVector3{};
    }
    return layout.stride;
}

size_t poseMesh(const cAnimMesh& mesh, int32_t frame, std::vector<cVector3>& positions,
                std::vector<cVector3>& normals) {
    return poseMesh(mesh, frame, frame, 0.0f, positions, normals);
}

bool loadSkin(cAnimModel& part, const std::string& directory, const std::string& skinFile) {
    cTextLines lines;
    if (!lines.open(skinFile)) {
        SDL_SetError("Could not load skin: %s", skinFile.c_str());
        return false;
    }
    std::string line;
    while (!part.meshes.empty() && lines.next(line)) {
        const size_t slash = line.rfind('/');
        if (slash == std::string::npos || line.find(part.currentMesh) == std::string::npos) continue;
        const std::string path = directory + "/" + line.substr(slash + 1);
        part.setTexture(cTextureCache::instance().load(path));
        part.meshTextures = {{part.currentMesh, path}};
    }
    return true;
}

bool loadShader(cAnimModel&, const std::string&, const std::string& shaderFile) {
    if (platform::fileExists(shaderFile)) return true;
    SDL_SetError("Could not load shader file: %s", shaderFile.c_str());
    return false;
}
