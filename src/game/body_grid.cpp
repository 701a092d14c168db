#include "game/body_grid.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace {
/// Bodies that reach farther than so many times the usual would make every cell too wide: they are always
/// near.
constexpr double kLarge = 4;
constexpr double kSmallestCell = 1e-3, kFarthestCell = 1e9;

/// Half of how far two like this reach: the physics' coarse test is length + radius of both.
double reachOf(const cCapsule& capsule) {
    return static_cast<double>(capsule.length) + static_cast<double>(capsule.radius);
}

/// Of the body in the middle when they are sorted by it: a few huge ones do not count.
double middleReach(const std::vector<cCollisionBody>& bodies) {
    std::vector<double> reaches;
    reaches.reserve(bodies.size());
    for (const cCollisionBody& body : bodies) {
        const double reach = std::fabs(reachOf(body.shape));
        if (std::isfinite(reach)) reaches.push_back(reach);
    }
    if (reaches.empty()) return 0;
    const auto middle = reaches.begin() + static_cast<std::ptrdiff_t>(reaches.size() / 2);
    std::nth_element(reaches.begin(), middle, reaches.end());
    return *middle;
}
} // namespace

void cBodyGrid::build(const std::vector<cCollisionBody>& bodies) {
    cellSize_ = std::max(kSmallestCell, 2 * kLarge * middleReach(bodies));
    size_t buckets = 1;
    while (buckets < 2 * bodies.size()) buckets *= 2;
    first_.assign(buckets, kNone);
    next_.assign(bodies.size(), kNone);
    bucket_.assign(bodies.size(), kNone);
    large_.clear();
    everyone_.resize(bodies.size());
    std::iota(everyone_.begin(), everyone_.end(), 0u);
    for (const uint32_t i : everyone_) {
        if (isLarge(bodies[i].shape)) {
            large_.push_back(i);
        } else {
            insert(i, bucketOf(cellOf(bodies[i].shape.p0)));
        }
    }
}

/// Also what is no number: two that are not large reach less than a cell together.
bool cBodyGrid::isLarge(const cCapsule& capsule) const {
    return !(std::fabs(reachOf(capsule)) < cellSize_ / 2);
}

cBodyGrid::Cell cBodyGrid::cellOf(const cVector3& position) const {
    const auto cell = [&](float v) {
        const double n = std::floor(static_cast<double>(v) / cellSize_);
        // What is no number touches nothing and may stand anywhere.
        return static_cast<int32_t>(n > -kFarthestCell ? std::min(n, kFarthestCell) : -kFarthestCell);
    };
    return {cell(position.x), cell(position.z)};
}

uint32_t cBodyGrid::bucketOf(Cell cell) const {
    const uint32_t hash =
        static_cast<uint32_t>(cell.x) * 73856093u ^ static_cast<uint32_t>(cell.z) * 19349663u;
    return (hash ^ hash >> 15) & static_cast<uint32_t>(first_.size() - 1);
}

void cBodyGrid::insert(uint32_t index, uint32_t bucket) {
    bucket_[index] = bucket;
    next_[index] = first_[bucket];
    first_[bucket] = index;
}

void cBodyGrid::moved(size_t index, const cCollisionBody& body) {
    const auto i = static_cast<uint32_t>(index);
    if (bucket_[i] == kNone) return;
    const uint32_t bucket = bucketOf(cellOf(body.shape.p0));
    if (bucket == bucket_[i]) return;
    uint32_t* link = &first_[bucket_[i]];
    while (*link != i) link = &next_[*link];
    *link = next_[i];
    insert(i, bucket);
}

const std::vector<uint32_t>& cBodyGrid::near(const cCapsule& capsule) {
    if (isLarge(capsule)) return everyone_;
    found_ = large_;
    const Cell middle = cellOf(capsule.p0);
    for (int32_t x = middle.x - 1; x <= middle.x + 1; ++x) {
        for (int32_t z = middle.z - 1; z <= middle.z + 1; ++z) {
            for (uint32_t i = first_[bucketOf({x, z})]; i != kNone; i = next_[i]) found_.push_back(i);
        }
    }
    // Cells may share a bucket.
    std::sort(found_.begin(), found_.end());
    found_.erase(std::unique(found_.begin(), found_.end()), found_.end());
    return found_;
}
