#include "support/test_world.h"

#include <gtest/gtest.h>

namespace {
const std::string kHero = spawnElement("1,2,3", "0,0,1");

class Cinematic : public ::testing::Test {
protected:
    Cinematic() {
        t.writeCharacter("maincharfinal\\mainchar_noweapon");
        world.spawnPoint = "hut";
    }
    void start(const std::string& length, const std::string& inside, const std::string& more = "") {
        ASSERT_EQ(t.load(kHero + "<cinematic name=\"c\" length=\"" + length + "\">" + inside +
                         "</cinematic>" + more),
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

TEST_F(Cinematic, TwoKeysMeetHalfway) {
    start("200", "<camera><frame number=\"0\" pos=\"0,0,0\" target=\"0,0,-9\" />"
                 "<frame number=\"100\" pos=\"10,20,0\" target=\"9,9,9\" /></camera>");
    EXPECT_EQ(t.state, STATE_GAME) << "until the first step";
    step();
    EXPECT_EQ(t.state, STATE_CINEMATIC);
    step(50);
    EXPECT_TRUE(world.camera.getEye().isNear({5, 10, 0}));
    step(50);
    EXPECT_TRUE(world.camera.getEye().isNear({10, 20, 0}));
    step(99);
    EXPECT_TRUE(world.camera.getEye().isNear({10, 20, 0})) << "the last key holds";
    EXPECT_EQ(t.state, STATE_CINEMATIC);
    step();
    EXPECT_EQ(t.state, STATE_GAME);
    EXPECT_FALSE(world.cinematic.playing);
}

TEST_F(Cinematic, OneKeyHoldsAndAnEmptyTrackIsHarmless) {
    start("10", "<camera><frame number=\"4\" pos=\"1,2,30\" target=\"0,0,0\" /></camera>");
    for (int i = 0; i < 10; ++i) {
        step();
        EXPECT_TRUE(world.camera.getEye().isNear({1, 2, 30})) << i;
    }
    start("3", "<camera /><player_cin /><filter />");
    step(4);
    EXPECT_EQ(t.state, STATE_GAME);
}

TEST_F(Cinematic, LengthZeroEndsOnItsFirstStep) {
    for (const char* length : {"0", "-5", ""}) {
        start(length, "<filter frame=\"0\" alpha=\"1\" />");
        step();
        EXPECT_EQ(t.state, STATE_GAME) << length;
        EXPECT_EQ(world.cinematic.fade.a, 0) << length;
    }
}

TEST_F(Cinematic, FiltersFadeBetweenTheirFrames) {
    start("200",
          "<filter frame=\"0\" rgb=\"1,0,0\" alpha=\"1\" /><filter frame=\"50\" rgb=\"0,0,0\" alpha=\"0\" />"
          "<filter frame=\"20\" alpha=\"9\" /><filter frame=\"150\" rgb=\"0,0,1\" alpha=\"0.5\" />");
    struct {
        int frame;
        float red, alpha;
    } const kRows[] = {{0, 1, 1},       {25, 0.5f, 0.5f}, {50, 0, 0},
                       {100, 0, 0.25f}, {150, 0, 0.5f},   {190, 0, 0.5f}};
    int done = 0;
    for (const auto& row : kRows) {
        step(row.frame + 1 - done);
        done = row.frame + 1;
        EXPECT_NEAR(world.cinematic.fade.r, row.red, 1e-4f) << row.frame;
        EXPECT_NEAR(world.cinematic.fade.a, row.alpha, 1e-4f) << row.frame;
    }
    EXPECT_NEAR(world.cinematic.fade.b, 1, 1e-4f);
}

TEST_F(Cinematic, TheHeroFollowsHisTrack) {
    start("40",
          "<player_cin><frame number=\"0\" pos=\"5,0,5\" dir=\"0,0,-9\" speed=\"200\" lower_anim=\"FIRST\" />"
          "<frame number=\"3\" dir=\"-4,0,0\" upper_anim=\"SECOND\" /><frame number=\"6\" speed=\"0\" "
          "/></player_cin>");
    cObject* hero = cObjectMgr::instance().hero();
    t.setFloor(-20);
    const auto frame = [&] {
        cVector3 before = hero->getPosition();
        t.frame();
        step();
        return hero->getPosition() - before;
    };
    frame();
    EXPECT_TRUE(hero->getPosition().isNear({5, 0, 5}));
    EXPECT_TRUE(hero->body->shape.p0.isNear({5, 0.35f, 5})) << "with his body";
    EXPECT_EQ(hero->getDirection(), cVector3(0, 0, -1));
    EXPECT_NEAR(frame().z, -0.19f, 0.01f) << "0.95 of the speed";
    frame();
    frame();
    EXPECT_EQ(hero->getDirection(), cVector3(-1, 0, 0));
    EXPECT_NEAR(frame().x, -0.19f, 0.01f) << "the speed goes on";
    frame();
    frame();
    EXPECT_NEAR(frame().x, 0, 0.01f);
}

TEST_F(Cinematic, TheStateBeforeTheFirstOneComesBack) {
    start("5", "", "<cinematic name=\"d\" length=\"3\" />");
    t.state = STATE_INVENTORY;
    step(3);
    world.startCinematic(2);
    step(3);
    EXPECT_EQ(t.state, STATE_CINEMATIC);
    step();
    EXPECT_EQ(t.state, STATE_INVENTORY);
    step();
    EXPECT_EQ(t.state, STATE_INVENTORY);
}

TEST_F(Cinematic, TheMenuPausesAndAConversationEnds) {
    start("5", "", "<cinematic name=\"d\" length=\"3\" />");
    world.camera.toggleView();
    step(2);
    t.state = STATE_MENU;
    step(9);
    EXPECT_TRUE(world.cinematic.playing);
    t.state = STATE_CINEMATIC;
    step();
    EXPECT_EQ(world.cinematic.frame, 3u) << "goes on where it was";
    for (const GameState left : {STATE_DIALOGUE, STATE_GAME}) {
        t.state = left;
        step();
        EXPECT_EQ(t.state, left);
        EXPECT_FALSE(world.isPlayerVisible());
    }
    world.startCinematic(2);
    step(4);
    EXPECT_EQ(world.cinematic.element, nullptr) << "the next one plays to its end";
    EXPECT_EQ(t.state, STATE_GAME);
}

TEST_F(Cinematic, TheHeroShowsInFirstPersonWhileItPlays) {
    start("5", "");
    world.resetCinematic();
    world.camera.toggleView();
    EXPECT_FALSE(world.isPlayerVisible());
    world.startCinematic(1);
    EXPECT_TRUE(world.isPlayerVisible());
}

TEST_F(Cinematic, WildNumbersAreHarmless) {
    start(
        "2147483647",
        "<camera><frame number=\"-2147483648\" pos=\"nan,0,0\" dir=\"0,1,0\" /><frame number=\"2147483647\" "
        "pos=\"1e40,0,0\" target=\"0,0,0\" up=\"nan,nan,nan\" /><frame number=\"1\" "
        "/></camera><player_cin><frame "
        "number=\"0\" pos=\"1e40,0,0\" speed=\"1e40\" dir=\"nan,nan,nan\" /></player_cin>"
        "<filter frame=\"-2147483648\" alpha=\"1e40\" rgb=\"nan,1,1\" />");
    for (int i = 0; i < 5; ++i) {
        t.frame();
        step();
    }
    EXPECT_EQ(t.state, STATE_CINEMATIC);
    world.startCinematic(0);
    world.startCinematic(-1);
    world.startCinematic(99);
    EXPECT_EQ(world.cinematic.element, world.document.childAt(1)) << "only cinematics can be started";
}
