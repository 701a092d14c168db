// What a player would notice with the shipped tuning and the first level: sticking, jitter, lost ground,
// walls.

#include "game/physics_world.h"
#include "support/game_run.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <gtest/gtest.h>

namespace {
bool airborne() {
    return cObjectMgr::instance().hero()->body->airborne;
}

/// What happened to the hero on a straight way.
struct Walk {
    bool arrived = false;
    int frames = 0, airborneFrames = 0;
    float largestStep = 0; ///< vertical, in one frame
};

Walk walk(GameRun& game, float x, float z, int mostFrames = 500) {
    Walk w;
    for (; w.frames < mostFrames && !w.arrived; ++w.frames) {
        const float before = game.hero().y;
        w.arrived = game.player.walkTowards({x, 0, z});
        game.frames(1);
        w.airborneFrames += airborne();
        w.largestStep = std::max(w.largestStep, std::fabs(game.hero().y - before));
    }
    game.player.release(CMD_FORWARD);
    return w;
}
} // namespace

TEST(Feel, StairsAreRunUpAndDown) {
    GameRun game(GameRun::at("hut"));
    ASSERT_TRUE(game.follow({{0, -5}, {5.8f, -5}, {5.8f, 0}}));
    const Walk up = walk(game, 16, 0);
    EXPECT_TRUE(up.arrived);
    EXPECT_LT(up.frames, 150) << "10 units at up to 6.5 a second";
    EXPECT_LT(up.largestStep, 0.2f);
    game.face(5.8f, 0);
    const Walk down = walk(game, 6.2f, 0);
    EXPECT_TRUE(down.arrived);
    EXPECT_LT(down.frames, 150);
    EXPECT_LT(down.airborneFrames, down.frames / 2) << "steps of 0.1 are run down, not jumped";
    ASSERT_TRUE(game.follow({{5.8f, -5}, {11, -8}, {16.2f, -8}}));
    EXPECT_TRUE(walk(game, 16.2f, -1).arrived) << "steps of 0.25 are climbed";
}

TEST(Feel, SlopesAreWalkedSmoothly) {
    GameRun game(GameRun::at("hill"));
    game.frames(60);
    EXPECT_TRUE(walk(game, -6, -10).arrived);
    const Walk up = walk(game, -15, -10);
    EXPECT_TRUE(up.arrived);
    EXPECT_LT(up.frames, 120);
    EXPECT_EQ(up.airborneFrames, 0);
    EXPECT_LT(up.largestStep, 0.1f);
}

TEST(Feel, WallsAreSlidAlongAndHold) {
    GameRun game(GameRun::at("pier"));
    ASSERT_TRUE(game.follow({{0, 19}, {-3, 16.5f}}));
    // Into the ruined wall at about 30 degrees to it.
    for (int i = 0; i < 120 && game.hero().x <= 2.5f; ++i) {
        game.face(game.hero().x + 5, game.hero().z - 3);
        game.player.press(CMD_FORWARD);
        game.frames(1);
    }
    game.player.release(CMD_FORWARD);
    EXPECT_GT(game.hero().x, 2.5f) << "stuck at the wall";
    EXPECT_GT(game.hero().z, 14.7f + 0.3f);
    for (const float x : {-3.0f, -1.0f, 0.0f, 1.5f, 3.0f}) {
        ASSERT_TRUE(game.walkTo(0, 18));
        game.walkTo(x, 10, 160);
        EXPECT_GT(game.hero().z, 14.7f + 0.3f) << "through the wall towards " << x;
    }
}

TEST(Feel, TheCameraStaysOutOfWalls) {
    GameRun game(GameRun::at("hut"));
    game.frames(30);
    int inWall = 0;
    for (const auto& [x, z] : {std::pair{2.0f, -2.5f}, {-2.5f, -2.5f}, {-2.5f, 0.0f}, {0.0f, -0.5f}}) {
        ASSERT_TRUE(game.walkTo(x, z, 200)) << x << ", " << z;
        for (int i = 0; i < 72; ++i) {
            game.player.look(50, i < 36 ? 4 : -4);
            game.frames(1);
            const cVector3 eye = cWorld::instance().camera.getEye();
            const cVector3 lookAt = game.hero() + cWorld::instance().camera.getOffset();
            // The eye may lie at a wall, never behind one.
            inWall += cPhysicsWorld::instance().octree().trace(lookAt, lookAt + (eye - lookAt) * 0.98f) < 1;
        }
    }
    EXPECT_EQ(inWall, 0);
}
