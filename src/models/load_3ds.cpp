#include "models/load_3ds.h"

#include "data/binary_reader.h"
#include "models/model.h"
#include "render/texture_cache.h"

#include <SDL.h>
#include <algorithm>
#include <unordered_map>

namespace {
enum ChunkId : uint16_t {
    kMain = 0x4D4D,
    kEditor = 0x3D3D,
    kObject = 0x4000,
    kTriangleMesh = 0x4100,
    kVertexList = 0x4110,
    kFaceList = 0x4120,
    kFaceMaterial = 0x4130,
    kTexCoordList = 0x4140,
    kMaterial = 0xAFFF,
    kMaterialName = 0xA000,
    kDiffuse = 0xA020,
    kTextureMap = 0xA200,
    kMapFile = 0xA300,
};
constexpr size_t kHeaderBytes = 6;
constexpr int kDeepest = 16; ///< real files nest five deep
constexpr size_t kShortestMapName = 4;

class c3dsReader {
public:
    c3dsReader(cBinaryReader& in, const std::string& directory, cModel& model)
        : in_(in), directory_(directory), model_(model) {}

    bool read() {
        const Chunk main = header(in_.size());
        if (!in_.good() || main.id != kMain) return false;
        walk(main.end, 0);
        return true;
    }

private:
    struct Chunk {
        uint16_t id = 0;
        size_t end = 0; ///< never behind the parent's end; the chunk's start when its length is impossible
    };
    struct Material {
        cColour4 colour;
        int32_t texture = kNoTexture;
        std::string name, mapFile;
    };
    /// The last one of a name counts.
    using Materials = std::unordered_map<std::string, Material>;

    Chunk header(size_t parentEnd) {
        const size_t start = in_.position();
        Chunk c;
        c.id = in_.u16();
        const uint32_t length = in_.u32();
        c.end = length < kHeaderBytes ? start : std::min<size_t>(start + length, parentEnd);
        return c;
    }

    void walk(size_t end, int depth) {
        while (in_.good() && in_.position() + kHeaderBytes <= end) {
            const size_t start = in_.position();
            const Chunk chunk = header(end);
            if (!in_.good() || chunk.end == start) return;
            if (depth < kDeepest) readChunk(chunk, depth + 1);
            if (in_.good()) in_.seek(chunk.end);
        }
    }

    void readChunk(const Chunk& chunk, int depth) {
        switch (chunk.id) {
        case kEditor: {
            const Chunk version = header(chunk.end); // whatever comes first counts as the version
            if (in_.good()) in_.seek(version.end);
            walk(chunk.end, depth);
            break;
        }
        case kObject:
            readObject(chunk, depth);
            break;
        case kTriangleMesh:
            walk(chunk.end, depth);
            break;
        case kVertexList:
            readVertices(chunk);
            break;
        case kFaceList:
            readFaces(chunk, depth);
            break;
        case kFaceMaterial:
            readFaceMaterial(chunk);
            break;
        case kTexCoordList:
            readTexCoords(chunk);
            break;
        case kMaterial:
            readMaterial(chunk, depth);
            break;
        case kMaterialName:
            material_.name = text(chunk);
            break;
        case kDiffuse:
            header(chunk.end);
            material_.colour = {in_.u8(), in_.u8(), in_.u8(), 0};
            break;
        case kTextureMap:
            walk(chunk.end, depth);
            break;
        case kMapFile:
            material_.mapFile = text(chunk);
            break;
        default:
            break;
        }
    }

    void readObject(const Chunk& chunk, int depth) {
        text(chunk); // the name is not kept
        object_ = {};
        walk(chunk.end, depth);
        finishObject();
    }

    /// Text up to its zero, or to the chunk's end where that is missing; reading goes on behind it.
    std::string text(const Chunk& chunk) {
        const size_t start = in_.position();
        std::string result = in_.fixedText(chunk.end - start);
        in_.seek(std::min(start + result.size() + 1, chunk.end));
        return result;
    }

    /// Count of a list whose records fit in the chunk; 0 when they do not.
    size_t listCount(const Chunk& chunk, size_t bytesEach) {
        const size_t count = in_.u16();
        const size_t room = chunk.end > in_.position() ? chunk.end - in_.position() : 0;
        return count * bytesEach <= room && in_.good() ? count : 0;
    }

    void readVertices(const Chunk& chunk) {
        object_.positions.resize(listCount(chunk, 12));
        for (cVector3& p : object_.positions) {
            const cVector3 v = in_.vector3();
            p = {v.x, v.z, -v.y};
        }
    }

    void readFaces(const Chunk& chunk, int depth) {
        object_.faces.resize(listCount(chunk, 8));
        for (FaceIndices& f : object_.faces) {
            for (uint32_t& i : f) i = in_.u16();
            in_.u16(); // edge visibility
        }
        walk(chunk.end, depth); // face materials follow the list inside its chunk
    }

    void readTexCoords(const Chunk& chunk) {
        object_.texCoords.resize(listCount(chunk, 8));
        for (TexCoord& t : object_.texCoords) {
            t.u = in_.f32();
            t.v = in_.f32();
        }
    }

    void readFaceMaterial(const Chunk& chunk) {
        const auto found = materials_.find(text(chunk));
        if (!in_.good() || found == materials_.end()) return;
        const Material& material = found->second;
        object_.colour = material.colour;
        object_.setTexture(material.texture);
    }

    void readMaterial(const Chunk& chunk, int depth) {
        material_ = {};
        walk(chunk.end, depth);
        if (material_.mapFile.size() >= kShortestMapName) {
            material_.texture = cTextureCache::instance().load(directory_ + material_.mapFile);
        }
        materials_.insert_or_assign(material_.name, material_);
        material_ = {};
    }

    void finishObject() {
        const size_t count = object_.positions.size();
        model_.losses.outOfRange += static_cast<int>(std::erase_if(object_.faces, [&](const FaceIndices& f) {
            return std::max({f[0], f[1], f[2]}) >= count;
        }));
        object_.faceTexCoords = object_.faces;
        // Coordinates go with the positions; a list that is too short is filled up.
        if (!object_.texCoords.empty() && object_.texCoords.size() < count) object_.texCoords.resize(count);
        model_.add(std::move(object_));
        object_ = {};
    }

    cBinaryReader& in_;
    const std::string& directory_;
    cModel& model_;
    Materials materials_;
    Material material_;   ///< being read
    cModelObject object_; ///< being read
};
} // namespace

int load3ds(const std::string& directory, const std::string& fileName, cModel& model) {
    cBinaryReader in(directory + fileName);
    if (!in.isOpen()) {
        SDL_SetError("Couldn't find file \"%s\"", fileName.c_str());
        return -1;
    }
    if (!c3dsReader(in, directory, model).read()) {
        SDL_SetError("File \"%s\" is corrupt", fileName.c_str());
        return -1;
    }
    return 0;
}
