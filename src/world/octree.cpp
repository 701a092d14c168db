#include "world/octree.h"

#include "core/frustum.h"
#include "data/binary_reader.h"
#include "platform/gl_api.h"
#include "render/mesh_draw.h"

#include <cstdio>

namespace {
enum NodeTag : int32_t { kInner = 0, kLeaf = 1, kEmpty = 2 };
constexpr int kDeepestFile = 64; ///< nesting that a file may have

using Node = cOctree::Node;

void writeNode(cBinaryWriter& out, const cMaterialList& materials, const Node* node) {
    if (!node || (!node->hasChildren && !node->model)) {
        out.i32(kEmpty);
        return;
    }
    out.i32(node->hasChildren ? kInner : kLeaf);
    out.vector3(node->centre);
    out.f32(node->size);
    if (node->hasChildren) {
        for (const auto& child : node->children) writeNode(out, materials, child.get());
    } else {
        out.i32(node->faceCount);
        node->model->writeObjects(out, materials);
    }
}

struct NodeReader {
    cBinaryReader& in;
    const cMaterialList& materials;
    int32_t leaves = 0;

    /// Null for an empty node or damaged data; the reader's state tells which.
    std::unique_ptr<Node> read(int depth) {
        const int32_t tag = in.i32();
        if (tag == kEmpty) return nullptr;
        if ((tag != kInner && tag != kLeaf) || depth > kDeepestFile || !in.good()) {
            in.setBad();
            return nullptr;
        }
        auto node = std::make_unique<Node>();
        node->hasChildren = tag == kInner;
        node->centre = in.vector3();
        node->size = in.f32();
        if (tag == kInner) {
            for (auto& child : node->children) {
                child = read(depth + 1);
                if (!in.good()) return nullptr;
            }
            return node;
        }
        node->faceCount = in.i32();
        node->model = std::make_unique<cModel>();
        if (!node->model->readObjects(in, materials)) {
            in.setBad();
            return nullptr;
        }
        for (cModelObject& object : node->model->objects)
            object.faceBoxes.build(object.positions, object.faces);
        ++leaves;
        return node;
    }
};

void compileNode(Node& node, const cVolumetricFog& fog) {
    for (auto& child : node.children) {
        if (child) compileNode(*child, fog);
    }
    if (!node.model || node.displayList > 0) return;
    node.displayList = static_cast<int32_t>(glGenLists(1));
    glNewList(static_cast<GLuint>(node.displayList), GL_COMPILE);
    meshDraw::drawImmediateTwoTextures(node.model->objects, fog);
    glEndList();
}

void dropLists(Node& node) {
    for (auto& child : node.children) {
        if (child) dropLists(*child);
    }
    if (node.displayList > 0) glDeleteLists(static_cast<GLuint>(node.displayList), 1);
    node.displayList = -1;
}
} // namespace

cOctree::Node::~Node() {
    if (displayList > 0 && platform::hasGlContext()) glDeleteLists(static_cast<GLuint>(displayList), 1);
}

cVector3 cOctree::Node::childCentre(const cVector3& centre, float size, int k) {
    const float q = size / 4;
    return centre + cVector3(k & 2 ? -q : q, k & 4 ? -q : q, k & 1 ? -q : q);
}

cOctree::cOctree() = default;
cOctree::~cOctree() = default;

void cOctree::clear() {
    root_.reset();
    queryNodes_.clear();
    totalNodes_ = lastDrawn_ = lastTrace_ = 0;
}

void cOctree::write(cBinaryWriter& out, const cMaterialList& materials) const {
    writeNode(out, materials, root_.get());
}

bool cOctree::read(cBinaryReader& in, const cMaterialList& materials) {
    clear();
    NodeReader reader{in, materials};
    root_ = reader.read(0);
    if (!in.good()) {
        clear();
        return false;
    }
    totalNodes_ = reader.leaves;
    prepareQueries();
    compileDisplayLists();
    return true;
}

void cOctree::compileDisplayLists() {
    if (!root_ || !platform::hasGlContext()) return;
    if (fog_ != compiledFog_) dropLists(*root_);
    compileNode(*root_, fog_);
    compiledFog_ = fog_;
}

void cOctree::draw() {
    lastDrawn_ = 0;
    if (root_) drawNode(*root_, true);
}

void cOctree::drawNode(const Node& node, bool cull) {
    if (cull) {
        const cFrustum::Result result = cFrustum::instance().testCube(node.centre, node.size);
        if (result == cFrustum::kOutside) return;
        cull = result == cFrustum::kStraddles;
    }
    for (const auto& child : node.children) {
        if (child) drawNode(*child, cull);
    }
    if (node.hasChildren) return;
    if (node.displayList > 0 && platform::hasGlContext()) glCallList(static_cast<GLuint>(node.displayList));
    ++lastDrawn_;
}

std::string cOctree::stats() const {
    char text[128];
    std::snprintf(text, sizeof text, "Total Nodes: %d, last drawn: %d Last Trace: %d", totalNodes_,
                  lastDrawn_, lastTrace_);
    return text;
}
