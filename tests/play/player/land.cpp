#include "play/player/land.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr float kStepUp = 1.0f;                              ///< per unit of way: as steep as the hero climbs
constexpr float kSafe = 0.7f;                                ///< the same, without a slip
constexpr float kSteep = 0.44f;                              ///< from one side of a column to the other
constexpr int kShore = 5;                                    ///< cells
constexpr float kStepDown = 0.55f;                           ///< more is a drop
constexpr float kDeepest = 5;                                ///< drop that is risked
constexpr float kLedge = 1.35f;                              ///< as high as the hero jumps
constexpr float kLowestWall = -32;                           ///< of the wall bits
constexpr int kShortJump = 4, kLongJump = 6;                 ///< cells from take-off to landing
constexpr float kJumpCost = 8, kDropCost = 8, kDropUnit = 4; ///< there may be no way up again
constexpr int kTriesAtJump = 4;
constexpr size_t kBoxedIn = 30;     ///< places
constexpr float kHandsReach = 2.0f; ///< up and down
constexpr float kDry = 0.1f;        ///< ground that far above water is safe
constexpr float kLookedAround = 2.2f;
constexpr uint32_t kThingStays = 600, kBlocked = 1500; ///< frames
} // namespace

cLand::cLand() : columns_(static_cast<size_t>(kSide) * kSide) {}

int cLand::wallBit(float height) {
    return std::clamp(static_cast<int>((height - kLowestWall) * 4), 0, 255);
}

int cLand::cellOf(float coordinate) {
    return static_cast<int>(std::floor(coordinate / kCell)) + kSide / 2;
}

cLand::Column* cLand::column(int x, int z) {
    return x < 0 || z < 0 || x >= kSide || z >= kSide ? nullptr
                                                      : &columns_[static_cast<size_t>(x * kSide + z)];
}
const cLand::Column* cLand::column(int x, int z) const {
    return const_cast<cLand*>(this)->column(x, z);
}

void cLand::see(const eyes::Spot& spot, uint32_t frame) {
    Column* c = column(cellOf(spot.place.x), cellOf(spot.place.z));
    if (!c) return;
    if (spot.kind == eyes::Spot::kWater) {
        const int x = cellOf(spot.place.x), z = cellOf(spot.place.z);
        for (int dx = -kShore; dx <= kShore && !c->water; ++dx)
            for (int dz = -kShore; dz <= kShore; ++dz)
                if (Column* near = column(x + dx, z + dz)) near->shore = true;
        c->water = true;
        waterHeight_ = spot.place.y;
    } else if (spot.kind != eyes::Spot::kFloor) {
        const bool thing = spot.kind == eyes::Spot::kThing;
        if (thing && c->thingUntil < frame) c->thing = {};
        if (thing) c->thingUntil = frame + kThingStays;
        const int bit = wallBit(spot.place.y);
        (thing ? c->thing : c->wall)[static_cast<size_t>(bit / 64)] |= 1ull << (bit % 64);
    } else {
        for (size_t i = 0; i < c->floors; ++i) {
            if (std::fabs(c->floor[i] - spot.place.y) > 0.4f) continue;
            c->floor[i] += (spot.place.y - c->floor[i]) * 0.2f;
            c->lowest[i] = std::min(c->lowest[i], spot.place.y);
            c->highest[i] = std::max(c->highest[i], spot.place.y);
            return;
        }
        if (c->floors == kFloors) return;
        c->floor[c->floors] = c->lowest[c->floors] = c->highest[c->floors] = spot.place.y;
        ++c->floors;
    }
}

cVector3 cLand::placeOf(uint32_t node) const {
    const uint32_t cell = node / kFloors;
    const float x = (static_cast<float>(cell / kSide) - kSide / 2 + 0.5f) * kCell;
    const float z = (static_cast<float>(cell % kSide) - kSide / 2 + 0.5f) * kCell;
    return {x, columns_[cell].floor[node % kFloors] + kMiddle, z};
}

void cLand::block(const cVector3& place, uint32_t frame) {
    Column* c = column(cellOf(place.x), cellOf(place.z));
    if (!c) return;
    for (size_t i = 0; i < c->floors; ++i)
        if (std::fabs(c->floor[i] + kMiddle - place.y) < 1)
            c->blockedUntil[i] = frame + (kBlocked << c->blocked);
    c->blocked = static_cast<uint8_t>(std::min(c->blocked + 1, 6));
}

void cLand::fear(const cVector3& place) {
    for (int x = cellOf(place.x) - 2; x <= cellOf(place.x) + 2; ++x)
        for (int z = cellOf(place.z) - 2; z <= cellOf(place.z) + 2; ++z)
            if (Column* c = column(x, z)) c->fearedBelow = place.y - kMiddle + 0.6f;
}

bool cLand::isGround(const cVector3& place) const {
    const Column* c = column(cellOf(place.x), cellOf(place.z));
    for (size_t i = 0; c && i < c->floors; ++i)
        if (std::fabs(c->floor[i] + kMiddle - place.y) < 0.8f && c->floor[i] >= c->fearedBelow &&
            c->floor[i] > waterHeight_ + kDry)
            return true;
    return false;
}

bool cLand::isWater(const cVector3& place) const {
    const Column* c = column(cellOf(place.x), cellOf(place.z));
    return c && c->water && !isGround(place);
}

void cLand::bumped(const cVector3& from, const cVector3& to) {
    for (const cVector3& end : {from, to}) {
        const uint32_t node = nodeAt(end, kCell);
        if (node == kNone) continue;
        const auto found = std::find_if(failedJumps_.begin(), failedJumps_.end(),
                                        [&](const auto& row) { return row.first == node; });
        if (found == failedJumps_.end())
            failedJumps_.push_back({node, 1});
        else
            ++found->second;
    }
}

bool cLand::isWalled(const Column& c, float floor) const {
    for (int bit = wallBit(floor + 0.75f); bit <= wallBit(floor + 1.7f); ++bit) {
        const size_t word = static_cast<size_t>(bit / 64);
        if ((c.wall[word] | (c.thingUntil > frame_ ? c.thing[word] : 0)) >> (bit % 64) & 1) return true;
    }
    return false;
}

/// Rock that looks like ground from afar, but nobody stands on it.
bool cLand::isSteep(const Column& c, size_t floor) const {
    if (c.highest[floor] - c.lowest[floor] > kSteep) return true;
    for (size_t i = 0; i < c.floors; ++i)
        if (i != floor && std::fabs(c.floor[i] - c.floor[floor]) < 1) return true;
    return false;
}

/// Walls to squeeze past and edges to fall from make a way longer.
float cLand::risk(int x, int z, float floor) const {
    float sum = 0;
    for (int dx = -1; dx <= 1; ++dx)
        for (int dz = -1; dz <= 1; ++dz) {
            const Column* c = column(x + dx, z + dz);
            if (!c) continue;
            if (isWalled(*c, floor)) sum += 0.25f;
            bool ground = false, below = c->water;
            for (size_t i = 0; i < c->floors; ++i) {
                ground = ground || std::fabs(c->floor[i] - floor) < 0.8f;
                below = below || c->floor[i] < floor;
            }
            if (!ground && below) sum += c->water ? 1.5f : 0.8f;
        }
    return std::min(sum, 8.0f);
}

float cLand::crossing(uint32_t from, int x, int z, int floor, float length) const {
    const Column& c = *column(x, z);
    const float y = c.floor[static_cast<size_t>(floor)];
    const float rise = y - columns_[from / kFloors].floor[from % kFloors];
    if (rise > std::max(0.35f, length * kStepUp) || rise < -kDeepest) return kFar;
    const bool careful = daring_ < kClimbs;
    if (careful && c.shore &&
        (rise < -std::max(0.3f, length * kSafe) || rise > std::max(0.35f, length * kSafe)))
        return kFar; // who slips there swims
    if (careful && isSteep(c, static_cast<size_t>(floor))) return kFar;
    if (y < c.fearedBelow || y < waterHeight_ + kDry) return kFar;
    if (c.blockedUntil[static_cast<size_t>(floor)] > frame_ || isWalled(c, y)) return kFar;
    return length * (1 + risk(x, z, y)) +
           (rise < -kStepDown - length * kStepUp ? kDropCost - kDropUnit * rise : 0);
}

void cLand::relax(uint32_t from, uint32_t to, float length, bool jump) {
    const float total = cost_[from] + length;
    if (total >= cost_[to]) return;
    cost_[to] = total;
    from_[to] = from;
    jumped_[to] = jump;
    queue_.push_back({-total, to});
    std::push_heap(queue_.begin(), queue_.end());
}

void cLand::relaxWalks(uint32_t node) {
    const int x = static_cast<int>(node / kFloors) / kSide, z = static_cast<int>(node / kFloors) % kSide;
    for (int dx = -1; dx <= 1; ++dx)
        for (int dz = -1; dz <= 1; ++dz) {
            const Column* c = column(x + dx, z + dz);
            if (!c || (dx == 0 && dz == 0)) continue;
            const float length = dx != 0 && dz != 0 ? kCell * 1.4142f : kCell;
            for (int i = 0; i < c->floors; ++i) {
                const float price = crossing(node, x + dx, z + dz, i, length);
                if (price < kFar)
                    relax(node, static_cast<uint32_t>(((x + dx) * kSide + z + dz) * kFloors + i), price,
                          false);
            }
        }
}

/// No wall above the ledge on the way to it.
bool cLand::canJump(int x, int z, int dx, int dz, float floor, float to) const {
    const int steps = std::max(std::abs(dx), std::abs(dz));
    for (int i = 1; i <= steps; ++i) {
        const Column* c = column(x + dx * i / steps, z + dz * i / steps);
        if (!c || isWalled(*c, std::max(floor + 0.9f, to))) return false;
    }
    return true;
}

void cLand::relaxJumps(uint32_t node) {
    const int x = static_cast<int>(node / kFloors) / kSide, z = static_cast<int>(node / kFloors) % kSide;
    const float y = columns_[node / kFloors].floor[node % kFloors];
    const auto tries = [&](uint32_t n) {
        for (const auto& row : failedJumps_)
            if (row.first == n) return row.second;
        return 0;
    };
    for (int dx = -kLongJump; dx <= kLongJump; ++dx)
        for (int dz = -kLongJump; dz <= kLongJump; ++dz) {
            const int square = dx * dx + dz * dz;
            const Column* c = square < kShortJump * kShortJump || square > kLongJump * kLongJump
                                  ? nullptr
                                  : column(x + dx, z + dz);
            for (int i = 0; c && i < c->floors; ++i) {
                const float to = c->floor[static_cast<size_t>(i)], rise = to - y;
                if ((c->shore && daring_ < kClimbs) || rise < 0.4f || rise > kLedge || isWalled(*c, to) ||
                    !canJump(x, z, dx, dz, y, to))
                    continue;
                const uint32_t target = static_cast<uint32_t>(((x + dx) * kSide + z + dz) * kFloors + i);
                if (cost_[target] < kFar || tries(target) >= kTriesAtJump || tries(node) >= kTriesAtJump)
                    continue;
                relax(node, target,
                      kJumpCost * static_cast<float>(1 + tries(target) + tries(node)) +
                          risk(x + dx, z + dz, to),
                      true);
            }
        }
}

void cLand::plan(const cVector3& from, uint32_t frame, Daring daring) {
    frame_ = frame;
    daring_ = daring;
    cost_.assign(columns_.size() * kFloors, kFar);
    from_.resize(cost_.size());
    jumped_.resize(cost_.size());
    reached_.clear();
    queue_.clear();
    // The ground under the hero, or what is nearest to it: the camera sees little of his feet.
    uint32_t start = kNone;
    float nearest = kFar;
    for (int dx = -4; dx <= 4; ++dx)
        for (int dz = -4; dz <= 4; ++dz) {
            const int x = cellOf(from.x) + dx, z = cellOf(from.z) + dz;
            const Column* c = column(x, z);
            for (int i = 0; c && i < c->floors; ++i) {
                const float away = static_cast<float>(dx * dx + dz * dz) * kCell +
                                   3 * std::fabs(c->floor[static_cast<size_t>(i)] + kMiddle - from.y);
                if (away >= nearest || std::fabs(c->floor[static_cast<size_t>(i)] + kMiddle - from.y) > 1)
                    continue;
                nearest = away;
                start = static_cast<uint32_t>((x * kSide + z) * kFloors + i);
            }
        }
    if (start == kNone) return;
    cost_[start] = 0;
    from_[start] = start;
    queue_.push_back({0.0f, start});
    spread();
    if (reached_.size() >= kBoxedIn) return;
    stepOff(start);
    spread();
}

/// He stands on something from which no way is known to lead: to whatever ground is next to it.
void cLand::stepOff(uint32_t start) {
    const int x = static_cast<int>(start / kFloors) / kSide, z = static_cast<int>(start / kFloors) % kSide;
    const float y = columns_[start / kFloors].floor[start % kFloors];
    for (int dx = -kShore; dx <= kShore; ++dx)
        for (int dz = -kShore; dz <= kShore; ++dz) {
            const Column* c = column(x + dx, z + dz);
            for (int i = 0; c && i < c->floors; ++i) {
                const float rise = c->floor[static_cast<size_t>(i)] - y;
                if (rise > 0.4f || rise < (c->shore ? -0.75f : -1.6f) ||
                    c->floor[static_cast<size_t>(i)] < waterHeight_ + kDry)
                    continue;
                relax(start, static_cast<uint32_t>(((x + dx) * kSide + z + dz) * kFloors + i),
                      2 + kCell * static_cast<float>(std::abs(dx) + std::abs(dz)), false);
            }
        }
}

void cLand::spread() {
    while (!queue_.empty()) {
        std::pop_heap(queue_.begin(), queue_.end());
        const auto [minus, node] = queue_.back();
        queue_.pop_back();
        if (-minus > cost_[node]) continue;
        reached_.push_back(node);
        relaxWalks(node);
        if (daring_ >= kJumps) relaxJumps(node);
    }
}

uint32_t cLand::nodeAt(const cVector3& place, float reach) const {
    uint32_t best = kNone;
    float least = kFar;
    const int cells = static_cast<int>(reach / kCell) + 1;
    for (int x = cellOf(place.x) - cells; x <= cellOf(place.x) + cells; ++x)
        for (int z = cellOf(place.z) - cells; z <= cellOf(place.z) + cells; ++z) {
            const Column* c = column(x, z);
            for (int i = 0; c && i < c->floors; ++i) {
                const uint32_t node = static_cast<uint32_t>((x * kSide + z) * kFloors + i);
                const cVector3 away = placeOf(node) - place;
                const float flat = std::hypot(away.x, away.z);
                if (flat > reach || std::fabs(away.y) > kHandsReach || cost_.empty()) continue;
                const float price = cost_[node] + 3 * flat + 2 * std::fabs(away.y);
                if (price >= least) continue;
                least = price;
                best = node;
            }
        }
    return best != kNone && cost_[best] < kFar ? best : kNone;
}

/// Beside it lies a column of which nothing is known.
bool cLand::isEdge(uint32_t node) const {
    const uint32_t cell = node / kFloors;
    if (columns_[cell].looked) return false;
    const int x = static_cast<int>(cell) / kSide, z = static_cast<int>(cell) % kSide;
    int unknown = 0;
    for (const auto& [dx, dz] : {std::pair{1, 0}, {-1, 0}, {0, 1}, {0, -1}}) {
        const Column* c = column(x + dx, z + dz);
        if (c && c->water) return false; // the shore is the end
        unknown += c && c->floors == 0 && !c->water && c->wall == decltype(c->wall){};
    }
    return unknown > 1;
}

uint32_t cLand::nearestEdge() const {
    for (const uint32_t node : reached_)
        if (isEdge(node)) return node;
    return kNone;
}

void cLand::lookedFrom(const cVector3& place) {
    const int cells = static_cast<int>(kLookedAround / kCell);
    for (int x = cellOf(place.x) - cells; x <= cellOf(place.x) + cells; ++x)
        for (int z = cellOf(place.z) - cells; z <= cellOf(place.z) + cells; ++z)
            if (Column* c = column(x, z)) c->looked = true;
}

std::vector<cLand::Step> cLand::way(uint32_t to) const {
    std::vector<Step> steps;
    if (cost(to) >= kFar) return steps;
    for (uint32_t node = to;; node = from_[node]) {
        steps.push_back({placeOf(node), from_[node] != node && jumped_[node] != 0});
        if (from_[node] == node) break;
    }
    std::reverse(steps.begin(), steps.end());
    return steps;
}

void cLand::lookAgain() {
    for (Column& c : columns_) {
        c.looked = false;
        c.blockedUntil = {};
    }
    failedJumps_.clear();
}
