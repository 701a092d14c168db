#include "world/octree.h"

#include <algorithm>
#include <array>

namespace {
/// Beyond this a cube of a 1000-unit level is smaller than a float can tell apart; it also bounds what
/// coincident faces can multiply to.
constexpr int kDeepestBuild = 20;
/// Reach added to a cube for rounding, as a part of the root's size: a face in a dividing plane must not fall
/// between the cubes on both sides.
constexpr float kRoundingReach = 2e-6f;

using Corners = std::array<cVector3, 3>;

bool overlapsOnAxis(const cVector3& axis, const Corners& t, float half) {
    const float a = axis.dot(t[0]), b = axis.dot(t[1]), c = axis.dot(t[2]);
    const float reach = half * (std::fabs(axis.x) + std::fabs(axis.y) + std::fabs(axis.z));
    return std::min({a, b, c}) <= reach && std::max({a, b, c}) >= -reach;
}

/// Separating axes of a triangle and a cube (Akenine-Möller 2001). Touching counts, or a floor that lies in a
/// dividing plane would vanish from both sides.
bool triangleTouchesCube(Corners t, const cVector3& centre, float half) {
    for (cVector3& corner : t) corner -= centre;
    static constexpr cVector3 kAxes[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    const cVector3 edges[3] = {t[1] - t[0], t[2] - t[1], t[0] - t[2]};
    for (const cVector3& axis : kAxes) {
        if (!overlapsOnAxis(axis, t, half)) return false;
        for (const cVector3& edge : edges) {
            if (!overlapsOnAxis(axis.cross(edge), t, half)) return false;
        }
    }
    return overlapsOnAxis(edges[0].cross(edges[1]), t, half);
}

bool octantHolds(const cVector3& p, const cVector3& centre, int k) {
    return (k & 2 ? p.x <= centre.x : centre.x <= p.x) && (k & 4 ? p.y <= centre.y : centre.y <= p.y) &&
           (k & 1 ? p.z <= centre.z : centre.z <= p.z);
}

template <typename Element>
void compactArray(std::vector<Element>& values, std::vector<FaceIndices>& faces,
                  std::vector<Element>* alongside) {
    constexpr uint32_t kUnused = 0xFFFFFFFF;
    std::vector<uint32_t> renumbered(values.size(), kUnused);
    for (const FaceIndices& face : faces) {
        for (const uint32_t index : face) renumbered[index] = 0;
    }
    uint32_t next = 0;
    for (size_t i = 0; i < values.size(); ++i) {
        if (renumbered[i] == kUnused) continue;
        values[next] = values[i];
        if (alongside && i < alongside->size()) (*alongside)[next] = (*alongside)[i];
        renumbered[i] = next++;
    }
    const bool sameLength = alongside && alongside->size() == values.size();
    values.resize(next);
    if (sameLength) alongside->resize(next);
    for (FaceIndices& face : faces) {
        for (uint32_t& index : face) index = renumbered[index];
    }
}

/// Removes what no face uses and renumbers the indices; the order stays.
void compact(cModelObject& object) {
    const bool normals = object.mode < kModeTwoTextures;
    compactArray<cVector3>(object.positions, object.faces, normals ? &object.vectors : nullptr);
    if (!object.texCoords.empty()) compactArray<TexCoord>(object.texCoords, object.faceTexCoords, nullptr);
    if (!normals && !object.faceSecond.empty()) {
        compactArray<cVector3>(object.vectors, object.faceSecond, nullptr);
    }
}
} // namespace

struct cOctree::Builder {
    int minFaces;
    int maxGenerations;
    bool triangleDetection;
    int32_t leaves = 0;

    /// Faces of each object, by index into the source model.
    using Selection = std::vector<std::vector<uint32_t>>;

    const cModel& source;
    float slack; ///< see kRoundingReach

    uint8_t childrenOf(const Node& node, const Corners& t) const {
        uint8_t mask = 0;
        for (int k = 0; k < 8; ++k) {
            bool receives = false;
            if (triangleDetection) {
                receives = triangleTouchesCube(t, Node::childCentre(node.centre, node.size, k),
                                               node.size / 4 + slack);
            } else {
                for (const cVector3& corner : t) receives = receives || octantHolds(corner, node.centre, k);
            }
            if (receives) mask = static_cast<uint8_t>(mask | 1 << k);
        }
        return mask;
    }

    void split(Node& node, const Selection& selection, int32_t faceCount, int generation) {
        node.faceCount = faceCount;
        // A cube without size cannot be told from its children: each would receive every face again.
        if (faceCount <= minFaces || generation >= maxGenerations || !(node.size > 0)) {
            makeLeaf(node, selection);
            return;
        }
        node.hasChildren = true;
        std::array<Selection, 8> parts;
        std::array<int32_t, 8> counts{};
        for (Selection& part : parts) part.resize(selection.size());
        for (size_t o = 0; o < selection.size(); ++o) {
            const cModelObject& object = source.objects[o];
            for (const uint32_t f : selection[o]) {
                const FaceIndices& face = object.faces[f];
                const uint8_t mask = childrenOf(
                    node, {object.positions[face[0]], object.positions[face[1]], object.positions[face[2]]});
                for (size_t k = 0; k < 8; ++k) {
                    if (!(mask >> k & 1)) continue;
                    parts[k][o].push_back(f);
                    ++counts[k];
                }
            }
        }
        for (int k = 0; k < 8; ++k) {
            const auto slot = static_cast<size_t>(k);
            if (counts[slot] == 0) continue;
            node.children[k] = std::make_unique<Node>();
            node.children[k]->centre = Node::childCentre(node.centre, node.size, k);
            node.children[k]->size = node.size / 2;
            split(*node.children[k], parts[slot], counts[slot], generation + 1);
            parts[slot] = {};
        }
    }

    void makeLeaf(Node& node, const Selection& selection) {
        node.model = std::make_unique<cModel>();
        ++leaves;
        for (size_t o = 0; o < selection.size(); ++o) {
            if (selection[o].empty()) continue;
            const cModelObject& from = source.objects[o];
            cModelObject object;
            object.colour = from.colour;
            object.texture = from.texture;
            object.mode = from.mode;
            object.positions = from.positions;
            object.vectors = from.vectors;
            object.texCoords = from.texCoords;
            for (const uint32_t f : selection[o]) {
                object.faces.push_back(from.faces[f]);
                if (f < from.faceTexCoords.size()) object.faceTexCoords.push_back(from.faceTexCoords[f]);
                if (f < from.faceSecond.size()) object.faceSecond.push_back(from.faceSecond[f]);
            }
            compact(object);
            node.model->add(std::move(object));
        }
    }
};

void cOctree::build(const cModel& model, int minFaces, int maxGenerations, bool triangleDetection) {
    if (model.objects.empty()) return;
    clear();
    Builder builder{minFaces, std::min(maxGenerations, kDeepestBuild), triangleDetection, 0,
                    model,    2 * model.extent() * kRoundingReach};
    Builder::Selection all(model.objects.size());
    for (size_t o = 0; o < all.size(); ++o) {
        all[o].resize(model.objects[o].faces.size());
        for (size_t f = 0; f < all[o].size(); ++f) all[o][f] = static_cast<uint32_t>(f);
    }
    root_ = std::make_unique<Node>();
    root_->centre = model.centre();
    root_->size = 2 * model.extent();
    builder.split(*root_, all, model.totalFaces(), 0);
    totalNodes_ = builder.leaves;
    compileDisplayLists();
}
