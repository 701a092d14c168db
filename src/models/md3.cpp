#include "models/md3.h"

#include "data/binary_reader.h"
#include "models/anim_model.h"
#include "models/normals.h"

#include <SDL.h>
#include <algorithm>
#include <cstring>
#include <span>

namespace {
constexpr char kMagic[4] = {'I', 'D', 'P', '3'};
constexpr int32_t kVersion = 15;
constexpr size_t kHeaderBytes = 108; ///< of the file and of each surface
constexpr size_t kFrameBytes = 56;
constexpr size_t kNameBytes = 64;
constexpr float kUnitsPerWorldUnit = 64.0f; ///< of the stored 16-bit coordinates
/// Normals are made for every frame, faces times frames: without a bound a file of a few megabytes, all faces
/// on one vertex, takes minutes. Real meshes have two.
constexpr int64_t kMostFacesPerVertex = 64;

struct Header {
    int32_t numFrames = 0, numTags = 0, numSurfaces = 0, ofsTags = 0, ofsSurfaces = 0;
};

bool readHeader(cBinaryReader& in, Header& h) {
    char magic[4];
    in.raw(magic, sizeof magic);
    if (std::memcmp(magic, kMagic, sizeof magic) != 0 || in.i32() != kVersion) return false;
    in.skip(kNameBytes + 4); // name, flags
    h.numFrames = in.i32();
    h.numTags = in.i32();
    h.numSurfaces = in.i32();
    in.skip(8); // skins, frame offset
    h.ofsTags = in.i32();
    h.ofsSurfaces = in.i32();
    in.seek(kHeaderBytes);
    return in.good() && h.numFrames >= 1 && h.numTags >= 0 && h.numSurfaces >= 0;
}

bool readTags(cBinaryReader& in, const Header& h, cAnimModel& part) {
    if (!in.canHold(h.numFrames, kFrameBytes)) return false;
    in.skip(static_cast<size_t>(h.numFrames) * kFrameBytes);
    if (!part.readTags(in, h.numFrames, h.numTags)) return false;
    const int64_t block = static_cast<int64_t>(h.ofsSurfaces) - h.ofsTags;
    const auto tagBytes = static_cast<int64_t>(part.tags.size()) * kTagBytes;
    part.tagBlockSize = static_cast<int32_t>(std::clamp<int64_t>(block, 0, tagBytes));
    return in.good();
}

struct Surface {
    std::string name;
    int32_t numFrames = 0, numVerts = 0, numTriangles = 0;
    int32_t ofsTriangles = 0, ofsSt = 0, ofsVertices = 0, ofsEnd = 0;
};

bool readSurfaceHeader(cBinaryReader& in, Surface& s) {
    in.skip(4); // magic
    s.name = in.fixedText(kNameBytes);
    in.skip(4); // flags
    s.numFrames = in.i32();
    in.skip(4); // shader count: skins name the textures
    s.numVerts = in.i32();
    s.numTriangles = in.i32();
    s.ofsTriangles = in.i32();
    in.skip(4); // shader offset
    s.ofsSt = in.i32();
    s.ofsVertices = in.i32();
    s.ofsEnd = in.i32();
    return in.good() && s.numVerts >= 0 && s.numTriangles >= 0 &&
           s.numTriangles <= kMostFacesPerVertex * s.numVerts &&
           s.ofsEnd >= static_cast<int32_t>(kHeaderBytes);
}

/// Goes to a section of a surface; false when it does not lie inside the surface, so that no byte is read
/// twice as often as the file has sections.
bool enterSection(cBinaryReader& in, size_t start, const Surface& s, int32_t offset, int64_t count,
                  size_t bytes) {
    if (offset < 0 || offset > s.ofsEnd) return false;
    if (count > (s.ofsEnd - offset) / static_cast<int64_t>(bytes)) return false;
    in.seek(start + static_cast<size_t>(offset));
    return in.canHold(count, bytes);
}

/// The sections of the surface that begins at `start`; false when one is damaged.
bool readSections(cBinaryReader& in, size_t start, const Surface& s, cAnimMesh& mesh) {
    if (!enterSection(in, start, s, s.ofsTriangles, s.numTriangles, sizeof(FaceIndices)) ||
        !in.records(mesh.faces, s.numTriangles) || !liesWithin(mesh.faces, static_cast<size_t>(s.numVerts)))
        return false;
    if (!enterSection(in, start, s, s.ofsSt, s.numVerts, sizeof(TexCoord)) ||
        !in.records(mesh.texCoords, s.numVerts))
        return false;
    for (TexCoord& t : mesh.texCoords) t.v = -t.v;
    const int64_t count = static_cast<int64_t>(s.numVerts) * s.numFrames;
    std::vector<std::array<int16_t, 4>> stored; // a position and a packed normal
    if (!enterSection(in, start, s, s.ofsVertices, count, sizeof stored[0])) return false;
    stored.resize(static_cast<size_t>(count));
    in.words16(stored.data(), stored.size() * 4);
    mesh.positions.reserve(stored.size());
    for (const auto& v : stored) mesh.positions.push_back(cVector3(v[0], v[1], v[2]) / kUnitsPerWorldUnit);
    in.seek(start + static_cast<size_t>(s.ofsEnd));
    return in.good();
}

void addNormals(cAnimMesh& mesh) {
    mesh.frameNormals.reserve(mesh.positions.size());
    const auto stride = static_cast<size_t>(mesh.verticesPerFrame);
    cEqualPositions equal;
    for (size_t first = 0; first < mesh.positions.size(); first += stride) {
        appendSmoothNormals(std::span(mesh.positions).subspan(first, stride), mesh.faces, equal,
                            mesh.frameNormals);
    }
}

bool readSurface(cBinaryReader& in, const Header& h, cAnimModel& part) {
    const size_t start = in.position();
    Surface s;
    if (!readSurfaceHeader(in, s) || s.numFrames != h.numFrames) return false;
    cAnimMesh mesh;
    if (!readSections(in, start, s, mesh)) return false;
    if (mesh.positions.empty() || mesh.faces.empty()) return true;
    mesh.verticesPerFrame = s.numVerts;
    mesh.faceTexCoords = mesh.faces;
    addNormals(mesh);
    part.meshes.push_back(std::move(mesh));
    part.meshTextures.push_back({s.name, {}});
    part.currentMesh = s.name;
    return true;
}

bool readMd3(cBinaryReader& in, cAnimModel& part) {
    Header h;
    if (!readHeader(in, h) || !readTags(in, h, part) || !in.canHold(h.numSurfaces, kHeaderBytes))
        return false;
    for (int32_t i = 0; i < h.numSurfaces; ++i) {
        if (!readSurface(in, h, part)) return false;
    }
    return true;
}
} // namespace

bool loadMd3(cAnimModel& part, const std::string& path) {
    cBinaryReader in(path);
    if (!in.isOpen()) {
        SDL_SetError("Did not find %s!", path.c_str());
        return false;
    }
    cAnimModel read;
    if (!readMd3(in, read)) {
        SDL_SetError("The file %s!", path.c_str());
        return false;
    }
    part = std::move(read);
    return true;
}
