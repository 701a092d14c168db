#pragma once
#include "core/geometry.h"
#include "models/model.h"
#include "render/mesh_draw.h"

#include <functional>
#include <memory>
#include <string>
#include <vector>

/// Static level geometry in a tree of cubes. A face lies in every leaf that it reaches, uncut and in its
/// original order: the order decides which contact the physics reports.
class cOctree {
public:
    using LeafList = std::vector<const cModel*>;

    cOctree();
    ~cOctree();
    cOctree(const cOctree&) = delete;
    cOctree& operator=(const cOctree&) = delete;

    using Watch = std::function<void(double share)>; ///< is told, at each leaf, how much is built, 0 … 1
    /// Splits nodes with more than `minFaces` faces down to `maxGenerations`. With `triangleDetection` a face
    /// goes to every cube that it overlaps, without it to those that hold one of its corners. Does nothing
    /// for a model without objects.
    void build(const cModel& model, int minFaces, int maxGenerations, bool triangleDetection,
               const Watch& watch = {});
    void clear();

    void write(cBinaryWriter& out, const cMaterialList& materials) const;
    /// Replaces the tree. False, with the tree empty, when the data is damaged.
    bool read(cBinaryReader& in, const cMaterialList& materials);

    /// Fog coordinates that display lists compiled from now on carry.
    void setFog(const cVolumetricFog& fog) { fog_ = fog; }
    /// Draws the leaves that touch the view frustum.
    void draw();
    /// "Total Nodes: %d, last drawn: %d Last Trace: %d"
    std::string stats() const;
    /// Makes the leaves' display lists (needs a GL context; without one nothing is drawn); anew when the fog
    /// is another than they carry.
    void compileDisplayLists();

    // Queries return leaf models near a shape, never triangles. The list is emptied first.
    void queryBodies(const cCapsule& a, const cCapsule& b, LeafList& out) const;
    void querySphere(const cVector3& centre, float radius, LeafList& out) const;
    void querySegment(const cSegment& segment, LeafList& out) const;
    /// Fraction 0 … 1 of the way from `start` to `end` that is free; below 0.01 counts as 0.
    float trace(const cVector3& start, const cVector3& end) const;

    int32_t totalNodes() const { return totalNodes_; } ///< leaves with geometry
    int32_t lastDrawn() const { return lastDrawn_; }
    int32_t lastTrace() const { return lastTrace_; } ///< leaves returned by the last query
    bool empty() const { return !root_; }

    struct Node;

private:
    struct Builder;
    /// What queries read of a node. The children of one stand side by side.
    struct QueryNode {
        cVector3 centre;
        float half; ///< edge length of the cube / 2
        const cModel* model;
        uint32_t firstChild, childCount;
    };
    template <typename Test> void visit(const QueryNode& node, const Test& test, LeafList& out) const;
    template <typename Test> void query(const Test& test, LeafList& out) const;
    void prepareQueries();
    void addQueryNode(const Node& node, size_t at);
    void drawNode(const Node& node, bool cull);

    std::unique_ptr<Node> root_;
    std::vector<QueryNode> queryNodes_; ///< root first
    cVolumetricFog fog_, compiledFog_;  ///< of the lists to come, of those that there are
    int32_t totalNodes_ = 0;
    int32_t lastDrawn_ = 0;
    mutable int32_t lastTrace_ = 0;
};

struct cOctree::Node {
    bool hasChildren = false;
    float size = 0; ///< edge length of the cube
    int32_t faceCount = 0;
    cVector3 centre;
    std::unique_ptr<cModel> model; ///< leaves only; null in an empty one
    std::unique_ptr<Node> children[8];
    int32_t displayList = -1;

    ~Node();
    static cVector3 childCentre(const cVector3& centre, float size, int k);
};
