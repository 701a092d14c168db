#include "support.h"

#include "data/binary_reader.h"
#include "memory_files.h"
#include "models/anim_model.h"
#include "models/model.h"
#include "render/image.h"
#include "render/shadow_volume.h"
#include "render/texture_cache.h"
#include "world/octree.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#if defined(__SANITIZE_ADDRESS__)
#define QUORVANE_COUNT_MEMORY 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define QUORVANE_COUNT_MEMORY 1
#endif
#endif
#ifdef QUORVANE_COUNT_MEMORY
// GCC ships these without their header.
extern "C" {
size_t __sanitizer_get_allocated_size(const volatile void* p);
int __sanitizer_install_malloc_and_free_hooks(void (*onMalloc)(const volatile void*, size_t),
                                              void (*onFree)(const volatile void*));
}
#endif

namespace fuzz {
namespace {
/// A run-length packet of five bytes stands for 128 pixels of four, and a growing array is held twice while
/// it moves: some 310. Elements of level documents come next.
constexpr int64_t kMemoryPerByte = 512;
constexpr int64_t kMemoryAtLeast = 1 << 18; ///< tables of fixed size, log rows

FileMap g_files;
int64_t g_allowed = 0; ///< by the current target
Registration* g_first = nullptr;

#ifdef QUORVANE_COUNT_MEMORY
int64_t g_live = 0, g_peak = 0;

void onAllocation(const volatile void*, size_t size) {
    g_live += static_cast<int64_t>(size);
    g_peak = std::max(g_peak, g_live);
}
void onRelease(const volatile void* p) {
    if (p) g_live -= static_cast<int64_t>(__sanitizer_get_allocated_size(p));
}
void startCounting() {
    __sanitizer_install_malloc_and_free_hooks(&onAllocation, &onRelease);
}
void restartCount() {
    g_live = g_peak = 0;
}
void checkMemory(size_t size) {
    const int64_t allowed = kMemoryAtLeast + g_allowed + kMemoryPerByte * static_cast<int64_t>(size);
    if (g_peak <= allowed) return;
    std::fprintf(stderr, "A file of %zu bytes took %lld bytes of memory\n", size,
                 static_cast<long long>(g_peak));
    std::abort();
}
#else
void startCounting() {}
void restartCount() {}
void checkMemory(size_t) {}
#endif

void prepare() {
    static const bool once = [] {
        setenv("SDL_VIDEODRIVER", "dummy", 1);
        mountMemoryFiles(g_files);
        startCounting();
        return true;
    }();
    static_cast<void>(once);
}

template <typename Element> void addAll(cDigest& digest, const std::vector<Element>& elements) {
    digest.addValue(elements.size());
    if (!elements.empty()) digest.add(elements.data(), elements.size() * sizeof(Element));
}

bool indicesInside(const std::vector<FaceIndices>& faces, size_t count) {
    return std::all_of(faces.begin(), faces.end(),
                       [=](const FaceIndices& f) { return f[0] < count && f[1] < count && f[2] < count; });
}

/// What was read can be written, and that file holds as many objects, vertices and faces.
void writeAndReadAgain(const cModel& model) {
    cMaterialList materials;
    materials.addFrom(model);
    cBinaryWriter out;
    materials.write(out);
    model.writeObjects(out, materials);
    cBinaryReader in(out.bytes());
    cMaterialList readMaterials;
    cModel again;
    require(readMaterials.read(in) && again.readObjects(in, readMaterials),
            "a model that was written can be read");
    require(again.objects.size() == model.objects.size() && again.totalVertices() == model.totalVertices() &&
                again.totalFaces() == model.totalFaces(),
            "nothing is lost on the way");
}
} // namespace

uint64_t run(Target target, const uint8_t* data, size_t size) {
    prepare();
    g_files["t.tga"] = std::string("\0\0\2\0\0\0\0\0\0\0\0\0\1\0\1\0\30\0abc", 21); // one pixel
    g_allowed = 0;
    restartCount();
    const uint64_t digest = target(data, size);
    cTextureCache::instance().releaseAll();
    g_files.clear();
    removeSaved();
    checkMemory(size);
    return digest;
}

void putFile(const std::string& name, std::string_view content) {
    g_files[name] = content;
}

void allowMemory(size_t bytes) {
    g_allowed += static_cast<int64_t>(bytes);
}

const Tetrahedron& tetrahedron() {
    static const Tetrahedron kMade = [] {
        const auto text = [](const cBinaryWriter& out) {
            return std::string(out.bytes().begin(), out.bytes().end());
        };
        cModelObject o;
        o.positions = {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
        o.faces = {{0, 2, 1}, {0, 1, 3}, {0, 3, 2}, {1, 2, 3}};
        cModel mesh;
        mesh.add(o);
        cMaterialList materials;
        materials.addFrom(mesh);
        cBinaryWriter modelFile, octreeFile;
        materials.write(modelFile);
        mesh.writeObjects(modelFile, materials);
        cOctree tree;
        tree.build(mesh, 10, 2, true);
        materials.write(octreeFile);
        tree.write(octreeFile, materials);
        return Tetrahedron{text(modelFile), text(octreeFile)};
    }();
    return kMade;
}

void require(bool holds, const char* sentence) {
    if (holds) return;
    std::fprintf(stderr, "Broken promise: %s\n", sentence);
    std::abort();
}

cDigest& cDigest::add(const void* bytes, size_t size) {
    const auto* p = static_cast<const uint8_t*>(bytes);
    for (size_t i = 0; i < size; ++i) hash_ = (hash_ ^ p[i]) * 1099511628211ull;
    return *this;
}

uint64_t readPicture(const std::string& name, const uint8_t* data, size_t size) {
    putFile(name, text(data, size));
    cImage image;
    const int result = image.load(name);
    const auto expected = static_cast<size_t>(image.width()) * static_cast<size_t>(image.height()) *
                          static_cast<size_t>(image.bpp() / 8);
    require(image.pixels().size() == expected, "a picture is whole or not there");
    require((result == 0) == (expected != 0), "only what was read has pixels");
    if (result != 0) return 0;
    image.swapChannels(0, 2);
    return cDigest().add(image.pixels().data(), expected).addValue(image.width()).value();
}

void useModel(cModel& model, cDigest& digest) {
    for (cModelObject& o : model.objects) {
        require(indicesInside(o.faces, o.positions.size()), "position indices lie inside the positions");
        require(o.faceTexCoords.size() == o.faces.size(), "there is a coordinate triple a face");
        require(o.texCoords.empty() || indicesInside(o.faceTexCoords, o.texCoords.size()),
                "coordinate indices lie inside the coordinates");
        require(o.faceSecond.empty() || o.vectors.empty() || indicesInside(o.faceSecond, o.vectors.size()),
                "second indices lie inside their array");
        digest.addValue(o.mode).addValue(o.texture);
        addAll(digest, o.positions);
        addAll(digest, o.vectors);
        addAll(digest, o.texCoords);
        addAll(digest, o.faces);
        addAll(digest, o.faceTexCoords);
        addAll(digest, o.faceSecond);
    }
    writeAndReadAgain(model);
    model.computeNormals();
    model.moveToCentre();
    model.scaleToExtent(1);
    shadowVolume::prepare(model.objects);
}

void usePart(cAnimModel& part, cDigest& digest) {
    std::vector<cVector3> positions, normals;
    const int32_t frames[] = {0, 1, part.frameCount - 1, part.frameCount, -1, INT32_MAX};
    for (cAnimMesh& mesh : part.meshes) {
        require(indicesInside(mesh.faces, static_cast<size_t>(mesh.verticesPerFrame)),
                "faces name vertices of one frame");
        addAll(digest, mesh.positions);
        addAll(digest, mesh.texCoords);
        addAll(digest, mesh.faces);
        for (const int32_t frame : frames) poseMesh(mesh, 0, frame, 0.5f, positions, normals);
        shadowVolume::computeNeighbours(mesh);
        shadowVolume::computeFacePlanes(mesh);
    }
    for (const int32_t frame : frames) {
        for (int32_t tag = -1; tag < std::min(part.tagCount + 1, 4); ++tag)
            part.tagTransform(tag, 0, frame, 0.5f);
    }
    for (const cTag& tag : part.tags) digest.add(tag.text()).addValue(tag.origin);
    for (const cAnimation& a : part.animations)
        digest.add(a.name).addValue(a.firstFrame).addValue(a.endFrame);
    digest.addValue(part.frameCount).addValue(part.tagCount);
    part.findTag("tag_torso");
    part.findAnimation("BOTH_DEATH1");
}

Registration::Registration(const char* targetName, Target function)
    : name(targetName), target(function), next(g_first) {
    g_first = this;
}
Registration* Registration::first() {
    return g_first;
}
} // namespace fuzz
