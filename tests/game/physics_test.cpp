#include "game/physics_world.h"

#include "data/binary_reader.h"
#include "script/event_mgr.h"
#include "support/temp_game.h"
#include "support/test_level.h"
#include "world/object.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace {
constexpr float kRadius = 0.4f, kSnap = 0.06f, kSpeed = 0.11f;
constexpr float kFeet = 1.25f; ///< from the position down to the lowest point
constexpr float kDegrees = 3.14159265f / 180;
constexpr uint32_t kHero = MOVE_GROUNDED | MOVE_SWEPT | MOVE_SOLID;

struct Recorder : cSceneryController {
    using cSceneryController::cSceneryController;
    std::vector<cVector3> collisions;
    uint32_t flags = 0;
    void onCollision(const cVector3& n) override { collisions.push_back(n); }
    uint32_t moveFlags() const override { return flags; }
};

/// An object with the hero's capsule (or a sphere) in a world.
struct Body {
    cPhysicsWorld& world;
    cObject object;

    Body(cPhysicsWorld& w, const cVector3& at, float radius = kRadius, uint32_t flags = 0,
         bool upright = true)
        : world(w) {
        auto controller = std::make_unique<Recorder>(&object);
        controller->flags = flags;
        object.setController(std::move(controller));
        object.setPosition(at);
        const cVector3 top = upright ? cVector3(0, 0.35f, 0) : cVector3(),
                       low = upright ? cVector3(0, -0.85f, 0) : top;
        world.addBody(cCollisionBody(&object, cCapsule(at + top, at + low, radius)));
    }
    ~Body() { world.removeBody(object.body); }

    Recorder& controller() const { return static_cast<Recorder&>(*object.getController()); }
    const cVector3& at() const { return object.getPosition(); }
    bool grounded() const { return !object.body->airborne; }
    void request(const cVector3& d, uint32_t flags = kHero) const { object.requestMove(d, flags, kSnap); }
    /// One request and one step; the distance covered.
    float move(const cVector3& d, uint32_t flags = kHero) {
        const cVector3 before = at();
        request(d, flags);
        world.step(16, STATE_GAME);
        EXPECT_FALSE(object.body->moving);
        EXPECT_TRUE((object.body->shape.p1 - at()).isFinite());
        return (at() - before).length();
    }
    void walk(const cVector3& d, int frames) {
        for (int i = 0; i < frames; ++i) move(d);
    }
};

class Physics : public ::testing::TestWithParam<int> {
protected:
    cPhysicsWorld world;
    TestLevel level;

    Physics() { cEventMgr::instance().clear(); }
    ~Physics() override { cEventMgr::destroy(); }
    /// The parameter is the octree's face limit: one leaf, or many that share faces.
    void build() { world.setGeometry(level.model, GetParam(), 4); }
    static std::vector<cEvent> events() {
        std::vector<cEvent> all = cEventMgr::instance().events();
        cEventMgr::instance().clear();
        return all;
    }
    /// Penetration of the level; the capsule is shrunk by a hair.
    bool inside(const Body& body) const {
        cCapsule k = body.object.body->shape;
        k.radius -= 0.005f;
        return world.overlaps(k, {&level.model});
    }
};
INSTANTIATE_TEST_SUITE_P(OneLeafAndMany, Physics, ::testing::Values(450, 10));
} // namespace

TEST_P(Physics, AWalkerSettlesAndStaysOnFlatGround) {
    level.addFloor(-10, -10, 10, 10, 0);
    build();
    Body hero(world, {-8, kFeet + 0.03f, 1});
    EXPECT_FALSE(hero.grounded()) << "until the first step";
    hero.walk({0, 0, 0}, 5);
    for (int i = 0; i < 100; ++i) {
        EXPECT_NEAR(hero.at().y, kFeet + 0.05f * (kRadius - kSnap), 0.003f);
        EXPECT_NEAR(hero.move({kSpeed, 0, 0}), kSpeed * 0.95f, 1e-3f) << i;
        EXPECT_TRUE(hero.grounded()) << i;
    }
    EXPECT_TRUE(hero.controller().collisions.empty());
}

TEST_P(Physics, LowStepsAreClimbedWhenTheirTopsComeFirst) {
    for (const auto& [height, topFirst, climbs] : {std::tuple(0.1f, true, true),
                                                   {0.24f, true, true},
                                                   {1.0f, true, false},
                                                   {2.5f, true, false},
                                                   {0.1f, false, false}}) {
        level = {};
        if (!topFirst) level.addWall(2, -5, 2, 5, 0, height);
        level.addFloor(-5, -5, 2, 5, 0);
        level.addFloor(2, -5, 9, 5, height);
        if (topFirst) level.addWall(2, -5, 2, 5, 0, height);
        world.setGeometry(level.model, topFirst ? GetParam() : 450, 4);
        Body hero(world, {0, kFeet + 0.03f, 1});
        hero.walk({kSpeed, 0, 0}, 60);
        EXPECT_EQ(hero.at().x > 4, climbs) << height;
        EXPECT_EQ(hero.at().x < (topFirst ? 2 - kRadius + 0.005f : 2), !climbs) << height;
        EXPECT_NEAR(hero.at().y, kFeet + (climbs ? height : 0) + 0.017f, 0.01f) << height;
        EXPECT_TRUE(climbs ? hero.grounded() : !hero.controller().collisions.empty()) << height;
    }
}

TEST_P(Physics, NoAngleLeadsThroughAWallAndSlantedOnesSlideAlongIt) {
    level.addFloor(-10, -10, 10, 10, 0);
    level.addWall(3, -10, 3, 10, 0, 3);
    build();
    for (int angle = -88; angle <= 88; angle += 4) {
        Body hero(world, {1, kFeet + 0.03f, 0.5f});
        const float a = static_cast<float>(angle) * kDegrees;
        const cVector3 d(std::cos(a) * kSpeed, 0, std::sin(a) * kSpeed);
        for (int i = 0; i < 60; ++i) {
            hero.move(d);
            ASSERT_LT(hero.at().x, 3 - kRadius + 0.005f) << angle << ' ' << i;
            ASSERT_TRUE(hero.grounded()) << angle << ' ' << i;
        }
        // Most of the way along the wall is made.
        const float along = std::fabs(hero.at().z - 0.5f), wanted = std::fabs(d.z) * 60 * 0.95f;
        EXPECT_GE(along, wanted * 0.7f) << angle;
        EXPECT_LE(along, wanted * 1.01f) << angle;
    }
}

TEST_P(Physics, SlopesUpToFiftyDegreesAreWalkable) {
    for (int angle = 5; angle <= 75; angle += 5) {
        level = {};
        const float rise = std::tan(static_cast<float>(angle) * kDegrees);
        level.addFloor(-5, -5, 0, 5, 0);
        level.addQuad({0, 0, -5}, {0, 0, 5}, {5, 5 * rise, 5}, {5, 5 * rise, -5});
        build();
        Body hero(world, {-2, kFeet + 0.03f, 1});
        hero.walk({kSpeed, 0, 0}, 50);
        if (angle <= 50) {
            EXPECT_GT(hero.at().x, 1.5f) << angle;
            EXPECT_GT(hero.at().y, kFeet + 1.2f * rise) << angle;
        } else if (angle >= 60) {
            EXPECT_LT(hero.at().y, kFeet + 0.6f) << angle;
            EXPECT_FALSE(hero.controller().collisions.empty()) << angle;
        }
        EXPECT_FALSE(inside(hero)) << angle;
    }
}

TEST_P(Physics, OnlyLowLedgesKeepTheGroundOnTheWayDown) {
    for (const auto& [height, loses] : {std::pair(0.05f, false), {0.30f, true}, {2.0f, true}}) {
        level = {};
        level.addFloor(-5, -5, 2, 5, 0);
        level.addFloor(2, -5, 9, 5, -height);
        level.addQuad({2, -height, -5}, {2, -height, 5}, {2, 0, 5}, {2, 0, -5}); // faces +x
        build();
        Body hero(world, {0, kFeet + 0.03f, 1});
        hero.walk({0, 0, 0}, 3);
        bool lost = false;
        for (int i = 0; i < 40; ++i) {
            hero.move({kSpeed, 0, 0});
            lost = lost || !hero.grounded();
        }
        EXPECT_GT(hero.at().x, 3) << height;
        EXPECT_EQ(lost, loses) << height;
    }
}

TEST_P(Physics, AJumpEndsAtTheCeilingAndFallsBackToTheFloor) {
    level.addFloor(-5, -5, 5, 5, 0);
    level.addCeiling(-5, -5, 5, 5, 2.6f);
    build();
    Body hero(world, {0, kFeet + 0.03f, 1});
    hero.walk({0, 0, 0}, 3);
    for (int i = 0; i < 30; ++i) {
        hero.move({0, 0.18f, 0});
        ASSERT_LT(hero.at().y + 0.75f, 2.605f) << i;
    }
    EXPECT_GT(hero.at().y, kFeet + 0.15f);
    ASSERT_FALSE(hero.controller().collisions.empty());
    EXPECT_EQ(hero.controller().collisions.back(), cVector3(0, -1, 0));
    EXPECT_FALSE(hero.grounded());
    for (int i = 0; i < 30; ++i) hero.move({0, -0.1f, 0});
    EXPECT_TRUE(hero.grounded());
    EXPECT_NEAR(hero.at().y, kFeet + 0.017f, 0.02f);
}

TEST_P(Physics, ARandomWalkInAClosedRoomNeverLeavesIt) {
    level.addFloor(-6, -6, 6, 6, 0);
    level.addFloor(1, 1, 3, 3, 0.24f);
    level.addWall(6, -6, 6, 6, 0, 4);
    level.addWall(-6, 6, -6, -6, 0, 4);
    level.addWall(6, 6, -6, 6, 0, 4);
    level.addWall(-6, -6, 6, -6, 0, 4);
    level.addTriangle({-2, 0, -2}, {-2, 1, -2}, {-2, 2, -2}); // without area
    level.addTriangle({-3, NAN, 0}, {-3, 1, 0}, {-3, 0, 1});
    build();
    TestRandom random;
    Body hero(world, {0, kFeet + 0.03f, 0});
    float covered = 0;
    cVector3 d;
    for (int i = 0; i < 6000; ++i) {
        if (i % 40 == 0) {
            const float a = random.number(0, 6.2831853f);
            d = {std::cos(a) * kSpeed, 0, std::sin(a) * kSpeed};
        }
        covered += hero.move(d + cVector3(0, hero.grounded() ? 0.0f : -0.05f, 0));
        ASSERT_TRUE(hero.at().isFinite()) << i;
        ASSERT_LT(std::fabs(hero.at().x), 6 - kRadius + 0.01f) << i;
        ASSERT_LT(std::fabs(hero.at().z), 6 - kRadius + 0.01f) << i;
        ASSERT_GT(hero.at().y, kFeet - 0.05f) << i;
    }
    EXPECT_GT(covered, 6000 * kSpeed * 0.5f) << "he does not get stuck";
}

TEST_P(Physics, SweptBodiesBackOffSlideAndAreCancelled) {
    level.addFloor(-5, -5, 5, 5, 0);
    build();
    Body ball(world, {0, 2, 1}, 0.5f, 0, false);
    EXPECT_NEAR(ball.move({0, -2, 0}, MOVE_SWEPT), 0.75f * 2 * 0.95f, 1e-4f);
    const cVector3 before = ball.at(); // 0.075 above the surface
    EXPECT_NEAR(ball.move({1, -0.9f, 0}, MOVE_SWEPT), 0.95f, 1e-4f) << "slides";
    EXPECT_FLOAT_EQ(ball.at().y, before.y);
    EXPECT_EQ(ball.move({0, -0.9f, 0}, MOVE_SWEPT), 0) << "nothing is left to slide";
    EXPECT_EQ(ball.move({NAN, 0, 0}, MOVE_SWEPT), 0);
    EXPECT_EQ(ball.move({0, INFINITY, 0}, kHero), 0);
    EXPECT_TRUE(events().empty()) << "swept movers post nothing about the level";
}

TEST_P(Physics, DiscreteMoversTestTheirDestinationOnly) {
    level.addFloor(-5, -5, 5, 5, 0);
    build();
    Body ball(world, {0, 2, 1}, 0.5f, 0, false);
    EXPECT_EQ(ball.move({0, -1.7f, 0}, 0), 0);
    const auto posted = events();
    ASSERT_EQ(posted.size(), 1u);
    EXPECT_EQ(posted[0].type, cEvent::kTouchedGeometry);
    EXPECT_EQ(posted[0].source, &ball.controller());
    EXPECT_EQ(ball.move({0, -4, 0}, 0), 4) << "through the floor";
    EXPECT_TRUE(events().empty());
}

TEST_P(Physics, GroundFollowersKeepToWalkableGround) {
    const float steep = std::tan(60 * kDegrees);
    level.addFloor(-5, -5, 2, 5, 0);
    level.addQuad({-5, 20, -5 - 20 / steep}, {-5, 0, -5}, {2, 0, -5}, {2, 20, -5 - 20 / steep}); // up to −z
    build();
    for (const auto& [from, move, moves] :
         {std::tuple(cVector3(0, kFeet + 0.02f, 1), cVector3(0.1f, 0, 0), true),
          {{1.95f, kFeet + 0.02f, 1}, {0.6f, 0, 0}, false}, // the ledge
          {{0, kFeet + 0.20f, 1}, {0.1f, 0, 0}, false},     // too high to find the ground
          {{0, kFeet + 0.02f, 1}, {0, -0.8f, 0}, false}}) { // into the ground
        Body follower(world, from);
        EXPECT_EQ(follower.move(move, MOVE_GROUNDED) > 0, moves) << from.y << ' ' << move.x;
        EXPECT_EQ(events().size(), moves ? 0u : 1u);
        EXPECT_NEAR(follower.at().y, moves ? kFeet : from.y, 1e-3f) << "the probe is applied in full";
    }
}

TEST_P(Physics, ContactsBetweenBodiesFollowTheirFlags) {
    level.addFloor(-5, -5, 5, 5, -10);
    build();
    const struct {
        uint32_t mover, other;
        bool active, moves, otherMoves;
        size_t posted;
    } rows[] = {
        {0, 0, true, true, true, 2},                          // both are told
        {0, MOVE_SOLID, true, false, true, 1},                // the solid one blocks
        {MOVE_SOLID, 0, true, true, false, 1},                // the mover cancels the other's request
        {MOVE_SOLID, MOVE_SOLID, true, false, false, 1},      // even though it is stopped itself
        {0, MOVE_PASSABLE | MOVE_SOLID, true, true, true, 1}, // unseen; but it sees the mover
        {0, MOVE_SOLID, false, true, true, 1},                // inactive: the same
    };
    for (const uint32_t kind : {0u, uint32_t{MOVE_SWEPT}}) {
        for (const auto& row : rows) {
            SCOPED_TRACE(std::to_string(row.mover) + " against " + std::to_string(row.other));
            Body mover(world, {0, 0, 0}, 0.5f, 0, false), other(world, {1.2f, 0, 0}, 0.5f, 0, false);
            other.controller().setActive(row.active);
            mover.request({0.4f, 0, 0}, row.mover | kind);
            other.request({-0.01f, 0, 0}, row.other | kind);
            events();
            world.step(16, STATE_GAME);
            EXPECT_EQ(mover.at().x > 0, row.moves);
            EXPECT_EQ(other.at().x < 1.2f, row.otherMoves);
            const auto posted = events();
            EXPECT_EQ(posted.size(), row.posted);
            for (const cEvent& e : posted) {
                EXPECT_EQ(e.type, cEvent::kTouchedBody);
                EXPECT_NE(e.source, e.other);
            }
        }
    }
}

TEST_P(Physics, BodiesMeetWhereTheyHaveMovedInTheSameStep) {
    level.addFloor(-5, -5, 5, 5, -10);
    build();
    std::vector<std::unique_ptr<Body>> others;
    for (int i = 0; i < 50; ++i)
        others.push_back(std::make_unique<Body>(world, cVector3(static_cast<float>(i) * 9, 50, 0)));
    Body jumper(world, {-40, 0, 0}, 0.5f, 0, false), walker(world, {1.2f, 0, 0}, 0.5f, 0, false);
    jumper.request({40, 0, 0}, MOVE_SOLID);
    walker.request({-0.4f, 0, 0}, 0);
    world.step(16, STATE_GAME);
    EXPECT_EQ(jumper.at().x, 0);
    EXPECT_EQ(walker.at().x, 1.2f) << "stopped by who was elsewhere when the step began";
}

TEST_P(Physics, AStepperIsStoppedAndToldByASolidBody) {
    level.addFloor(-5, -5, 5, 5, 0);
    build();
    Body hero(world, {0, kFeet + 0.03f, 1}), door(world, {0.85f, kFeet, 1}, kRadius, MOVE_SOLID);
    hero.walk({0, 0, 0}, 3);
    hero.controller().collisions.clear();
    EXPECT_EQ(hero.move({0.1f, 0, 0}), 0);
    ASSERT_EQ(hero.controller().collisions.size(), 1u);
    EXPECT_TRUE(hero.controller().collisions[0].isNear({-0.1f, 0, 0}));
    EXPECT_EQ(door.object.body->flags, MOVE_SOLID) << "without ever having asked for a move";
    EXPECT_GT(hero.move({-0.1f, 0, 0}), 0.09f);
}

TEST_P(Physics, WhoFallsOnASolidBodySlipsOffAndDisturbsNobodyElse) {
    for (int i = 0; i < 12; ++i) level.addFloor(-5, -5, 5, 5, -4);
    build();
    Body hero(world, {0, 0, 0}, kRadius, MOVE_SOLID), below(world, {-0.2f, -2.04f, 0}, kRadius, MOVE_SOLID),
        beside(world, {0.83f, -0.4f, 0}, kRadius); // the first way of the slip touches it
    for (int i = 0; i < 60 && hero.at().y > -0.5f; ++i) {
        if (i == 1) beside.request({0.5f, 0, 0}, MOVE_SWEPT);
        events();
        const cVector3 before = hero.at();
        hero.move({0, -0.1f, 0});
        const auto posted = events();
        if (i < 10 && hero.at().y == before.y) {
            EXPECT_EQ(posted.size(), 1u) << "the refusal, " << i;
            if (i == 1) {
                EXPECT_GT(beside.at().x, 1) << "goes where it wanted to";
            }
        }
    }
    EXPECT_LT(hero.at().y, -0.5f) << "fell off";
}

TEST_P(Physics, ASlipEndsAtAWallThatTheFallDidNotReach) {
    constexpr float kThin = 0.04f; // leaves are looked at within 1.5 radii: less than the slip's way
    for (int i = 0; i < 12; ++i) level.addFloor(-5, -5, 5, 5, -4);
    level.addWall(0.005f, -5, 0.005f, 5, -4, 4);
    level.addWall(0.005f, 5, 0.005f, -5, -4, 4);
    build();
    Body thin(world, {-0.065f, 0, 1}, kThin, MOVE_SOLID),
        below(world, {-0.075f, -1.28f, 1}, kThin, MOVE_SOLID);
    for (int i = 0; i < 3; ++i) {
        thin.move({0, -0.05f, 0});
        EXPECT_LT(thin.at().x, 0.005f - kThin);
    }
    EXPECT_NE(thin.at().x, -0.065f) << "slipped";
}

TEST_P(Physics, BodyAddressesFollowEveryChange) {
    std::vector<std::unique_ptr<Body>> bodies;
    TestRandom random;
    for (int change = 0; change < 80; ++change) {
        if (change < 40)
            bodies.push_back(std::make_unique<Body>(world, cVector3(static_cast<float>(change), 0, 0)));
        else
            bodies.erase(bodies.begin() + random.index(static_cast<int>(bodies.size())));
        EXPECT_EQ(world.bodies().size(), bodies.size());
        for (const auto& body : bodies) {
            ASSERT_NE(body->object.body, nullptr);
            EXPECT_EQ(body->object.body->owner, &body->object);
            EXPECT_TRUE(body->object.body->shape.p1.isNear(body->at() - cVector3(0, 0.85f, 0)));
            EXPECT_FLOAT_EQ(body->object.boundingRadius(), 0.6f + kRadius);
        }
    }
}

TEST_P(Physics, CollisionFilesAreReadOnceAndBadOnesReported) {
    TempGame game;
    level.addFloor(-5, -5, 5, 5, 0);
    cMaterialList materials;
    materials.addFrom(level.model);
    cOctree octree;
    octree.build(level.model, GetParam(), 3, true);
    cBinaryWriter out;
    materials.write(out);
    octree.write(out, materials);
    ASSERT_TRUE(out.save("level.oct"));
    ASSERT_TRUE(world.loadCollision("level.oct"));
    EXPECT_FALSE(world.touchesGeometry({1, 0.6f, 0.5f}, 0.5f));
    game.write("level.oct", "damaged");
    EXPECT_TRUE(world.loadCollision("level.oct")) << "not read again";
    EXPECT_FALSE(world.loadCollision("none.oct"));
    EXPECT_EQ(TempGame::errorCount("Failed to open collision file none.oct"), 1);
    EXPECT_TRUE(world.touchesGeometry({1, 0.4f, 0.5f}, 0.5f)) << "still there";
    game.write("bad.oct", "damaged");
    EXPECT_FALSE(world.loadCollision("bad.oct"));
    EXPECT_EQ(TempGame::errorCount("Collision file bad.oct is damaged"), 1);
    EXPECT_FALSE(world.touchesGeometry({1, 0.4f, 0.5f}, 0.5f));
}
