#include "world/drop_octree.h"

#include "core/log_mgr.h"
#include "core/parse.h"
#include "data/binary_reader.h"
#include "platform/progress.h"
#include "world/octree.h"

#include <algorithm>

namespace {
constexpr size_t kShortestName = 4;
constexpr int kLeastFaces = 10;

bool loadScaled(cModel& model, const std::string& file, float size) {
    if (model.load(file, true) < 0) return false;
    model.moveToCentre();
    model.scaleToExtent(size);
    return true;
}
/// The row for a model without a face: how many could not be read, and why.
void tellLosses(const std::string& file, const cModel::Losses& losses) {
    const struct {
        int count;
        const char* what;
    } kRows[] = {{losses.oddCorners, "faces whose corners are neither v nor, with vt lines, v/vt"},
                 {losses.outOfRange, "faces with indices out of range"},
                 {losses.unknownLines, "lines not understood"}};
    std::string reasons;
    for (const auto& row : kRows) {
        if (row.count > 0)
            reasons += (reasons.empty() ? "" : ", ") + std::to_string(row.count) + " " + row.what;
    }
    if (reasons.empty()) reasons = "it holds none";
    cLogMgr::instance().error("%s gives no face: %s", file.c_str(), reasons.c_str());
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
    // OUR OWN RULE: an octree without a face is not saved.
    if (std::ranges::all_of(model.objects, [](const cModelObject& o) { return o.faces.empty(); })) {
        tellLosses(input, model.losses);
        return {false, "No face could be read from file \"" + input + "\""};
    }
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
