// A whole game by real keys and a real mouse: the window system delivers them, the test steps the frames. Two
// small levels of its own on the made island: a gift and a gate in the first, a gate to the end in the
// second.

#include "render/renderer.h"
#include "support/game_run.h"
#include "ui/input_mgr.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <SDL.h>
#include <cstdlib>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {
constexpr int kHeldFrames = 4; ///< of a key that is tapped
constexpr const char* kIsland =
    "<files appearance=\"oct\\island.oct\" collision=\"oct\\island_collision.oct\" />"
    "<enviroment file=\"env\\island.env\" />";

std::string spawn(const char* name) {
    return std::string("<player spawnpoint=\"") + name +
           "\"><physics position=\"0,2.05,26\" direction=\"0,0,-1\" up=\"0,1,0\" />"
           "<camera firstperson=\"0\" offset=\"0,0.6,0\" position=\"0,0.8,3.9\" /></player>";
}

/// Touched by the hero it leads on.
std::string gate(const char* file, const char* place) {
    return std::string("<object name=\"gate\" default_action=\"a\" file=\"") + file + "\" spawnpoint=\"" +
           place +
           "\"><appearance type=\"static\"><model file=\"s_mdl\\trolley.cpm\" /></appearance>"
           "<physics size=\"1\" position=\"0,2.05,22\" direction=\"0,0,-1\" up=\"0,1,0\" gravity=\"0\">"
           "<boundingvolume start=\"0,0,0\" end=\"0,-0.2,0\" radius=\"0.6\" solid=\"1\" /></physics>"
           "<action name=\"a\"><reaction type=\"collision_chr\" do=\"swap_level()\" /></action></object>";
}

constexpr const char* kGift = "<object name=\"gift\" default_action=\"a\"><appearance type=\"static\"><model "
                              "file=\"s_mdl\\trolley.cpm\" />"
                              "</appearance><physics size=\"1\" position=\"6,2.05,26\" direction=\"0,0,-1\" "
                              "up=\"0,1,0\" radius=\"1\" />"
                              "<action name=\"a\" on_set=\"get_object(apple,3);get_object(key)\" /></object>";

/// Presses the keys of the display's keyboard.
struct Hand {
    GameRun& game;
    std::string window;

    explicit Hand(GameRun& run) : game(run) {
        send("search --name '^Quorvane$' mousemove --window %1 300 300 windowfocus %1");
        step(5);
    }
    void send(const std::string& command) const {
        EXPECT_EQ(std::system(("xdotool " + command + " >/dev/null").c_str()), 0) << command;
        usleep(20000); // the way through the window system
    }
    void step(int frames) const { game.frames(frames); }
    void hold(const std::string& key, int frames) const {
        send("keydown " + key);
        step(frames);
        send("keyup " + key);
        step(2);
    }
    void tap(const std::string& key, int times = 1) const {
        for (int i = 0; i < times; ++i) hold(key, kHeldFrames);
    }
    void type(const std::string& text) const {
        send("type --delay 20 " + text);
        step(3);
    }
    /// A button of the menu, by its place on the panel.
    void click(int x, int y) const {
        const int w = static_cast<int>(cRenderer::instance().getWidth()) / 2;
        const int h = static_cast<int>(cRenderer::instance().getHeight());
        send("search --name '^Quorvane$' mousemove --window %1 " + std::to_string(w - 337 + x) + " " +
             std::to_string(h - 1 - (h / 2 - 264 + y)));
        step(3);
        send("mousedown 1");
        step(kHeldFrames);
        send("mouseup 1");
        step(3);
    }
    /// True when it comes true within so many frames.
    template <typename Condition> bool until(Condition condition, int mostFrames) const {
        for (int i = 0; i < mostFrames && !condition(); ++i) step(1);
        return condition();
    }
};

bool isPlaying(const GameRun& game) {
    return game.app.state() == STATE_GAME;
}
void expectSecondLevel(const GameRun& game) {
    const cWorld& world = cWorld::instance();
    EXPECT_EQ(world.levelFile, "second.xml");
    EXPECT_EQ(world.spawnPoint, "pier");
    EXPECT_NEAR(game.hero().z, 26, 0.1f);
    ASSERT_EQ(world.inventory.entries().size(), 2u);
    EXPECT_EQ(world.inventory.entries()[0].count, 3);
    EXPECT_EQ(world.health, 100);
}
} // namespace

TEST(WholePath, FromTheFirstStartToTheEnd) {
    const auto files = std::make_shared<TempGame>(GAME_DATA);
    files->write("testlevel.xml", "<level name=\"one\">" + std::string(kIsland) + spawn("hut") + kGift +
                                      gate("second.xml", "pier") + "</level>");
    files->write("second.xml", "<level name=\"two\">" + std::string(kIsland) + spawn("pier") +
                                   gate("end", "end") + "</level>");
    {
        GameRun game({}, files);
        const Hand hand(game);
        ASSERT_EQ(game.app.state(), STATE_INTRO);
        hand.tap("space");
        ASSERT_EQ(game.app.state(), STATE_MENU);
        hand.step(40);
        hand.click(337, 180);
        ASSERT_EQ(cInputMgr::instance().menu.page(), cMenu::kSettingsPage)
            << "the mouse has found the button";
        hand.tap("Return");
        hand.tap("Left");
        hand.tap("Down", 2);
        hand.tap("Return"); // OK
        EXPECT_FLOAT_EQ(cInputMgr::instance().getSoundVolume(), (204 - 32) / 255.0f);
        hand.tap("Escape");
        hand.tap("Return");
        hand.type("Ada");
        hand.tap("Return");
        hand.tap("Up");
        hand.tap("Return");
        hand.type("mine");
        hand.tap("Return");
        ASSERT_TRUE(hand.until([&] { return isPlaying(game); }, 100));
        EXPECT_EQ(cWorld::instance().heroName, "Ada");
        hand.send("keydown w");
        ASSERT_TRUE(hand.until([] { return cWorld::instance().levelFile == "second.xml"; }, 400));
        hand.send("keyup w");
        ASSERT_TRUE(hand.until([] { return cWorld::instance().levelChangePending == 0; }, 100));
        hand.step(20);
        expectSecondLevel(game);
        hand.tap("Escape");
        hand.step(30);
        hand.tap("Up");
        hand.tap("Return");
        ASSERT_EQ(game.app.state(), STATE_QUIT);
    }
    GameRun game({}, files);
    const Hand hand(game);
    EXPECT_FLOAT_EQ(cInputMgr::instance().getSoundVolume(), (204 - 32) / 255.0f) << "settings are kept";
    hand.tap("space");
    hand.step(40);
    hand.tap("Down");
    hand.tap("Return");
    EXPECT_EQ(cInputMgr::instance().menu.listNames(), std::vector<std::string>{"Ada"});
    hand.tap("Return");
    ASSERT_TRUE(hand.until([&] { return isPlaying(game); }, 100));
    hand.step(20);
    expectSecondLevel(game);
    EXPECT_EQ(cInputMgr::instance().settingsName, "mine");
    EXPECT_FLOAT_EQ(cInputMgr::instance().getSoundVolume(), (204 - 32) / 255.0f);

    hand.send("keydown s"); // backwards off the pier
    ASSERT_TRUE(hand.until([] { return cWorld::instance().health == 0; }, 600)) << "he drowns";
    hand.send("keyup s");
    ASSERT_TRUE(hand.until([] { return cWorld::instance().health == 100; }, 600));
    hand.step(20);
    expectSecondLevel(game);
    EXPECT_EQ(game.app.state(), STATE_GAME);

    hand.send("keydown w");
    ASSERT_TRUE(hand.until([&] { return game.app.state() == STATE_QUIT; }, 600)) << "behind the end screen";
    hand.send("keyup w");
    EXPECT_EQ(cWorld::instance().levelFile, "end");
}
