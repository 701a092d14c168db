#include "core/face_boxes.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
/// pointInTriangle takes points up to this part of an edge beyond it, and half again as far above the plane.
constexpr float kInsideReach = 0.02f;
/// Rounding of a point computed from coordinates of a size, as a part of that size.
constexpr float kRounding = 1e-6f;
constexpr float kInfinity = std::numeric_limits<float>::infinity();

float largest(const cBox& box) {
    const cVector3 &l = box.low, &h = box.high;
    return std::max(
        {std::fabs(l.x), std::fabs(l.y), std::fabs(l.z), std::fabs(h.x), std::fabs(h.y), std::fabs(h.z)});
}

void grow(cBox& box, float reach) {
    box.low -= {reach, reach, reach};
    box.high += {reach, reach, reach};
}
} // namespace

cBox cBox::around(const cVector3& a, const cVector3& b, float reach) {
    cBox box{a, a};
    box.add(b);
    grow(box, reach + largest(box) * kRounding);
    return box;
}

void cBox::add(const cVector3& p) {
    for (int axis = 0; axis < 3; ++axis) {
        low[axis] = std::min(low[axis], p[axis]);
        high[axis] = std::max(high[axis], p[axis]);
    }
}

void cFaceBoxes::build(const std::vector<cVector3>& positions,
                       const std::vector<std::array<uint32_t, 3>>& faces) {
    count_ = faces.size();
    blocks_.assign((count_ + kBlock - 1) / kBlock, {});
    for (size_t f = 0; f < count_; ++f) {
        const cVector3 &a = positions[faces[f][0]], &b = positions[faces[f][1]], &c = positions[faces[f][2]];
        cBox box{a, a};
        box.add(b);
        box.add(c);
        const cVector3 size = box.high - box.low;
        grow(box, (size.x + size.y + size.z) * kInsideReach + largest(box) * kRounding);
        // Comparisons with what is no number decide nothing: such a face is never passed over.
        const bool ordinary = a.isFinite() && b.isFinite() && c.isFinite();
        Block& block = blocks_[f / kBlock];
        for (int axis = 0; axis < 3; ++axis) {
            block.low[axis][f % kBlock] = ordinary ? box.low[axis] : -kInfinity;
            block.high[axis][f % kBlock] = ordinary ? box.high[axis] : kInfinity;
        }
    }
}
