#include "audio/audio_mgr.h"
#include "support/game_run.h"
#include "ui/input_mgr.h"
#include "world/world.h"

#include <AL/al.h>
#include <SDL.h>
#include <cstdlib>
#include <gtest/gtest.h>

namespace {
constexpr float kStandingHeight = 1.25f; ///< of the hero's position above his feet
} // namespace

TEST(WholeGame, FromTheIntroToALedgeThatHasToBeJumpedOnto) {
    GameRun game;
    game.frames(30);
    EXPECT_EQ(game.app.state(), STATE_INTRO);
    game.skipIntro();
    game.tapKey(SDLK_ESCAPE);
    ASSERT_EQ(game.app.state(), STATE_MENU) << "there is no game to go back to";
    game.startNewGame("Ada");
    game.frames(60);
    EXPECT_NEAR(game.hero().y, 2.1f + kStandingHeight, 0.05f) << "stands on the floor of the hut";
    ASSERT_TRUE(game.follow({{0.0f, -5.0f}, {-7.6f, -5.0f}, {-7.8f, 2.0f}, {-12.6f, 3.0f}, {-12.6f, 4.6f}}));
    game.hold(CMD_FORWARD, 60);
    EXPECT_LT(game.hero().z, 6 - 0.35f) << "the ledge is too high to be walked up";
    ASSERT_TRUE(game.walkTo(-12.6f, 2.6f)) << "a run-up: a jump has no steering of its own";
    game.face(-12.6f, 20);
    game.runAndJump(12, 50);
    EXPECT_NEAR(game.hero().y, 3.1f + kStandingHeight, 0.06f) << "stands on the ledge";
    game.hold(CMD_FORWARD, 120);
    EXPECT_LT(game.hero().z, 8 - 0.35f) << "the block on the ledge refuses him";
}

TEST(WholeGame, EscapeOpensTheMenuAndReturnGoesOn) {
    GameRun game(GameRun::at("hut"));
    game.frames(20);
    game.tapKey(SDLK_ESCAPE);
    EXPECT_EQ(game.app.state(), STATE_MENU);
    const cVector3 hero = game.hero(), child = inhabitants::place("pim");
    game.hold(CMD_FORWARD, 60);
    EXPECT_EQ(game.hero(), hero) << "nobody moves behind the menu";
    EXPECT_EQ(inhabitants::place("pim"), child) << "not even who runs all day";
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
    game.frames(5);
    SDL_Event quit{};
    quit.type = SDL_QUIT;
    SDL_PushEvent(&quit);
    game.frames(3);
    EXPECT_EQ(game.app.state(), STATE_QUIT) << "neither menu nor game follow";
    EXPECT_FALSE(cWorld::instance().isGameLoaded());
}

TEST(WholeGame, WhereThePointerWasDoesNotTurnTheView) {
    ASSERT_EQ(std::system("xdotool mousemove 700 500"), 0);
    GameRun game(GameRun::at("hut"));
    const cVector3 view = cWorld::instance().camera.getView();
    game.frames(3);
    EXPECT_LT((cWorld::instance().camera.getView() - view).length(), 1e-3f);
}

TEST(WholeGame, AWheelStepIsHeldForOnePump) {
    GameRun game(GameRun::at("pier"));
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

TEST(WholeGame, TheVolumeReachesTheEffectsOfALevel) {
    GameRun game(GameRun::at("hut"));
    cInputMgr::instance().bindings.settings.soundVolume = 0.25f;
    ASSERT_EQ(cWorld::instance().loadLevel("deepwood.xml"), 0);
    for (const char* name : {"sounds/hopp", "sounds\\landa", "sounds\\boar"}) {
        const cSound* sound = cAudioMgr::instance().getSound(name, true, false);
        ALfloat gain = 0;
        alGetSourcef(sound->source, AL_GAIN, &gain);
        EXPECT_FLOAT_EQ(gain, 0.25f) << name;
    }
}
