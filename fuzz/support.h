#pragma once
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

class cModel;
class cAnimModel;
struct cVector3;

/// What the fuzz targets share. A target reads one kind of file from memory, uses what came of it, and
/// returns a digest of it (0 when the reader refused the file). A target that was promised something that
/// does not hold ends the program with a sentence.
namespace fuzz {
using Target = uint64_t (*)(const uint8_t* data, size_t size);

/// Prepares the file system at its first call, runs the target and holds the memory that it took at any one
/// time against the size of its input (under AddressSanitizer).
uint64_t run(Target target, const uint8_t* data, size_t size);

/// The only files that readers see, besides a picture "t.tga"; valid for the current run. Names without
/// folders.
void putFile(const std::string& name, std::string_view content);
inline std::string_view text(const uint8_t* data, size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

/// A grey one, as a model file and as an octree file.
struct Tetrahedron {
    std::string model, octree;
};
const Tetrahedron& tetrahedron();

/// So many bytes that the current run takes whatever the input: devices, decoders.
void allowMemory(size_t bytes);

void require(bool holds, const char* sentence);

/// FNV-1a; never 0.
class cDigest {
public:
    cDigest& add(const void* bytes, size_t size);
    cDigest& add(std::string_view s) { return addValue(s.size()).add(s.data(), s.size()); }
    template <typename Value> cDigest& addValue(const Value& value) { return add(&value, sizeof value); }
    uint64_t value() const { return hash_ != 0 ? hash_ : 1; }

private:
    uint64_t hash_ = 14695981039346656037ull;
};

/// A picture file of this name read: it is whole or not there. The target's digest.
uint64_t readPicture(const std::string& name, const uint8_t* data, size_t size);
/// What readers of models promise (mesh.h), and that the model can be written and read again; then normals
/// and shadow data are made of it.
void useModel(cModel& model, cDigest& digest);
/// The same for a part: poses, tags and shadow data at frames inside and outside of it.
void usePart(cAnimModel& part, cDigest& digest);

/// Used by the tests instead of libFuzzer's entry.
struct Registration {
    const char* name;
    Target target;
    Registration* next;

    Registration(const char* name, Target target);
    static Registration* first();
};
} // namespace fuzz

/// FUZZ_TARGET(cpm) { ... data, size ... return digest; }
#ifdef QUORVANE_FUZZ_TABLE
#define FUZZ_TARGET(name)                                                                                    \
    static uint64_t read_##name(const uint8_t* data, size_t size);                                           \
    static const fuzz::Registration registered_##name(#name, &read_##name);                                  \
    static uint64_t read_##name(const uint8_t* data, size_t size)
#else
#define FUZZ_TARGET(name)                                                                                    \
    static uint64_t read_##name(const uint8_t* data, size_t size);                                           \
    extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size);                                 \
    extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {                                \
        fuzz::run(&read_##name, data, size);                                                                 \
        return 0;                                                                                            \
    }                                                                                                        \
    static uint64_t read_##name(const uint8_t* data, size_t size)
#endif
