#include "forge/md3.h"

#include "models/anim_model.h"

#include <cmath>

namespace forge {
namespace {
constexpr size_t kHeaderBytes = 108, kFrameBytes = 56, kSurfaceHeaderBytes = 108;
constexpr float kSteps = 64;

int16_t quantised(float v) {
    return static_cast<int16_t>(std::lround(v * kSteps));
}

platform::Bytes surface(const CharacterPart& part) {
    const auto frames = static_cast<int32_t>(part.frames.size());
    const auto vertices = static_cast<int32_t>(part.texCoords.size());
    const auto triangles = static_cast<int32_t>(part.faces.size());
    const auto trianglesAt = static_cast<int32_t>(kSurfaceHeaderBytes);
    const int32_t stAt = trianglesAt + triangles * 12, verticesAt = stAt + vertices * 8;
    cBinaryWriter out;
    out.raw("IDP3", 4);
    out.fixedText(part.meshName, 64);
    for (const int32_t v : {0, frames, 0, vertices, triangles, trianglesAt, trianglesAt, stAt, verticesAt,
                            verticesAt + frames * vertices * 8}) {
        out.i32(v);
    }
    for (const FaceIndices& f : part.faces) {
        for (const uint32_t index : {f[0], f[2], f[1]}) out.u32(index);
    }
    for (const TexCoord& t : part.texCoords) {
        out.f32(t.u);
        out.f32(-t.v);
    }
    for (const auto& frame : part.frames) {
        for (const cVector3& p : frame) {
            const cVector3 q = toImported(p);
            for (const float v : {q.x, q.y, q.z}) out.u16(static_cast<uint16_t>(quantised(v)));
            out.u16(0); // packed normal: readers make their own
        }
    }
    return out.bytes();
}
} // namespace

platform::Bytes md3File(const CharacterPart& part) {
    const size_t frames = part.frames.size(), tags = part.tags.empty() ? 0 : part.tags.front().size();
    const size_t tagsAt = kHeaderBytes + frames * kFrameBytes,
                 surfacesAt = tagsAt + frames * tags * kTagBytes;
    const platform::Bytes mesh = surface(part);
    cBinaryWriter out;
    out.raw("IDP3", 4);
    out.i32(15);
    out.fixedText(part.meshName, 64);
    for (const size_t v : {size_t{0}, frames, tags, size_t{1}, size_t{0}, kHeaderBytes, tagsAt, surfacesAt,
                           surfacesAt + mesh.size()}) {
        out.i32(static_cast<int32_t>(v));
    }
    const platform::Bytes frame(kFrameBytes, 0); // bounds, which nobody reads
    for (size_t i = 0; i < frames; ++i) out.raw(frame.data(), frame.size());
    writeTags(out, part, true);
    out.raw(mesh.data(), mesh.size());
    return out.bytes();
}

std::string md3AnimationFile(const std::vector<AnimationRow>& rows) {
    std::string text = "sex n\n";
    for (const AnimationRow& row : rows) {
        text += std::to_string(row.first) + " " + std::to_string(row.count) + " " +
                std::to_string(row.count) + " " + std::to_string(row.fps) + " // " + row.name + "\n";
    }
    return text;
}
} // namespace forge
