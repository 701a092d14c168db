#include "forge/scenery.h"

#include "forge/noise.h"
#include "forge/preview.h"
#include "forge/writers.h"

#include <algorithm>
#include <set>
#include <tuple>

namespace forge {
namespace {
constexpr float kWalkableNormal = 0.6f; // y of the steepest face one can stand on
constexpr float kLongestEdge = 20;      // of collision faces
// Arguments of the octree builder: faces in a leaf that need no more splitting, generations.
constexpr const char* kSplitting = "60 4";

cVector3 faceNormal(const Mesh& mesh, const FaceIndices& f) {
    const cVector3 &a = mesh.positions[f[0]], &b = mesh.positions[f[1]], &c = mesh.positions[f[2]];
    return (b - a).cross(c - a).normalized();
}

void addFace(Mesh& target, const Mesh& source, const FaceIndices& f) {
    uint32_t corners[3];
    for (size_t k = 0; k < 3; ++k) {
        const TexCoord& t = source.texCoords[f[k]];
        corners[k] = target.addVertex(source.positions[f[k]], t.u, t.v);
    }
    target.addTriangle(corners[0], corners[1], corners[2]);
}

bool hasLongEdge(const Mesh& mesh) {
    return std::any_of(mesh.faces.begin(), mesh.faces.end(), [&](const FaceIndices& f) {
        for (size_t k = 0; k < 3; ++k)
            if ((mesh.positions[f[k]] - mesh.positions[f[(k + 1) % 3]]).length() > kLongestEdge) return true;
        return false;
    });
}
} // namespace

void Scenery::addSeen(const Material& material, const Mesh& mesh, bool ground) {
    auto at = std::find_if(groups_.begin(), groups_.end(), [&](const Group& g) {
        return g.material.name == material.name && g.ground == ground;
    });
    if (at == groups_.end()) at = groups_.insert(groups_.end(), Group{material, {}, ground});
    at->mesh.append(mesh);
}

void Scenery::addSolid(const Mesh& mesh) {
    for (const FaceIndices& f : mesh.faces)
        addFace(faceNormal(mesh, f).y >= kWalkableNormal ? floors_ : walls_, mesh, f);
}

void Scenery::add(const Material& material, const Mesh& mesh, Use use) {
    if (use & kSeen) addSeen(material, mesh, false);
    if (use & kSolid) addSolid(mesh);
}

void Scenery::addGround(const Material& material, const Mesh& mesh, Use use) {
    if (use & kSeen) addSeen(material, mesh, true);
    if (use & kSolid) addSolid(mesh);
}

void Scenery::darken(const cVector3& low, const cVector3& high, float factor) {
    dark_.push_back({low, high, factor});
}

float Scenery::brightness(const cVector3& p, const cVector3& n, const Layer& layer) const {
    constexpr float kAmbient = 0.66f;
    float light = kAmbient + (1 - kAmbient) * std::max(0.0f, n.dot(layer.towardsLight));
    for (const Dark& d : dark_)
        if (p.x > d.low.x && p.y > d.low.y && p.z > d.low.z && p.x < d.high.x && p.y < d.high.y &&
            p.z < d.high.z)
            light *= d.factor;
    // Contact: less light reaches the foot of a wall.
    constexpr float kContact = 0.74f, kContactHeight = 1.6f, kUpright = 0.7f;
    if (height_ && n.y < kUpright)
        light *= mix(kContact, 1, smoothStep(0, kContactHeight, p.y - height_(p.x, p.z)));
    return std::max(light, layer.darkest);
}

Parts Scenery::layerParts(const Layer& layer) const {
    Parts parts;
    for (const Group& g : groups_) {
        Part part{g.material.name + "_layer", layer.texture, {}, g.mesh};
        // One corner set for each face normal: flat shading for buildings.
        for (const FaceIndices& f : g.mesh.faces) {
            const cVector3 n = faceNormal(g.mesh, f);
            for (uint32_t k : f) {
                const cVector3& p = g.mesh.positions[k];
                const float half = 0.5f / layer.worldSize;
                TexCoord& t = part.mesh.texCoords[k];
                if (g.ground) {
                    // The southern border stops short of the ramp strip.
                    t = {0.5f + p.x * half, std::max(0.5f - p.z * half, 2.3f * layer.rampV)};
                } else {
                    const float b =
                        g.material.light == kGlowing
                            ? 1
                            : brightness(p, g.material.light == kFromAbove ? cVector3(0, 1, 0) : n, layer);
                    t = {0.02f + 0.96f * clamp01((b - layer.darkest) / (1 - layer.darkest)), layer.rampV};
                }
            }
        }
        parts.push_back(std::move(part));
    }
    return parts;
}

void Scenery::checkBox(Output& out, const std::string& name, float size) const {
    Mesh seen, solid = floors_;
    for (const Group& g : groups_) seen.append(g.mesh);
    solid.append(walls_);
    const cVector3 low = seen.low(), high = seen.high();
    if (!(low == solid.low()) || !(high == solid.high()))
        out.problem(name + ": appearance and collision differ in their bounding boxes");
    if (!(low == -high)) out.problem(name + ": the bounding box is not centred on the origin");
    if (std::max({high.x, high.y, high.z}) != size)
        out.problem(name + ": the largest coordinate is not the size");
    if (hasLongEdge(solid)) out.problem(name + ": a collision edge is too long");
    std::set<size_t> counts;
    for (const Group& g : groups_)
        if (!counts.insert(g.mesh.faces.size()).second)
            out.problem(
                name +
                ": two materials have the same number of faces, the second layer needs them to differ");
}

void Scenery::write(Output& out, const std::string& name, float size, const Layer& layer) const {
    checkBox(out, name, size);
    Parts seen;
    for (const Group& g : groups_)
        seen.push_back({g.material.name, g.material.texture, g.material.colour, g.mesh});
    Parts shown = layerParts(layer);
    for (Part& part : shown) part.texture = "src_mdl/" + part.texture;
    const float away = size * 0.9f;
    // From above, from the side, and round about from the middle.
    addPreview({name + "_south", {away * 0.6f, away * 0.7f, away * 1.2f}, {0, 2, 0}}, shown);
    for (size_t i = 0; i < seen.size(); ++i)
        if (!groups_[i].ground) shown[i] = {"", "src_mdl/" + seen[i].texture, {}, seen[i].mesh};
    addPreview({name + "_north", {-size * 0.2f, 9, -size * 0.62f}, {1, 3.5f, 0}}, shown);
    for (const auto& [side, x, z] : {std::tuple{"_to_north", 0.0f, -1.0f},
                                     {"_to_east", 1.0f, 0.0f},
                                     {"_to_south", 0.0f, 1.0f},
                                     {"_to_west", -1.0f, 0.0f}})
        addPreview({name + side, {-3.3f * x, 4.6f, -3.3f * z}, {3 * x, 3.6f, 3 * z}, 75}, shown);
    const Parts solid = {{"floors", "", {90, 160, 90, 0}, floors_},
                         {"walls", "", {140, 130, 120, 0}, walls_}};
    const auto put = [&](const std::string& base, const Parts& parts) {
        const ObjFiles files = objFiles(parts, base + ".mtl");
        out.putText("src_mdl/" + base + ".obj", files.obj);
        out.putText("src_mdl/" + base + ".mtl", files.mtl);
    };
    put(name, seen);
    put(name + "_layer", layerParts(layer));
    put(name + "_collision", solid);
    const std::string end =
        std::string(" ") + kSplitting + " " + std::to_string(static_cast<int>(size)) + " 1";
    const std::string folder = "src_mdl\\" + name, target = "oct\\" + name;
    out.addOctree("dropOctree " + folder + ".obj " + folder + "_layer.obj " + target + ".oct" + end,
                  target + ".oct");
    out.addOctree("dropOctree " + folder + "_collision.obj " + target + "_collision.oct" + end,
                  target + "_collision.oct");
}
} // namespace forge
