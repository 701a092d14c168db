#include "models/cff.h"

#include "data/binary_reader.h"
#include "models/anim_model.h"
#include "render/texture_cache.h"

#include <algorithm>

namespace {
constexpr size_t kAnimationNameBytes = 260;
constexpr size_t kAnimationBytes = 276;
constexpr size_t kTextureFieldBytes = 256;
constexpr size_t kMinMeshBytes = 16 + 2 * kTextureFieldBytes;

struct Header {
    int32_t meshCount = 0, tagCount = 0, frameCount = 0, animationCount = 0, tagRecordCount = 0,
            tagBlockSize = 0;
};

bool readHeader(cBinaryReader& in, Header& h) {
    h.meshCount = in.i32();
    h.tagCount = in.i32();
    h.frameCount = in.i32();
    h.animationCount = in.i32();
    h.tagRecordCount = in.i32();
    h.tagBlockSize = in.i32();
    // Frames divide the vertices, and the tag block lies inside the tags.
    return in.good() && h.tagCount >= 0 && h.frameCount >= 1 &&
           static_cast<int64_t>(h.frameCount) * h.tagCount == h.tagRecordCount && h.tagBlockSize >= 0 &&
           h.tagBlockSize <= static_cast<int64_t>(h.tagRecordCount) * kTagBytes;
}

bool readAnimations(cBinaryReader& in, const Header& h, cAnimModel& part) {
    if (!in.canHold(h.animationCount, kAnimationBytes)) return false;
    for (int32_t i = 0; i < h.animationCount; ++i) {
        cAnimation a;
        a.name = in.fixedText(kAnimationNameBytes);
        a.firstFrame = in.i32();
        a.endFrame = in.i32();
        a.loopFrames = in.i32();
        a.fps = in.i32();
        part.animations.push_back(std::move(a));
    }
    return in.good();
}

bool readMesh(cBinaryReader& in, cAnimModel& part) {
    const int32_t vertexCount = in.i32(), normalCount = in.i32(), texCoordCount = in.i32(),
                  faceCount = in.i32();
    cAnimModel::MeshTexture record;
    record.meshName = in.fixedText(kTextureFieldBytes);
    record.texturePath = in.fixedText(kTextureFieldBytes);
    cAnimMesh mesh;
    if (!in.records(mesh.positions, vertexCount) || !in.records(mesh.frameNormals, normalCount) ||
        !in.records(mesh.texCoords, texCoordCount) || vertexCount % part.frameCount != 0 ||
        !in.records(mesh.faces, faceCount))
        return false;
    mesh.verticesPerFrame = vertexCount / part.frameCount;
    if (!liesWithin(mesh.faces, static_cast<size_t>(mesh.verticesPerFrame))) return false;
    if (mesh.positions.empty() || mesh.faces.empty()) return true;
    mesh.faceTexCoords = mesh.faces;
    part.meshes.push_back(std::move(mesh));
    part.currentMesh = record.meshName;
    part.meshTextures.push_back(std::move(record));
    return true;
}

/// Each mesh's texture was given to all meshes read before it, so the last one stays; the others are loaded
/// as well, since a missing picture is to be reported.
void loadTextures(cAnimModel& part) {
    for (const cAnimModel::MeshTexture& record : part.meshTextures) {
        part.setTexture(record.texturePath.empty() ? kNoTexture
                                                   : cTextureCache::instance().load(record.texturePath));
    }
}

bool readPart(cBinaryReader& in, cAnimModel& part) {
    Header h;
    if (!readHeader(in, h) || !part.readTags(in, h.frameCount, h.tagCount) || !readAnimations(in, h, part))
        return false;
    part.tagBlockSize = h.tagBlockSize;
    if (!in.canHold(h.meshCount, kMinMeshBytes)) return false;
    for (int32_t i = 0; i < h.meshCount; ++i) {
        if (!readMesh(in, part) || !in.good()) return false;
    }
    loadTextures(part);
    return true;
}

void writeMesh(cBinaryWriter& out, const cAnimMesh& mesh, const cAnimModel::MeshTexture& record) {
    out.i32(mesh.vertexCount());
    out.i32(static_cast<int32_t>(mesh.frameNormals.size()));
    out.i32(mesh.texCoordCount());
    out.i32(mesh.faceCount());
    out.fixedText(record.meshName, kTextureFieldBytes);
    out.fixedText(record.texturePath, kTextureFieldBytes);
    for (const cVector3& p : mesh.positions) out.vector3(p);
    for (const cVector3& n : mesh.frameNormals) out.vector3(n);
    for (const TexCoord& t : mesh.texCoords) {
        out.f32(t.u);
        out.f32(t.v);
    }
    for (const FaceIndices& f : mesh.faces) {
        for (const uint32_t i : f) out.u32(i);
    }
}
} // namespace

bool readCffRaw(cAnimModel& part, const std::string& path) {
    cBinaryReader in(path);
    cAnimModel read;
    if (!in.isOpen() || !readPart(in, read)) return false;
    part = std::move(read);
    return true;
}

bool readCff(cAnimModel& part, const std::string& path) {
    if (!readCffRaw(part, path)) return false;
    const auto convert = [](cVector3& v) { v = {-v.y, v.z, -v.x}; };
    for (cAnimMesh& mesh : part.meshes) std::for_each(mesh.positions.begin(), mesh.positions.end(), convert);
    for (cTag& tag : part.tags) convert(tag.origin);
    return true;
}

bool writeCff(const cAnimModel& part, const std::string& path) {
    cBinaryWriter out;
    out.i32(static_cast<int32_t>(part.meshes.size()));
    out.i32(part.tagCount);
    out.i32(part.frameCount);
    out.i32(static_cast<int32_t>(part.animations.size()));
    out.i32(static_cast<int32_t>(part.tags.size()));
    out.i32(part.tagBlockSize);
    for (const cTag& tag : part.tags) {
        out.raw(tag.name.data(), tag.name.size());
        out.vector3(tag.origin);
        for (const cVector3& axis : tag.axis) out.vector3(axis);
    }
    for (const cAnimation& a : part.animations) {
        out.fixedText(a.name, kAnimationNameBytes);
        out.i32(a.firstFrame);
        out.i32(a.endFrame);
        out.i32(a.loopFrames);
        out.i32(a.fps);
    }
    for (size_t i = 0; i < part.meshes.size(); ++i) {
        // A skin leaves one record: it stands for the further meshes too, since the last one's texture goes
        // to all.
        const size_t records = part.meshTextures.size();
        const size_t record = std::min(i, std::max<size_t>(records, 1) - 1);
        writeMesh(out, part.meshes[i], records > 0 ? part.meshTextures[record] : cAnimModel::MeshTexture{});
    }
    return out.save(path);
}
