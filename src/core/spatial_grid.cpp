#include "core/spatial_grid.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr double kSmallestCell = 4; ///< units: how wide
constexpr double kTall = 4; ///< times as high as wide: levels are flat, though things fly over each other
constexpr double kOutermost = 1e9; ///< cells from the origin; what is farther counts as there
constexpr double kRounding = 1e-5; ///< callers reckon in single precision: more than they can be off

double cellsPerUnit(uint32_t level) {
    return std::ldexp(1 / kSmallestCell, -static_cast<int>(level));
}

/// Of a coordinate in cells.
int32_t cellAt(double v) {
    // What is no number is near nothing and may stand anywhere.
    const double held = v > -kOutermost ? std::min(v, kOutermost) : -kOutermost;
    const auto whole = static_cast<int32_t>(held);
    return whole - (held < whole);
}

double largest(const cVector3& v) {
    return static_cast<double>(std::max({std::fabs(v.x), std::fabs(v.y), std::fabs(v.z)}));
}
} // namespace

/// All points within `width` of the line from `start` along `way`, in cells.
struct cSpatialGrid::Corridor {
    std::array<double, 3> start, way, width;
    int along = 0; ///< the axis on which it goes farthest

    Corridor(const cVector3& from, const cVector3& to, double reach, double perUnit) {
        for (int axis = 0; axis < 3; ++axis) {
            const auto i = static_cast<size_t>(axis);
            const double scale = axis == 1 ? perUnit / kTall : perUnit;
            start[i] = static_cast<double>(from[axis]) * scale;
            way[i] = static_cast<double>(to[axis]) * scale - start[i];
            width[i] = reach * scale;
            if (std::fabs(way[i]) > std::fabs(way[static_cast<size_t>(along)])) along = axis;
        }
    }
    /// The cells of an axis that the part of the line from `t0` to `t1` comes near to.
    std::array<int32_t, 2> range(size_t axis, double t0, double t1) const {
        const double a = start[axis] + way[axis] * t0, b = start[axis] + way[axis] * t1;
        return {cellAt(std::min(a, b) - width[axis]), cellAt(std::max(a, b) + width[axis])};
    }
};

void cSpatialGrid::reset(size_t count) {
    size_t buckets = 1;
    while (buckets < 2 * count) buckets *= 2;
    first_.assign(buckets, kNone);
    things_.clear();
    things_.reserve(count);
    everyone_.clear();
    farthest_.fill(-1);
    ++changes_;
}

void cSpatialGrid::add(const cVector3& point, float reach) {
    const auto index = static_cast<uint32_t>(things_.size());
    things_.emplace_back();
    everyone_.push_back(index);
    insert(index, keyFor(point, reach));
}

void cSpatialGrid::move(uint32_t index, const cVector3& point, float reach) {
    const uint64_t key = keyFor(point, reach);
    if (key == things_[index].key) return;
    remove(index);
    insert(index, key);
    ++changes_;
}

uint64_t cSpatialGrid::keyOf(uint32_t level, const Cell& cell) {
    // Odd factors: cells beside each other differ.
    uint64_t key = static_cast<uint32_t>(cell[0]);
    key = key * 0x9e3779b97f4a7c15u + static_cast<uint32_t>(cell[1]);
    key = key * 0x9e3779b97f4a7c15u + static_cast<uint32_t>(cell[2]);
    return key * 0x9e3779b97f4a7c15u + level;
}

/// What reaches farther than the largest cells allow, or reaches no number, is near everything.
uint64_t cSpatialGrid::keyFor(const cVector3& point, float reach) {
    const float size = std::fabs(reach);
    double perUnit = 1 / kSmallestCell;
    for (uint32_t level = 0; level < kLevels; ++level, perUnit /= 2) {
        if (!(2 * static_cast<double>(size) * perUnit <= 1)) continue;
        farthest_[level] = std::max(farthest_[level], size);
        const auto cell = [](float v, double scale) { return cellAt(static_cast<double>(v) * scale); };
        return keyOf(level, {cell(point.x, perUnit), cell(point.y, perUnit / kTall), cell(point.z, perUnit)});
    }
    return kEverywhere;
}

uint32_t& cSpatialGrid::firstOf(uint64_t key) {
    return first_[key >> 32 & (first_.size() - 1)];
}

void cSpatialGrid::insert(uint32_t index, uint64_t key) {
    uint32_t& first = firstOf(key);
    things_[index] = {key, first, kNone};
    if (first != kNone) things_[first].previous = index;
    first = index;
}

void cSpatialGrid::remove(uint32_t index) {
    const Thing& gone = things_[index];
    if (gone.next != kNone) things_[gone.next].previous = gone.previous;
    (gone.previous == kNone ? firstOf(gone.key) : things_[gone.previous].next) = gone.next;
}

void cSpatialGrid::take(uint64_t key) {
    for (uint32_t i = firstOf(key); i != kNone; i = things_[i].next) {
        if (things_[i].key == key) found_.push_back(i);
    }
}

std::span<const uint32_t> cSpatialGrid::near(const cVector3& from, const cVector3& to, float radius,
                                             float scale) {
    if (!from.isFinite() || !to.isFinite() || !std::isfinite(radius) || things_.empty()) return everyone_;
    found_.clear();
    cellsLeft_ = static_cast<int64_t>(things_.size());
    const double outer = std::max(largest(from), largest(to));
    for (uint32_t level = 0; level < kLevels; ++level) {
        if (farthest_[level] < 0) continue;
        const double reach = std::fabs(static_cast<double>(radius)) +
                             static_cast<double>(scale) * static_cast<double>(farthest_[level]);
        const double safe = reach + (1 + reach + outer) * kRounding;
        if (outer + safe >= kOutermost || !search({from, to, safe, cellsPerUnit(level)}, level))
            return everyone_;
    }
    take(kEverywhere);
    // To sort a crowd would cost more than to look at everyone.
    if (found_.size() > things_.size() / 4) return everyone_;
    std::sort(found_.begin(), found_.end());
    found_.erase(std::unique(found_.begin(), found_.end()), found_.end());
    return found_;
}

/// Slice by slice across the line's main axis. False when there are more cells than it is worth to look at.
bool cSpatialGrid::search(const Corridor& c, uint32_t level) {
    const auto a = static_cast<size_t>(c.along), b = (a + 1) % 3, d = (a + 2) % 3;
    const auto [firstSlice, lastSlice] = c.range(a, 0, 1);
    for (int32_t slice = firstSlice; slice <= lastSlice; ++slice) {
        double t0 = 0, t1 = 1;
        if (c.way[a] != 0) {
            const double enter = (slice - c.width[a] - c.start[a]) / c.way[a],
                         leave = (slice + 1 + c.width[a] - c.start[a]) / c.way[a];
            t0 = std::clamp(std::min(enter, leave), 0.0, 1.0);
            t1 = std::clamp(std::max(enter, leave), 0.0, 1.0);
        }
        const auto [firstB, lastB] = c.range(b, t0, t1);
        const auto [firstD, lastD] = c.range(d, t0, t1);
        cellsLeft_ -= (int64_t{lastB} - firstB + 1) * (int64_t{lastD} - firstD + 1);
        if (cellsLeft_ < 0) return false;
        Cell cell;
        cell[a] = slice;
        for (cell[b] = firstB; cell[b] <= lastB; ++cell[b]) {
            for (cell[d] = firstD; cell[d] <= lastD; ++cell[d]) take(keyOf(level, cell));
        }
    }
    return true;
}
