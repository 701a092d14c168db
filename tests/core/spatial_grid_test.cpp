#include "core/spatial_grid.h"

#include "core/geometry.h"
#include "support/test_level.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>

namespace {
struct Thing {
    cVector3 point;
    float reach;
};

/// Small ones over a wide plain, or of every size and place: some stand at no place, reach no number, or
/// reach everything.
Thing randomThing(TestRandom& random, bool plain) {
    if (plain) {
        const cVector3 point = random.vector(300);
        return {{point.x, point.y * 0.03f, point.z}, random.number(0, 1)};
    }
    Thing thing{random.vector(30), std::exp(random.number(-6, 2))};
    switch (random.index(25)) {
    case 0:
        return {thing.point * 1e12f, thing.reach};
    case 1:
        return {thing.point, thing.reach * 1e9f};
    case 2:
        return {{NAN, 0, INFINITY}, thing.reach};
    case 3:
        return {thing.point, random.index(2) ? NAN : INFINITY};
    case 4:
        return {thing.point, -thing.reach};
    case 5:
        return {thing.point * 1e3f, 0};
    default:
        return thing;
    }
}

/// How many were handed out.
size_t checkNear(cSpatialGrid& grid, const std::vector<Thing>& things, const cSegment& line, float radius,
                 float scale) {
    const std::span<const uint32_t> near = grid.near(line.p0, line.p1, radius, scale);
    EXPECT_EQ(std::adjacent_find(near.begin(), near.end(), std::greater_equal<>()), near.end());
    for (uint32_t i = 0; i < things.size(); ++i) {
        const float reach = std::fabs(radius) + scale * std::fabs(things[i].reach);
        const cVector3& point = things[i].point;
        if (!((closestPointOnSegment(line, point) - point).lengthSq() <= reach * reach)) continue;
        EXPECT_TRUE(std::binary_search(near.begin(), near.end(), i)) << i;
    }
    return near.size();
}
} // namespace

TEST(SpatialGrid, LeavesOutOnlyWhatIsOutOfReach) {
    TestRandom random;
    cSpatialGrid grid;
    size_t handed = 0, asked = 0;
    for (int scene = 0; scene < 40; ++scene) {
        std::vector<Thing> things;
        const bool plain = scene % 2 != 0;
        const auto count = static_cast<size_t>(plain ? 3000 : random.index(400));
        grid.reset(count);
        for (size_t i = 0; i < count; ++i) {
            things.push_back(randomThing(random, plain));
            grid.add(things[i].point, things[i].reach);
        }
        for (int round = 0; round < 60; ++round) {
            const Thing from = randomThing(random, plain);
            const cSegment sphere(from.point, from.point);
            handed += checkNear(grid, things, sphere, from.reach, static_cast<float>(random.index(2)));
            handed += checkNear(grid, things, {from.point, randomThing(random, plain).point}, 0, 2.45f);
            asked += 2 * count;
            if (count == 0) continue;
            const auto moved = static_cast<size_t>(random.index(static_cast<int>(count)));
            things[moved] = randomThing(random, plain);
            grid.move(static_cast<uint32_t>(moved), things[moved].point, things[moved].reach);
        }
    }
    EXPECT_LT(handed, asked / 3) << "most are left out";
}

TEST(SpatialGrid, HandsOutFewWhateverTheirSizes) {
    constexpr uint32_t kSmall = 4000, kLarge = 400;
    cSpatialGrid grid;
    grid.reset(kSmall + kLarge);
    for (uint32_t i = 0; i < kSmall; ++i) grid.add({static_cast<float>(i) * 2, 0, 0}, 0.2f);
    for (uint32_t i = 0; i < kLarge; ++i) grid.add({0, static_cast<float>(i) * 200, 0}, 50);
    EXPECT_LT(grid.near({4000, 0, 0}, 0.2f, 1).size(), 10u) << "among the small";
    EXPECT_LT(grid.near({0, 40000, 0}, 0.2f, 1).size(), 10u) << "among the large";
    EXPECT_LT(grid.near({4000, -40, 3}, {4000, 40, -3}, 0, 2.45f).size(), 100u) << "a line across";
    EXPECT_LT(grid.near({40, 5, 0}, {80, 5, 0}, 0, 2.45f).size(), 100u) << "a line along";
    EXPECT_EQ(grid.near({}, 1e8f, 1).size(), kSmall + kLarge) << "not cell by cell";
    EXPECT_EQ(grid.near({-1e8f, 9, 9}, {1e8f, 9, 9}, 0, 1).size(), kSmall + kLarge);
    const uint64_t changes = grid.changes();
    grid.move(7, {14.5f, 0.5f, 0}, 0.2f);
    EXPECT_EQ(grid.changes(), changes) << "still in its cell";
    grid.move(7, {4000, 0, 0}, 0.2f);
    EXPECT_GT(grid.changes(), changes);
}
