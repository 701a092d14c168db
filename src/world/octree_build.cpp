#include "world/octree.h"

#include <algorithm>
#include <array>
#include <numeric>

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
    // The cube's own axes first: they part most pairs.
    for (const cVector3& axis : kAxes) {
        if (!overlapsOnAxis(axis, t, half)) return false;
    }
    const cVector3 edges[3] = {t[1] - t[0], t[2] - t[1], t[0] - t[2]};
    for (const cVector3& axis : kAxes) {
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

/// Takes the elements that a leaf's faces use out of a large array, in their order there. The cost follows
/// the leaf, not the array: a level has as many leaves as the array has hundreds of elements.
class cGatherer {
public:
    /// The used indices in ascending order; the faces then count from 0 within them. Every index must be
    /// below `size`.
    const std::vector<uint32_t>& renumber(std::vector<FaceIndices>& faces, size_t size) {
        if (numbers_.size() < size) numbers_.resize(size, kUnused);
        used_.clear();
        for (const FaceIndices& face : faces) {
            for (const uint32_t index : face) {
                if (numbers_[index] == kUnused) used_.push_back(index);
                numbers_[index] = 0;
            }
        }
        std::sort(used_.begin(), used_.end());
        for (uint32_t n = 0; n < used_.size(); ++n) numbers_[used_[n]] = n;
        for (FaceIndices& face : faces) {
            for (uint32_t& index : face) index = numbers_[index];
        }
        for (const uint32_t index : used_) numbers_[index] = kUnused;
        return used_;
    }

private:
    static constexpr uint32_t kUnused = UINT32_MAX;
    std::vector<uint32_t> numbers_; ///< all kUnused between calls
    std::vector<uint32_t> used_;
};

/// Elements that the array does not have are left out.
template <typename Element>
std::vector<Element> gathered(const std::vector<Element>& from, const std::vector<uint32_t>& used) {
    std::vector<Element> values;
    values.reserve(from.empty() ? 0 : used.size());
    for (const uint32_t index : used) {
        if (index < from.size()) values.push_back(from[index]);
    }
    return values;
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
    const Watch& watch;
    double built = 0; ///< share of the whole
    cGatherer gatherer = {};

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

    /// `share` of the work, for whoever watches.
    void split(Node& node, const Selection& selection, int32_t faceCount, int generation, double share) {
        node.faceCount = faceCount;
        // A cube without size cannot be told from its children: each would receive every face again.
        if (faceCount <= minFaces || generation >= maxGenerations || !(node.size > 0)) {
            makeLeaf(node, selection);
            built += share;
            if (watch) watch(built);
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
        const double each = share / std::max(1, std::accumulate(counts.begin(), counts.end(), 0));
        for (int k = 0; k < 8; ++k) {
            const auto slot = static_cast<size_t>(k);
            if (counts[slot] == 0) continue;
            node.children[k] = std::make_unique<Node>();
            node.children[k]->centre = Node::childCentre(node.centre, node.size, k);
            node.children[k]->size = node.size / 2;
            split(*node.children[k], parts[slot], counts[slot], generation + 1, each * counts[slot]);
            parts[slot] = {};
        }
    }

    void makeLeaf(Node& node, const Selection& selection) {
        node.model = std::make_unique<cModel>();
        ++leaves;
        for (size_t o = 0; o < selection.size(); ++o) {
            if (selection[o].empty()) continue;
            node.model->add(part(source.objects[o], selection[o]));
        }
    }

    /// A copy that keeps only these faces and what they use.
    cModelObject part(const cModelObject& from, const std::vector<uint32_t>& faces) {
        cModelObject object;
        object.colour = from.colour;
        object.texture = from.texture;
        object.mode = from.mode;
        for (const uint32_t f : faces) {
            object.faces.push_back(from.faces[f]);
            if (f < from.faceTexCoords.size()) object.faceTexCoords.push_back(from.faceTexCoords[f]);
            if (f < from.faceSecond.size()) object.faceSecond.push_back(from.faceSecond[f]);
        }
        const auto& corners = gatherer.renumber(object.faces, from.positions.size());
        object.positions = gathered(from.positions, corners);
        object.faceBoxes.build(object.positions, object.faces);
        if (from.mode < kModeTwoTextures) object.vectors = gathered(from.vectors, corners);
        // Indices into an empty array may be anything.
        if (!from.texCoords.empty()) {
            object.texCoords =
                gathered(from.texCoords, gatherer.renumber(object.faceTexCoords, from.texCoords.size()));
        }
        if (from.mode < kModeTwoTextures || from.vectors.empty()) return object;
        object.vectors =
            object.faceSecond.empty()
                ? from.vectors
                : gathered(from.vectors, gatherer.renumber(object.faceSecond, from.vectors.size()));
        return object;
    }
};

void cOctree::build(const cModel& model, int minFaces, int maxGenerations, bool triangleDetection,
                    const Watch& watch) {
    if (model.objects.empty()) return;
    clear();
    Builder builder{minFaces,
                    std::min(maxGenerations, kDeepestBuild),
                    triangleDetection,
                    0,
                    model,
                    2 * model.extent() * kRoundingReach,
                    watch};
    Builder::Selection all(model.objects.size());
    for (size_t o = 0; o < all.size(); ++o) {
        all[o].resize(model.objects[o].faces.size());
        for (size_t f = 0; f < all[o].size(); ++f) all[o][f] = static_cast<uint32_t>(f);
    }
    root_ = std::make_unique<Node>();
    root_->centre = model.centre();
    root_->size = 2 * model.extent();
    builder.split(*root_, all, model.totalFaces(), 0, 1);
    totalNodes_ = builder.leaves;
    prepareQueries();
    compileDisplayLists();
}
