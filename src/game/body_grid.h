#pragma once
#include "world/collision_body.h"

#include <cstdint>
#include <vector>

/// Which bodies may touch a capsule: columns of level cells, two of which are wider than any two bodies
/// reach. It only leaves out what is far away; who is left comes in the order of the array, as without it.
class cBodyGrid {
public:
    void build(const std::vector<cCollisionBody>& bodies);
    /// The body stands elsewhere now.
    void moved(size_t index, const cCollisionBody& body);
    /// Indices in ascending order, of more than the near ones; valid until the next call.
    const std::vector<uint32_t>& near(const cCapsule& capsule);

private:
    static constexpr uint32_t kNone = UINT32_MAX;
    struct Cell {
        int32_t x, z;
    };
    Cell cellOf(const cVector3& position) const;
    uint32_t bucketOf(Cell cell) const;
    void insert(uint32_t index, uint32_t bucket);
    bool isLarge(const cCapsule& capsule) const;

    double cellSize_ = 1;            ///< units
    std::vector<uint32_t> first_;    ///< of a bucket; the number of buckets is a power of two
    std::vector<uint32_t> next_;     ///< of a body, in its bucket
    std::vector<uint32_t> bucket_;   ///< of a body; kNone for the large ones
    std::vector<uint32_t> everyone_; ///< all indices, for a capsule as large as these
    std::vector<uint32_t> large_;    ///< always near
    std::vector<uint32_t> found_;
};
