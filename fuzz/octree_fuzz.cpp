#include "world/octree.h"

#include "data/binary_reader.h"
#include "support.h"

FUZZ_TARGET(octree) {
    fuzz::putFile("in.oct", fuzz::text(data, size));
    cBinaryReader in("in.oct");
    cMaterialList materials;
    cOctree octree;
    const bool ok = materials.read(in) && octree.read(in, materials);
    fuzz::require(ok || octree.empty(), "a tree that cannot be read is empty");
    cOctree::LeafList leaves;
    octree.querySphere({0, 0, 0}, 1e6f, leaves);
    octree.querySegment(cSegment({-20, 1, 2}, {20, 3, 1}), leaves);
    octree.queryBodies(cCapsule({0, 0, 0}, {0, 1, 0}, 1), cCapsule({5, 0, 0}, {5, 1, 0}, 1), leaves);
    const float free = octree.trace({-20, 1, 2}, {20, 3, 1});
    fuzz::require(free >= 0 && free <= 1, "a trace is a fraction");
    octree.draw();
    if (!ok) return 0;
    cBinaryWriter out;
    octree.write(out, materials);
    return fuzz::cDigest().add(out.bytes().data(), out.bytes().size()).value();
}
