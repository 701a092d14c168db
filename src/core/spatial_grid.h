#pragma once
#include "core/vector3.h"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

/// Which of many things may be near a place. A thing is a point with a reach, in world units; it lies in a
/// cell at least twice as wide as it reaches, of one of several sizes, so that large things do not slow down
/// the search for small ones. The grid only leaves out what is far away: callers test who is left as they
/// would test all.
class cSpatialGrid {
public:
    /// Forgets everything; room for so many.
    void reset(size_t count);
    /// A thing's index is the number of those before it.
    void add(const cVector3& point, float reach);
    /// The thing stands elsewhere or reaches farther now.
    void move(uint32_t index, const cVector3& point, float reach);
    /// Grows when a thing comes to another cell: who was near before may no longer be all.
    uint64_t changes() const { return changes_; }

    /// Indices in ascending order of all whose points lie within `radius` + `scale` times their reach of the
    /// line, and of some others; valid until the next call. Never looks at more cells than there are things.
    std::span<const uint32_t> near(const cVector3& from, const cVector3& to, float radius, float scale);
    std::span<const uint32_t> near(const cVector3& centre, float radius, float scale) {
        return near(centre, centre, radius, scale);
    }

private:
    static constexpr uint32_t kNone = UINT32_MAX;
    static constexpr uint32_t kLevels = 20;             ///< sizes of cells, each twice the one before
    static constexpr uint64_t kEverywhere = UINT64_MAX; ///< key of what is near everything
    using Cell = std::array<int32_t, 3>;
    struct Thing {
        uint64_t key;            ///< of its cell
        uint32_t next, previous; ///< in its bucket
    };
    struct Corridor;

    static uint64_t keyOf(uint32_t level, const Cell& cell);
    uint64_t keyFor(const cVector3& point, float reach);
    uint32_t& firstOf(uint64_t key);
    void insert(uint32_t index, uint64_t key);
    void remove(uint32_t index);
    void take(uint64_t key);
    bool search(const Corridor& corridor, uint32_t level);

    std::vector<uint32_t> first_; ///< of a bucket; their number is a power of two
    std::vector<Thing> things_;
    std::array<float, kLevels> farthest_{}; ///< what a thing of this size reaches; below 0: there was none
    std::vector<uint32_t> everyone_;        ///< all indices
    std::vector<uint32_t> found_;
    uint64_t changes_ = 0;
    int64_t cellsLeft_ = 0; ///< of one search
};
