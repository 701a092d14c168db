#pragma once
#include "core/vector3.h"

#include <array>
#include <cstdint>
#include <vector>

/// An upright box; what is no number in it touches everything.
struct cBox {
    cVector3 low, high;

    /// Around both ends of a line and the points computed on it, grown by `reach` on every side.
    static cBox around(const cVector3& a, const cVector3& b, float reach);
    void add(const cVector3& p);
    const cBox& bounds() const { return *this; }
    /// What the bounds do not tell; nothing here.
    bool passesBeside(const cBox&) const { return false; }
};

/// A thin line, as a shape that boxes are held against.
class cLineReach {
public:
    cLineReach(const cVector3& start, const cVector3& end)
        : bounds_(cBox::around(start, end, 0)), middle_((start + end) / 2), half_((end - start) / 2) {}

    const cBox& bounds() const { return bounds_; }
    /// For a box that touches the bounds: separated by an axis across the line. The boxes' own growth covers
    /// the rounding.
    bool passesBeside(const cBox& box) const {
        const cVector3 m = middle_ - (box.low + box.high) / 2, h = (box.high - box.low) / 2;
        const cVector3 c = m.cross(half_);
        const cVector3 d(std::fabs(half_.x), std::fabs(half_.y), std::fabs(half_.z));
        return std::fabs(c.y) > h.x * d.z + h.z * d.x || std::fabs(c.x) > h.y * d.z + h.z * d.y ||
               std::fabs(c.z) > h.x * d.y + h.y * d.x;
    }

private:
    cBox bounds_;
    cVector3 middle_, half_;
};

/// Boxes around a mesh's triangles, to pass over those that are too far away for any test. Each box is larger
/// than its triangle by what pointInTriangle and the rounding of a tested point can reach beyond its edges.
class cFaceBoxes {
public:
    void build(const std::vector<cVector3>& positions, const std::vector<std::array<uint32_t, 3>>& faces);
    size_t count() const { return count_; }
    /// Calls `visit` with the index of every face whose box touches the shape (cBox, cLineReach), ascending,
    /// until it answers false. False when it did.
    template <typename Shape, typename Visit>
    bool eachTouching(const Shape& shape, const Visit& visit) const {
        const cBox bounds = shape.bounds();
        for (size_t b = 0; b < blocks_.size(); ++b) {
            const Misses misses = blocks_[b].missedBy(bounds);
            if (allMiss(misses)) continue;
            const size_t first = b * kBlock;
            for (size_t k = 0; k < kBlock && first + k < count_; ++k) {
                if (misses[k] != 0 || shape.passesBeside(blocks_[b].box(k))) continue;
                if (!visit(first + k)) return false;
            }
        }
        return true;
    }

private:
    static constexpr size_t kBlock = 4; ///< boxes compared at once
    using Misses = std::array<int32_t, kBlock>;
    using Lanes = std::array<float, kBlock>;

    static int32_t above(float a, float b) { return a > b ? 1 : 0; }

    struct Block {
        Lanes low[3] = {}, high[3] = {};
        cBox box(size_t k) const {
            return {{low[0][k], low[1][k], low[2][k]}, {high[0][k], high[1][k], high[2][k]}};
        }
        Misses missedBy(const cBox& box) const {
            Misses misses;
            for (size_t k = 0; k < kBlock; ++k) {
                misses[k] = above(low[0][k], box.high.x) | above(box.low.x, high[0][k]) |
                            above(low[1][k], box.high.y) | above(box.low.y, high[1][k]) |
                            above(low[2][k], box.high.z) | above(box.low.z, high[2][k]);
            }
            return misses;
        }
    };
    static bool allMiss(const Misses& m) { return (m[0] & m[1] & m[2] & m[3]) != 0; }

    std::vector<Block> blocks_;
    size_t count_ = 0;
};
