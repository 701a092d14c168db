#include "support/test_world.h"

#include <gtest/gtest.h>

namespace {
const std::string kNext = "<cinematic name='d' length='3' />";

class Cinematic : public ::testing::Test {
protected:
    Cinematic() { t.writeModels(); }
    void start(int length, const std::string& inside, const std::string& more = "") {
        ASSERT_EQ(t.load(spawnElement("1,2,3", "0,0,1") + "<cinematic name='c' length='" +
                         std::to_string(length) + "'>" + inside + "</cinematic>" + more),
                  0);
        world.startCinematic(1);
    }
    void step(int count = 1) {
        for (int i = 0; i < count; ++i) world.updateCameraOrCinematic(16, &t.state);
    }

    TestWorld t;
    cWorld& world = cWorld::instance();
};
} // namespace

TEST_F(Cinematic, KeysHoldAndNothingToShowEndsInTime) {
    const auto expectEyes = [&](const std::string& keys, const std::vector<float>& places) {
        start(static_cast<int>(places.size()), "<camera>" + keys + "</camera>");
        EXPECT_EQ(t.state, STATE_GAME) << "until the first step";
        for (const float x : places) {
            step();
            EXPECT_TRUE(world.camera.getEye().isNear({x, 2, 30})) << x << " of " << keys;
            EXPECT_EQ(t.state, STATE_CINEMATIC);
        }
        step();
        EXPECT_EQ(t.state, STATE_GAME);
    };
    expectEyes("<frame number='4' pos='1,2,30' target='0,0,0' />", {1, 1, 1, 1, 1, 1, 1});
    expectEyes("<frame number='0' pos='1,2,30' target='0,0,0' /><frame number='2' pos='3,2,30' "
               "target='9,9,9' />",
               {1, 2, 3, 3, 3});
    for (const int length : {3, 0, -5}) {
        start(length, "<camera /><player_cin /><filter frame='0' alpha='1' />");
        step(std::max(length, 0) + 1);
        EXPECT_EQ(t.state, STATE_GAME) << length;
        EXPECT_EQ(world.cinematic.fade.a, 0) << length;
    }
}

TEST_F(Cinematic, FiltersFadeBetweenTheirFrames) {
    start(200, "<filter frame='0' rgb='1,0,0' alpha='1' /><filter frame='50' rgb='0,0,0' alpha='0' />"
               "<filter frame='20' alpha='9' /><filter frame='150' rgb='0,0,1' alpha='0.5' />");
    int done = 0;
    for (const auto& [frame, red, alpha] : {std::tuple(1, 1.0f, 1.0f),
                                            {26, 0.5f, 0.5f},
                                            {51, 0.0f, 0.0f},
                                            {101, 0.0f, 0.25f},
                                            {151, 0.0f, 0.5f},
                                            {191, 0.0f, 0.5f}}) {
        step(frame - done);
        done = frame;
        EXPECT_NEAR(world.cinematic.fade.r, red, 1e-4f) << frame;
        EXPECT_NEAR(world.cinematic.fade.a, alpha, 1e-4f) << frame;
    }
    EXPECT_NEAR(world.cinematic.fade.b, 1, 1e-4f);
}

TEST_F(Cinematic, TheStateBeforeTheFirstOneComesBack) {
    start(5, "", kNext);
    t.state = STATE_INVENTORY;
    step(3);
    world.startCinematic(2);
    step(3);
    EXPECT_EQ(t.state, STATE_CINEMATIC);
    for (int i = 0; i < 2; ++i) {
        step();
        EXPECT_EQ(t.state, STATE_INVENTORY);
    }
}

TEST_F(Cinematic, TheMenuPausesAndAConversationEnds) {
    start(5, "<filter frame='0' rgb='0,0,0' alpha='1' /><filter frame='4' rgb='0,0,0' alpha='1' />", kNext);
    world.resetCinematic();
    world.camera.toggleView();
    EXPECT_FALSE(world.isPlayerVisible());
    world.startCinematic(1);
    EXPECT_TRUE(world.isPlayerVisible()) << "in first person too, while it plays";
    step(2);
    t.state = STATE_MENU;
    step(9);
    EXPECT_TRUE(world.cinematic.playing);
    t.state = STATE_CINEMATIC;
    step();
    EXPECT_EQ(world.cinematic.frame, 3u) << "goes on where it was";
    EXPECT_GT(world.cinematic.fade.a, 0);
    for (const GameState left : {STATE_DIALOGUE, STATE_GAME}) {
        t.state = left;
        step();
        EXPECT_EQ(t.state, left);
        EXPECT_EQ(world.cinematic.fade.a, 0) << "nothing covers what is played";
        EXPECT_FALSE(world.isPlayerVisible());
    }
    world.startCinematic(2);
    step(4);
    EXPECT_EQ(world.cinematic.element, nullptr) << "the next one plays to its end";
    EXPECT_EQ(t.state, STATE_GAME);
}

TEST_F(Cinematic, WildNumbersAreHarmless) {
    start(INT32_MAX,
          "<camera><frame number='-2147483648' pos='nan,0,0' dir='0,1,0' /><frame number='2147483647' "
          "pos='1e40,0,0' target='0,0,0' up='nan,nan,nan' /><frame number='1' /></camera><player_cin><frame "
          "number='0' pos='1e40,0,0' speed='1e40' dir='nan,nan,nan' /></player_cin>"
          "<filter frame='-2147483648' alpha='1e40' rgb='nan,1,1' />");
    for (int i = 0; i < 5; ++i) {
        t.frame();
        step();
    }
    EXPECT_EQ(t.state, STATE_CINEMATIC);
    for (const int child : {0, -1, 99}) world.startCinematic(child);
    EXPECT_EQ(world.cinematic.element, world.document.childAt(1)) << "only cinematics can be started";
}
