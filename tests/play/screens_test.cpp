// What is drawn over the level and in its place, as pictures of the real window: the intro, the menu's pages,
// the console, the inventory.

#include "game/item_def.h"
#include "platform/clock.h"
#include "render/renderer.h"
#include "support/game_run.h"
#include "support/picture.h"
#include "ui/input_mgr.h"
#include "ui/settings_screens.h"
#include "world/world.h"

#include <SDL.h>
#include <gtest/gtest.h>

namespace {
constexpr uint32_t kMagenta = 0xFF00FF, kWhite = 0xFFFFFF;

/// The game on the made data, asked for pictures.
struct Screens {
    explicit Screens(RunOptions options = {},
                     std::shared_ptr<TempGame> files = std::make_shared<TempGame>(GAME_DATA))
        : game(std::move(options), std::move(files)) {}

    /// What so many presses of a key change in the picture, once the highlights have settled.
    Box changeBy(int key, int presses = 1) {
        const Picture before = game.picture();
        for (int i = 0; i < presses; ++i) game.tapKey(key);
        game.frames(kSettled);
        return changed(before, game.picture());
    }

    static constexpr int kSettled = 40; ///< frames after which no highlight and no slide moves
    GameRun game;
};

/// 1024 × 1024 of one colour, 0xRRGGBB, opaque.
std::string plainTga(uint32_t colour) {
    std::string tga("\0\0\2\0\0\0\0\0\0\0\0\0\0\4\0\4\x20\x08", 18);
    const char pixel[] = {static_cast<char>(colour), static_cast<char>(colour >> 8),
                          static_cast<char>(colour >> 16), '\xFF'};
    for (int i = 0; i < 1024 * 1024; ++i) tga.append(pixel, 4);
    return tga;
}
} // namespace

TEST(Screens, TheIntroShowsItsSignsAndCaptionsInTimeAndEndsInTheMenu) {
    const auto files = std::make_shared<TempGame>(GAME_DATA);
    files->write("img/credits.tga", plainTga(kMagenta)); // every sign and caption is a magenta rectangle
    Screens screens({}, files);
    platform::useFixedStep(500);
    const auto shown = [&](uint64_t ms) {
        while (platform::ticks() < ms) screens.game.frames(1);
        return whereIs(screens.game.picture(), kMagenta);
    };
    const uint64_t start = platform::ticks();
    EXPECT_EQ(shown(start + 2500).count, 0) << "loading";
    // A large sign and a small one below it, which meet in a row; the second alone.
    const Box two = shown(start + 9500);
    EXPECT_TRUE(two.within(400 - 117, 300 - 110, 400 + 117, 300 + 82)) << two;
    EXPECT_EQ(two.count, 235 * 165 + 65 * 29 - 65);
    EXPECT_EQ(shown(start + 13000).count, 0) << "they fade out";
    EXPECT_EQ(shown(start + 19000), (Box{400 - 84, 300 - 30, 400 + 84, 300 + 30, 169 * 61}));
    EXPECT_EQ(shown(start + 23000).count, 0);
    const Picture blank = screens.game.picture();
    shown(start + 30000);
    EXPECT_GT(changed(blank, screens.game.picture()).count, 20000) << "the title";
    // The flight fades in within its first 60 frames.
    for (const auto& [ms, width, height] :
         {std::tuple{120000, 295, 107}, {133000, 297, 109}, {145000, 209, 231}}) {
        EXPECT_EQ(shown(start + static_cast<uint64_t>(ms)),
                  (Box{10, 10, 9 + width, 9 + height, width * height}))
            << ms;
    }
    const Picture flying = screens.game.picture();
    screens.game.frames(2);
    EXPECT_GT(changed(flying, screens.game.picture()).count, 5000) << "the island passes by";
    EXPECT_EQ(screens.game.app.state(), STATE_INTRO);
    screens.game.frames(16);
    EXPECT_EQ(screens.game.app.state(), STATE_MENU);
}

TEST(Screens, TheMenuDrawsWhereItsRowsAre) {
    Screens screens;
    GameRun& game = screens.game;
    const cMenu& menu = cInputMgr::instance().menu;
    constexpr int kX = 400 - 337, kY = 300 - 264; // the panel's corner
    const auto isRow = [&](const Box& box, size_t row) {
        const int y = kY + menu.items()[row].y - menu.scroll();
        return box.count > 0 && box.within(kX, y - 12, kX + 632, y + 12);
    };
    const auto open = [&](cMenu::Page page, int key, int presses) {
        for (int i = 0; i < presses; ++i) game.tapKey(key);
        const Box box = screens.changeBy(SDLK_RETURN);
        ASSERT_EQ(menu.page(), page);
        EXPECT_GT(box.count, 3000) << "page " << page << " looks like the one before";
    };
    game.skipIntro();
    const Box highlight = screens.changeBy(SDLK_DOWN);
    EXPECT_GT(highlight.count, 200);
    EXPECT_TRUE(
        highlight.within(kX + 130, kY + menu.items()[1].y - 30, kX + 545, kY + menu.items()[0].y + 30))
        << highlight;

    open(cMenu::kSettingsPage, SDLK_DOWN, 1);
    open(cMenu::kAudioPage, SDLK_DOWN, 0);
    const SettingsSlider& slider = audioScreen().rows[0].slider;
    const Box knob = screens.changeBy(SDLK_LEFT, 3);
    EXPECT_TRUE(isRow(knob, 0)) << knob;
    EXPECT_TRUE(knob.within(kX + slider.left - 3, 0, kX + slider.right + 3, 600)) << knob;
    game.tapKey(SDLK_UP); // CANCEL
    game.tapKey(SDLK_RETURN);

    open(cMenu::kVideoPage, SDLK_DOWN, 1);
    for (int i = 0; i < 3; ++i) game.tapKey(SDLK_DOWN);
    const Picture cross = screens.game.picture();
    for (int i = 0; i < 8; ++i) game.tapKey(SDLK_RIGHT);
    EXPECT_GT(changed(cross, screens.game.picture(), kX + 578, kY + 218).count, 20)
        << "beside the rows stands another";
    for (int i = 0; i < 4; ++i) game.tapKey(SDLK_UP);
    game.tapKey(SDLK_RETURN);

    open(cMenu::kInputPage, SDLK_DOWN, 2);
    const Picture bound = screens.game.picture();
    const Box awaited = screens.changeBy(SDLK_RETURN);
    EXPECT_TRUE(isRow(awaited, 0)) << awaited;
    const Box taken = screens.changeBy(SDLK_k);
    EXPECT_TRUE(isRow(taken, 0)) << taken;
    EXPECT_GT(changed(bound, screens.game.picture()).count, 0) << "another key's name stands there now";
    const Box scrolled = screens.changeBy(SDLK_DOWN, 14);
    EXPECT_LE(scrolled.loX, kX + 40);
    EXPECT_GE(scrolled.hiX, kX + 635) << "the scroll bar's thumb has moved: " << scrolled;
}

TEST(Screens, TheConsoleCoversTheTopAndScrolls) {
    Screens screens;
    GameRun& game = screens.game;
    game.skipIntro();
    game.frames(Screens::kSettled);
    const Picture before = screens.game.picture();
    constexpr int kFoot = 600 - 16 * 12 - 18; // 16 lines of 12 pixels and the line that is typed
    constexpr uint32_t kBand = 0xD0D0FF;      // 192, 192, 255 over white, three quarters of it
    game.type("`");
    const Picture empty = screens.game.picture();
    EXPECT_TRUE(changed(before, empty).within(0, kFoot, 799, 599)) << changed(before, empty);
    EXPECT_EQ(empty.at(790, kFoot + 18), kBand);
    EXPECT_EQ(empty.at(790, kFoot), 0xC4C4FFu) << "twice where one types";
    EXPECT_EQ(empty.at(790, 599), kBand);
    EXPECT_EQ(empty.at(790, kFoot - 1), kWhite);

    game.type("help bind");
    const Box typed = changed(empty, screens.game.picture());
    EXPECT_GT(typed.count, 50);
    EXPECT_TRUE(typed.within(0, kFoot, 200, kFoot + 17)) << typed;
    for (int i = 0; i < 30; ++i) cInputMgr::instance().console.print("line " + std::to_string(i));
    const Picture last = screens.game.picture();
    EXPECT_GT(changed(empty, last).count, 1000);
    game.player.setKey(SDLK_PAGEUP, true);
    game.frames(6);
    game.player.setKey(SDLK_PAGEUP, false);
    const Picture scrolled = screens.game.picture();
    const int by = cInputMgr::instance().console.scrollOffset;
    EXPECT_GT(by, 0);
    int torn = 0; // left of the menu behind it
    for (int y = kFoot + 20; y < 590 - by; ++y) {
        for (int x = 0; x < 50; ++x) torn += scrolled.at(x, y) != last.at(x, y + by);
    }
    EXPECT_EQ(torn, 0) << "the lines come down from above";
    EXPECT_TRUE(changed(last, scrolled).within(0, kFoot + 18, 200, 599)) << "the typed line stays";
    game.type("`");
    EXPECT_EQ(changed(before, screens.game.picture()), Box{}) << "nothing of it is left";
}

TEST(Screens, TheInventoryFramesTheChosenItem) {
    const auto files = std::make_shared<TempGame>(GAME_DATA);
    Screens screens(GameRun::at("hut"), files);
    GameRun& game = screens.game;
    cInventory& inventory = cWorld::instance().inventory;
    for (const char* item : {"apple", "key", "rock"}) inventory.give(cItemDefs::instance().findItem(item), 2);
    game.frames(30);
    platform::useFixedStep(1); // the level behind the panel all but stands still
    const Picture closed = screens.game.picture();
    game.hold(CMD_INVENTORY, 2);
    game.frames(Screens::kSettled);
    const Picture opened = screens.game.picture();
    // The first cells of the panel at the window's right edge, 100 pixels apart, below its top.
    const auto cell = [](int n) { return 800 - 320 + 32 + 100 * n; };
    EXPECT_GT(changed(closed, opened, 480, 160).count, 100000) << "the panel shades the level";
    game.hold(CMD_RIGHT, 2);
    game.frames(10);
    ASSERT_EQ(inventory.getSelected(), 1);
    const Box frames = changed(opened, screens.game.picture(), 480, 480);
    EXPECT_GT(frames.count, 200);
    EXPECT_TRUE(frames.within(cell(0), 506, cell(1) + 63, 569)) << frames;
}

TEST(Screens, TheTourWritesItsPictures) {
    const TempGame user;
    const std::string out = user.dir() + "/pictures";
    const auto tour = [&](const std::string& script) {
        user.write("tour.txt", script);
        const std::string command =
            std::string(GAME_PROGRAM) + " --data " GAME_DATA " --fixed-step 16 --fast --user " + user.dir() +
            " --level testlevel.xml --spawn hut --tour " + out + " >" + user.dir() + "/said.txt 2>&1";
        int status = std::system(command.c_str());
        // The leak checker itself now and then crashes on a library's thread that ends just then.
        if (user.read("said.txt").find("LeakSanitizer has encountered a fatal error") != std::string::npos)
            status = std::system(command.c_str());
        return status;
    };
    EXPECT_EQ(
        tour("# the hut\nwait 20\npicture first\nwalk 0 -5\npicture second\nlook 12 0 30\npicture third\n"),
        0)
        << user.read("said.txt");
    const Picture first = Picture::read(out + "/first.png"), second = Picture::read(out + "/second.png");
    EXPECT_EQ(first.width, 800);
    EXPECT_GT(changed(first, second).count, 50000) << "the hero has left the hut";
    EXPECT_GT(changed(second, Picture::read(out + "/third.png")).count, 50000) << "he has looked round";
    EXPECT_NE(tour("wait 1\nfly 3\n"), 0);
    EXPECT_EQ(user.read("said.txt"), "tour.txt:2: not understood: fly 3\n");
}
