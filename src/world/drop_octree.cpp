#include "world/drop_octree.h"

#include "core/parse.h"
#include "data/binary_reader.h"
#include "platform/progress.h"
#include "world/octree.h"

namespace {
constexpr size_t kShortestName = 4;
constexpr int kLeastFaces = 10;

bool loadScaled(cModel& model, const std::string& file, float size) {
    if (model.load(file, true) < 0) return false;
    model.moveToCentre();
    model.scaleToExtent(size);
    return true;
}
} // namespace

DropOctreeResult dropOctree(const std::vector<std::string>& p) {
    const size_t n = p.size();
    if (n < 6) return {false, "Invalid parameters"};
    const std::string &input = p[0], &output = p[n - 5];
    const int minFaces = toInt(p[n - 4]), maxGenerations = toInt(p[n - 3]);
    const float size = toFloat(p[n - 2]);
    const bool triangleDetection = toInt(p[n - 1]) != 0;
    if (input.size() < kShortestName || output.size() < kShortestName || minFaces < kLeastFaces ||
        maxGenerations < 1) {
        return {false, "Invalid parameters"};
    }
    platform::cProgress progress("dropOctree");
    progress.stage("reading " + input);
    cModel model, second;
    if (!loadScaled(model, input, size)) return {false, "Could not find file \"" + input + "\""};
    if (n >= 7 && loadScaled(second, p[1], size)) model.applySecondTexture(second);

    cMaterialList materials;
    materials.addFrom(model);
    cOctree octree;
    progress.stage("building the octree");
    octree.build(model, minFaces, maxGenerations, triangleDetection,
                 [&](double share) { progress.done(share); });
    progress.stage("writing " + output);
    cBinaryWriter out;
    materials.write(out);
    octree.write(out, materials);
    if (!out.save(output)) return {false, "Could not write file \"" + output + "\""};
    return {true, "Octree saved to file " + output};
}
