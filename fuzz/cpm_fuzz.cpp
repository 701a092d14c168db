#include "data/binary_reader.h"
#include "models/model.h"
#include "support.h"

namespace {
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
    fuzz::require(readMaterials.read(in) && again.readObjects(in, readMaterials),
                  "a model that was written can be read");
    fuzz::require(again.objects.size() == model.objects.size() &&
                      again.totalVertices() == model.totalVertices() &&
                      again.totalFaces() == model.totalFaces(),
                  "nothing is lost on the way");
}
} // namespace

FUZZ_TARGET(cpm) {
    fuzz::putFile("in.cpm", fuzz::text(data, size));
    cModel model;
    const int result = model.load("in.cpm", false);
    fuzz::require(result == 0 || model.objects.empty(), "a model that cannot be read is empty");
    fuzz::cDigest digest;
    if (result == 0) writeAndReadAgain(model);
    fuzz::useModel(model, digest);
    return result == 0 ? digest.value() : 0;
}
