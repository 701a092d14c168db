// The compact model file: the material table and the object section, shared with octree and environment
// files.
#include "core/log_mgr.h"
#include "data/binary_reader.h"
#include "models/model.h"
#include "render/texture_cache.h"

#include <algorithm>

namespace {
constexpr size_t kLongestName = 254;    ///< its length byte counts the zero as well
constexpr size_t kMinMaterialBytes = 5; ///< colour, flag, name length
constexpr size_t kMinObjectBytes = 21;  ///< index, four counts, mode

int32_t loadNamed(const std::string& name) {
    return name.empty() ? kNoTexture : cTextureCache::instance().load(name);
}

void writeIndices(cBinaryWriter& out, const std::vector<FaceIndices>& indices, size_t faceCount) {
    for (size_t f = 0; f < faceCount; ++f) {
        const FaceIndices face = f < indices.size() ? indices[f] : FaceIndices{};
        for (const uint32_t i : face) out.u32(i);
    }
}

/// Exactly `count` vectors, whatever length the array has: the header has promised them.
void writeVectors(cBinaryWriter& out, const std::vector<cVector3>& vectors, size_t count) {
    for (size_t i = 0; i < count; ++i) out.vector3(i < vectors.size() ? vectors[i] : cVector3{});
}

void writeObject(cBinaryWriter& out, const cModelObject& o, int32_t material) {
    const bool two = o.mode >= kModeTwoTextures;
    out.i32(material);
    out.i32(o.vertexCount());
    out.i32(o.faceCount());
    out.i32(o.texCoordCount());
    out.u8(o.mode);
    out.u32(two ? static_cast<uint32_t>(o.vectors.size()) : 0);
    writeVectors(out, o.positions, o.positions.size());
    if (two) {
        writeVectors(out, o.vectors, o.vectors.size());
    } else {
        out.u8(o.vectors.empty() ? 0 : 1);
        if (!o.vectors.empty()) writeVectors(out, o.vectors, o.positions.size());
    }
    for (const TexCoord& t : o.texCoords) {
        out.f32(t.u);
        out.f32(t.v);
    }
    writeIndices(out, o.faces, o.faces.size());
    writeIndices(out, o.faceTexCoords, o.faces.size());
    if (o.mode == kModeTwoTextures) writeIndices(out, o.faceSecond, o.faces.size());
}

bool readObject(cBinaryReader& in, const cMaterialList& materials, cModelObject& o) {
    const uint32_t material = in.u32();
    const int32_t vertexCount = in.i32(), faceCount = in.i32(), texCoordCount = in.i32();
    o.mode = in.u8();
    const int32_t secondCount = in.i32();
    if (!in.good() || material >= materials.records.size()) return false;
    o.colour = materials.records[material].colour;
    o.texture = materials.records[material].texture;
    if (!in.records(o.positions, vertexCount)) return false;
    if (o.mode >= kModeTwoTextures) {
        if (!in.records(o.vectors, secondCount)) return false;
    } else if (in.u8() != 0 && !in.records(o.vectors, vertexCount)) {
        return false;
    }
    if (!in.records(o.texCoords, texCoordCount)) return false;
    const auto readIndices = [&](std::vector<FaceIndices>& faces, size_t limit) {
        return in.records(faces, faceCount) && liesWithin(faces, limit);
    };
    // An imported mesh without coordinates still carries indices for them.
    const auto orAny = [](size_t count) { return count == 0 ? size_t{UINT32_MAX} + 1 : count; };
    return readIndices(o.faces, o.positions.size()) &&
           readIndices(o.faceTexCoords, orAny(o.texCoords.size())) &&
           (o.mode != kModeTwoTextures || readIndices(o.faceSecond, orAny(o.vectors.size())));
}
} // namespace

void cMaterialList::addFrom(const cModel& model) {
    const cTextureCache& textures = cTextureCache::instance();
    for (const cModelObject& o : model.objects) {
        const bool two = o.mode > kModeTexture;
        if (find(o.colour, o.texture, two) >= 0) continue;
        Record record{o.colour, o.texture, {}, two};
        if (o.texture >= 0) record.name = textures.fileName(o.texture);
        if (two) record.name += "?" + textures.fileName(o.secondTexture());
        records.push_back(std::move(record));
    }
}

int32_t cMaterialList::find(const cColour4& colour, int32_t texture, bool two) const {
    for (size_t i = 0; i < records.size(); ++i) {
        const Record& r = records[i];
        if (r.twoTextures != two) continue;
        const bool sameRg = r.colour.r == colour.r && r.colour.g == colour.g;
        const bool sameTexture = r.texture == texture;
        const bool hit =
            two ? sameRg && sameTexture
                : (sameRg && r.colour.b == colour.b && r.texture < 1) || (r.texture >= 0 && sameTexture);
        if (hit) return static_cast<int32_t>(i);
    }
    return -1;
}

void cMaterialList::write(cBinaryWriter& out) const {
    out.u32(static_cast<uint32_t>(records.size()));
    for (const Record& r : records) {
        out.u8(r.colour.r);
        out.u8(r.colour.g);
        out.u8(r.colour.b);
        out.u8(r.twoTextures ? 1 : 0);
        const std::string name = r.name.substr(0, kLongestName);
        out.u8(name.empty() ? uint8_t{0} : static_cast<uint8_t>(name.size() + 1));
        if (!name.empty()) out.zeroText(name);
    }
}

bool cMaterialList::read(cBinaryReader& in) {
    records.clear();
    const uint32_t count = in.u32();
    if (!in.canHold(count, kMinMaterialBytes)) return false;
    records.reserve(std::min<size_t>(count, in.left() / kMinMaterialBytes));
    for (uint32_t i = 0; i < count && in.good(); ++i) {
        Record r;
        r.colour.r = in.u8();
        r.colour.g = in.u8();
        r.colour.b = in.u8();
        r.twoTextures = in.u8() != 0;
        const uint8_t length = in.u8();
        if (length > 1) r.name = in.fixedText(length);
        records.push_back(std::move(r));
    }
    if (!in.good()) records.clear();
    return in.good();
}

void cMaterialList::loadTextures() {
    for (Record& r : records) {
        if (!r.twoTextures) {
            r.texture = loadNamed(r.name);
            continue;
        }
        const size_t mark = r.name.find('?');
        r.texture = loadNamed(r.name.substr(0, mark));
        const int32_t second = mark == std::string::npos ? kNoTexture : loadNamed(r.name.substr(mark + 1));
        const int32_t name = second > 0 ? second : 0; // 0 is no texture: −1 would name number 255
        r.colour.r = static_cast<uint8_t>(name % 256);
        r.colour.g = static_cast<uint8_t>(name / 256);
    }
}

bool cModel::saveCpm(const std::string& fileName) const {
    cMaterialList materials;
    materials.addFrom(*this);
    cBinaryWriter out;
    materials.write(out);
    writeObjects(out, materials);
    return out.save(fileName);
}

void cModel::writeObjects(cBinaryWriter& out, const cMaterialList& materials) const {
    out.u32(static_cast<uint32_t>(objects.size()));
    for (const cModelObject& o : objects) {
        writeObject(out, o, materials.find(o.colour, o.texture, o.mode > kModeTexture));
    }
}

bool cModel::readObjects(cBinaryReader& in, const cMaterialList& materials) {
    clear();
    const uint32_t count = in.u32();
    bool ok = in.good() && in.canHold(count, kMinObjectBytes);
    for (uint32_t i = 0; ok && i < count; ++i) {
        cModelObject o;
        ok = readObject(in, materials, o) && in.good();
        objects.push_back(std::move(o));
    }
    if (!ok) {
        in.setBad();
        clear();
    }
    return ok;
}

int loadCpm(const std::string& fileName, cModel& model) {
    model.clear();
    cBinaryReader in(fileName);
    cMaterialList materials;
    bool ok = in.isOpen() && materials.read(in);
    if (ok) {
        materials.loadTextures();
        ok = model.readObjects(in, materials);
    }
    if (ok) return 0;
    cLogMgr::instance().error("Failed to load model file %s", fileName.c_str());
    return -1;
}
