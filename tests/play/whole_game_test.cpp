#include "support/game_run.h"
#include "ui/input_mgr.h"
#include "world/world.h"

#include <SDL.h>
#include <gtest/gtest.h>

namespace {
constexpr float kStandingHeight = 1.25f; ///< of the hero's position above his feet
} // namespace

TEST(WholeGame, FromTheIntroOntoALedge) {
    GameRun game;
    ASSERT_TRUE(game.started) << "a display is needed";
    game.frames(30);
    EXPECT_EQ(game.app.state(), STATE_INTRO);
    game.skipIntro();
    ASSERT_EQ(game.app.state(), STATE_MENU);
    game.tapKey(SDLK_ESCAPE);
    ASSERT_EQ(game.app.state(), STATE_MENU) << "there is no game to go back to";
    game.startNewGame("Ada");
    ASSERT_EQ(game.app.state(), STATE_GAME);
    EXPECT_EQ(cWorld::instance().heroName, "Ada");
    EXPECT_EQ(cWorld::instance().levelFile, "testlevel.xml");
    EXPECT_EQ(cWorld::instance().health, 100);

    game.frames(60);
    EXPECT_NEAR(game.hero().y, 2.1f + kStandingHeight, 0.05f) << "stands on the floor of the hut";
    ASSERT_TRUE(game.follow({{0.0f, -5.0f}, {-7.6f, -5.0f}, {-7.8f, 2.0f}, {-12.6f, 3.0f}, {-12.6f, 4.6f}}));
    const float ground = game.hero().y;
    game.hold(CMD_FORWARD, 60);
    EXPECT_LT(game.hero().z, 6 - 0.35f) << "the ledge is too high to be walked up";

    ASSERT_TRUE(game.walkTo(-12.6f, 2.6f)) << "a run-up: a jump has no steering of its own";
    game.face(-12.6f, 20);
    game.runAndJump(12, 50);
    EXPECT_NEAR(game.hero().y, 3.1f + kStandingHeight, 0.06f) << "stands on the ledge";
    EXPECT_GT(game.hero().y, ground + 0.9f);
    game.hold(CMD_FORWARD, 120);
    EXPECT_LT(game.hero().z, 8 - 0.35f) << "the block on the ledge refuses him";
    EXPECT_TRUE(TempGame::errors().empty()) << TempGame::errors().front();
}

TEST(WholeGame, WallsHoldFromEveryAngle) {
    GameRun game(GameRun::at("pier"));
    ASSERT_TRUE(game.started);
    ASSERT_TRUE(game.walkTo(0, 18));
    for (const float x : {-3.0f, -1.0f, 0.0f, 1.5f, 3.0f}) {
        game.walkTo(x, 10, 160);
        EXPECT_GT(game.hero().z, 14.7f + 0.3f) << "through the ruined wall towards " << x;
        ASSERT_TRUE(game.walkTo(0, 18));
    }
}

TEST(WholeGame, EscapeOpensTheMenuAndReturnGoesOn) {
    GameRun game(GameRun::at("hut"));
    ASSERT_TRUE(game.started);
    game.frames(20);
    game.tapKey(SDLK_ESCAPE);
    EXPECT_EQ(game.app.state(), STATE_MENU);
    const cVector3 before = game.hero();
    game.hold(CMD_FORWARD, 30);
    EXPECT_EQ(game.hero(), before) << "nobody moves behind the menu";
    game.tapKey(SDLK_RETURN);
    game.frames(31);
    EXPECT_EQ(game.app.state(), STATE_MENU) << "the panel slides away first";
    game.frames(3);
    EXPECT_EQ(game.app.state(), STATE_GAME);
    game.tapKey(SDLK_i);
    EXPECT_EQ(game.app.state(), STATE_INVENTORY);
    game.tapKey(SDLK_ESCAPE);
    EXPECT_EQ(cInputMgr::instance().returnState, STATE_INVENTORY);
}

TEST(WholeGame, QuittingTheIntroEndsTheRun) {
    GameRun game;
    ASSERT_TRUE(game.started);
    game.frames(5);
    SDL_Event quit{};
    quit.type = SDL_QUIT;
    SDL_PushEvent(&quit);
    game.frames(3);
    EXPECT_EQ(game.app.state(), STATE_QUIT) << "neither menu nor game follow";
    EXPECT_FALSE(cWorld::instance().isGameLoaded());
}

TEST(WholeGame, AWheelStepIsHeldForOnePump) {
    GameRun game(GameRun::at("pier"));
    ASSERT_TRUE(game.started);
    game.frames(10);
    const float before = cWorld::instance().camera.getView().length();
    SDL_Event wheel{};
    wheel.type = SDL_MOUSEBUTTONDOWN;
    wheel.button.button = 4;
    SDL_PushEvent(&wheel);
    game.frames(1);
    EXPECT_TRUE(cInputMgr::instance().bindings.isKeyDown(4));
    game.frames(1);
    EXPECT_FALSE(cInputMgr::instance().bindings.isKeyDown(4));
    game.frames(5);
    EXPECT_NEAR(cWorld::instance().camera.getView().length(), before - 0.15f, 1e-4f) << "one step nearer";
}

TEST(WholeGame, DrowningLeadsBackToTheCheckpoint) {
    GameRun game(GameRun::at("pier"));
    ASSERT_TRUE(game.started);
    game.frames(20);
    const cVector3 start = game.hero();
    game.walkTo(0, 40, 400);
    game.player.release(CMD_FORWARD);
    game.frames(400);
    EXPECT_TRUE(game.hero().isNear(start) || (game.hero() - start).length() < 0.1f);
    EXPECT_EQ(cWorld::instance().health, 100);
    EXPECT_EQ(game.app.state(), STATE_GAME);
}

TEST(WholeGame, TheSameSeedGivesTheSameRun) {
    const auto play = [] {
        GameRun game(GameRun::at("hut"));
        game.walkTo(0, -5);
        game.walkTo(5.8f, -5);
        game.hold(CMD_JUMP, 40);
        return game.hero();
    };
    EXPECT_EQ(play(), play());
}
