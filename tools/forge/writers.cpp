#include "forge/writers.h"

#include "models/anim_model.h"
#include "models/normals.h"

#include <algorithm>
#include <cstdio>

namespace forge {
namespace {
void chunk(cBinaryWriter& out, uint16_t id, const cBinaryWriter& content) {
    out.u16(id);
    out.u32(static_cast<uint32_t>(content.bytes().size() + 6));
    out.raw(content.bytes().data(), content.bytes().size());
}

cBinaryWriter namedText(const std::string& text) {
    cBinaryWriter w;
    w.zeroText(text);
    return w;
}

cBinaryWriter threeDsMaterial(const Part& part) {
    cBinaryWriter colour, diffuse, material;
    for (uint8_t c : {part.colour.r, part.colour.g, part.colour.b}) colour.u8(c);
    chunk(diffuse, 0x0011, colour);
    chunk(material, 0xA000, namedText(part.material));
    chunk(material, 0xA020, diffuse);
    return material;
}

cBinaryWriter threeDsObject(const Part& part) {
    cBinaryWriter vertices, faces, materialOfFaces, mesh, object;
    vertices.u16(static_cast<uint16_t>(part.mesh.positions.size()));
    for (const cVector3& p : part.mesh.positions) vertices.vector3({p.x, -p.z, p.y});
    faces.u16(static_cast<uint16_t>(part.mesh.faces.size()));
    for (const FaceIndices& f : part.mesh.faces) {
        for (uint32_t i : f) faces.u16(static_cast<uint16_t>(i));
        faces.u16(7);
    }
    materialOfFaces.zeroText(part.material);
    materialOfFaces.u16(static_cast<uint16_t>(part.mesh.faces.size()));
    for (size_t i = 0; i < part.mesh.faces.size(); ++i) materialOfFaces.u16(static_cast<uint16_t>(i));
    chunk(faces, 0x4130, materialOfFaces);
    chunk(mesh, 0x4110, vertices);
    chunk(mesh, 0x4120, faces);
    object.zeroText(part.material);
    chunk(object, 0x4100, mesh);
    return object;
}

std::string line(const char* format, double a, double b, double c) {
    char text[128];
    std::snprintf(text, sizeof text, format, a, b, c);
    return text;
}

/// Smooth normals; a vertex without any face that has an area points up.
std::vector<cVector3> normalsOf(const std::vector<cVector3>& positions,
                                const std::vector<FaceIndices>& faces) {
    std::vector<cVector3> normals = smoothNormals(positions, faces);
    for (cVector3& n : normals)
        if (!(n.lengthSq() > 0)) n = {0, 1, 0};
    return normals;
}
} // namespace

void writeMaterials(cBinaryWriter& out, const Parts& parts) {
    out.u32(static_cast<uint32_t>(parts.size()));
    for (const Part& part : parts) {
        out.u8(part.colour.r);
        out.u8(part.colour.g);
        out.u8(part.colour.b);
        out.u8(0); // one texture at most
        out.u8(part.texture.empty() ? uint8_t{0} : static_cast<uint8_t>(part.texture.size() + 1));
        if (!part.texture.empty()) out.zeroText(part.texture);
    }
}

void writeObjects(cBinaryWriter& out, const Parts& parts, int firstMaterial, bool withNormals) {
    out.u32(static_cast<uint32_t>(parts.size()));
    for (size_t i = 0; i < parts.size(); ++i) {
        const Mesh& mesh = parts[i].mesh;
        out.i32(firstMaterial + static_cast<int>(i));
        out.i32(static_cast<int32_t>(mesh.positions.size()));
        out.i32(static_cast<int32_t>(mesh.faces.size()));
        out.i32(static_cast<int32_t>(mesh.texCoords.size()));
        out.u8(parts[i].texture.empty() ? kModeColour : kModeTexture);
        out.i32(0);
        for (const cVector3& p : mesh.positions) out.vector3(p);
        out.u8(withNormals);
        if (withNormals)
            for (const cVector3& n : normalsOf(mesh.positions, mesh.faces)) out.vector3(n);
        for (const TexCoord& t : mesh.texCoords) {
            out.f32(t.u);
            out.f32(t.v);
        }
        for (int repeat = 0; repeat < 2; ++repeat) // texture indices equal position indices
            for (const FaceIndices& f : mesh.faces)
                for (uint32_t k : f) out.u32(k);
    }
}

platform::Bytes cpmFile(const Parts& parts) {
    cBinaryWriter out;
    writeMaterials(out, parts);
    writeObjects(out, parts, 0, true);
    return out.bytes();
}

platform::Bytes threeDsFile(const Parts& parts) {
    cBinaryWriter version, editor, main, out;
    version.u32(3);
    chunk(editor, 0x3D3E, version); // the editor's version comes first and is skipped
    for (const Part& part : parts) chunk(editor, 0xAFFF, threeDsMaterial(part));
    for (const Part& part : parts) chunk(editor, 0x4000, threeDsObject(part));
    chunk(main, 0x3D3D, editor);
    chunk(out, 0x4D4D, main);
    return out.bytes();
}

ObjFiles objFiles(const Parts& parts, const std::string& mtlName) {
    ObjFiles files;
    files.obj = "mtllib " + mtlName + "\n";
    size_t base = 1;
    for (const Part& part : parts) {
        // Component bytes are k · 256 cut off, so the middle of the step gives the byte back.
        const auto level = [](uint8_t c) { return std::min(0.99, (c + 0.5) / 256); };
        files.mtl +=
            "newmtl " + part.material + "\n" +
            line("Kd %.6f %.6f %.6f\n", level(part.colour.r), level(part.colour.g), level(part.colour.b));
        if (!part.texture.empty()) files.mtl += "map_Kd " + part.texture + "\n";
        for (const cVector3& p : part.mesh.positions)
            files.obj += line("v %.6g %.6g %.6g\n", p.x, -p.z + 0.0f, p.y);
        for (const TexCoord& t : part.mesh.texCoords) files.obj += line("vt %.6g %.6g\n", t.u, t.v, 0);
        // The material in force when the object is completed counts: name it right before its faces.
        files.obj += "usemtl " + part.material + "\n";
        for (const FaceIndices& f : part.mesh.faces) {
            files.obj += "f";
            for (uint32_t k : f) {
                const std::string number = std::to_string(k + base);
                files.obj += " " + number + "/" + number;
            }
            files.obj += "\n";
        }
        base += part.mesh.positions.size();
    }
    return files;
}

void writeTags(cBinaryWriter& out, const CharacterPart& part, bool zUp) {
    for (const auto& frame : part.tags)
        for (const Tag& tag : frame) {
            out.fixedText(tag.name, 64);
            out.vector3(zUp ? toImported(tag.origin) : tag.origin);
            for (const cVector3& axis : tag.axes) out.vector3(axis);
        }
}

platform::Bytes cffFile(const CharacterPart& part, bool zUp) {
    const auto frameCount = static_cast<int32_t>(part.frames.size());
    const auto tagCount = static_cast<int32_t>(part.tags.front().size());
    const auto vertexCount = static_cast<int32_t>(part.frames.front().size());
    cBinaryWriter out;
    for (int32_t v : {1, tagCount, frameCount, static_cast<int32_t>(part.animations.size()),
                      frameCount * tagCount, frameCount * tagCount * kTagBytes})
        out.i32(v);
    writeTags(out, part, zUp);
    for (const AnimationRow& row : part.animations) {
        out.fixedText(row.name, 260);
        for (int32_t v : {row.first, row.first + row.count, row.count, row.fps}) out.i32(v);
    }
    for (int32_t v : {vertexCount * frameCount, vertexCount * frameCount,
                      static_cast<int32_t>(part.texCoords.size()), static_cast<int32_t>(part.faces.size())})
        out.i32(v);
    out.fixedText(part.meshName, 256);
    out.fixedText(part.texture, 256);
    for (const auto& frame : part.frames)
        for (const cVector3& p : frame) out.vector3(zUp ? toImported(p) : p);
    for (const auto& frame : part.frames)
        for (const cVector3& n : normalsOf(frame, part.faces)) out.vector3(n);
    for (const TexCoord& t : part.texCoords) {
        out.f32(t.u);
        out.f32(t.v);
    }
    for (const FaceIndices& f : part.faces)
        for (uint32_t k : {f[0], f[2], f[1]}) out.u32(k);
    return out.bytes();
}

platform::Bytes environmentFile(const Environment& e) {
    cBinaryWriter out;
    out.vector3(e.light);
    out.f32(0);
    out.f32(e.deathHeight);
    out.u8(e.hasWater);
    out.f32(e.waterScale);
    out.f32(e.waterHeight);
    out.u8(e.waterInterval);
    Parts all = e.sky1;
    all.insert(all.end(), e.sky2.begin(), e.sky2.end());
    if (e.hasWater) all.insert(all.end(), e.water.begin(), e.water.end());
    writeMaterials(out, all);
    int material = 0;
    writeObjects(out, e.sky1, material, true);
    material += static_cast<int>(e.sky1.size());
    writeObjects(out, e.sky2, material, true);
    material += static_cast<int>(e.sky2.size());
    if (e.hasWater) writeObjects(out, e.water, material, true);
    return out.bytes();
}
} // namespace forge
