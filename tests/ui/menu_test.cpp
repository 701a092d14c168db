// The menu without a window: pages, flows, hold counters, settings screens.

#include "core/auto_player.h"
#include "support/test_world.h"
#include "ui/command_mgr.h"
#include "ui/input_mgr.h"
#include "ui/settings_screens.h"

#include <SDL.h>
#include <gtest/gtest.h>

namespace {
constexpr int kMiddleX = 337, kMiddleY = 264; ///< of the window, seen from the panel's corner
const std::string kHut = "<level name=\"l\">" + spawnElement() + "</level>";

class Menu : public ::testing::Test {
protected:
    Menu() {
        std::string rectangles;
        for (const std::string name :
             {"RETURN", "NEWGAME", "LOADGAME", "SETTINGS", "CREDITS", "QUIT", "AUDIO", "VIDEO", "INPUT",
              "DEFAULT", "OK", "CANCEL", "SAVE", "LOAD"}) {
            for (const std::string& key : {name, "HL_" + name})
                rectangles +=
                    key + "_LEFT 8\n" + key + "_RIGHT 308\n" + key + "_TOP 10\n" + key + "_BOTTOM 36\n";
        }
        t.game.write("menu.cfg", rectangles);
        t.writeCharacter("maincharfinal\\mainchar_noweapon");
        SDL_Init(SDL_INIT_VIDEO);
        input.pump(0, &t.state); // takes SDL's key state; ours replaces it
        input.bindings.setKeyState(t.keys.data());
        t.state = STATE_MENU;
        input.openMenu();
        frames(1);
    }
    ~Menu() override { SDL_Quit(); }

    void frames(int count) {
        for (int i = 0; i < count; ++i) menu.draw();
    }
    template <typename... Keys> void tap(Keys... keys) {
        for (const int key : {static_cast<int>(keys)...}) {
            for (const bool down : {true, false}) {
                t.keys[static_cast<size_t>(key)] = down;
                frames(1);
            }
        }
    }
    /// Moves the mouse; pixels of the panel.
    void point(int x, int y) {
        input.mouseX = x - kMiddleX;
        input.mouseY = y - kMiddleY;
        input.mouseDX = 1;
        frames(1);
        input.mouseDX = 0;
    }
    void answer(const std::string& text) {
        ASSERT_TRUE(input.promptActive);
        for (const char c : text) typeCharacter(input.promptText, input.maxTextLength, c, false);
        input.promptConfirmed = true;
        frames(1);
    }
    std::vector<int32_t> buttons() const {
        std::vector<int32_t> list;
        for (const cMenu::Item& item : menu.items()) list.push_back(item.button);
        return list;
    }
    /// From the main page without a game.
    void toSettings() {
        tap(SDLK_DOWN, SDLK_DOWN, SDLK_RETURN);
        ASSERT_EQ(menu.page(), cMenu::kSettingsPage);
    }

    TestWorld t;
    cInputMgr& input = cInputMgr::instance();
    cMenu& menu = input.menu;
    cWorld& world = cWorld::instance();
};
using Buttons = std::vector<int32_t>;
using Names = std::vector<std::string>;
} // namespace

TEST_F(Menu, TheMainPageDependsOnAGame) {
    EXPECT_EQ(buttons(), (Buttons{1, 2, 3, 4, 5}));
    EXPECT_EQ(menu.items()[0].y, 260) << "moved up over the one that is missing";
    tap(SDLK_ESCAPE);
    EXPECT_TRUE(menu.isVisible());
    world.heroName = "Ada";
    input.openMenu();
    EXPECT_EQ(buttons(), (Buttons{0, 1, 2, 3, 4, 5}));
    EXPECT_EQ(menu.items()[5].y, 60);
    frames(40);
    EXPECT_EQ(menu.slide(), 32);
    EXPECT_EQ(menu.items()[0].highlight, 16);
    tap(SDLK_DOWN);
    frames(3);
    EXPECT_EQ(menu.items()[0].highlight, 16 - 5) << "shrinks by one";
    EXPECT_EQ(menu.items()[1].highlight, 5);
    tap(SDLK_ESCAPE);
    EXPECT_FALSE(menu.isVisible());
    frames(31);
    EXPECT_EQ(menu.slide(), 0);
    SDL_Event event;
    bool resumed = false;
    while (SDL_PollEvent(&event)) resumed = resumed || (event.type == SDL_USEREVENT && event.user.code == 0);
    EXPECT_TRUE(resumed);
}

TEST_F(Menu, AHeldKeyActsInFrames1And26And51) {
    t.keys[SDLK_DOWN] = 1;
    std::vector<int> acted;
    for (int frame = 1, before = menu.selected(); frame <= 60; ++frame, before = menu.selected()) {
        frames(1);
        if (menu.selected() != before) acted.push_back(frame);
    }
    EXPECT_EQ(acted, (std::vector<int>{1, 26, 51}));
    t.keys[SDLK_DOWN] = 0;
    frames(1);
    input.openMenu();
    frames(1);
    tap(SDLK_UP);
    EXPECT_EQ(menu.selected(), 4) << "around the end";
    tap(SDLK_DOWN);
    EXPECT_EQ(menu.selected(), 0);
    t.keys[SDLK_RETURN] = 1;
    input.openMenu();
    frames(24);
    EXPECT_FALSE(input.promptActive) << "what was held at the opening waits";
    frames(1);
    EXPECT_TRUE(input.promptActive);
}

TEST_F(Menu, ANewGameAsksForNameAndSettings) {
    t.game.write("testlevel.xml", kHut);
    tap(SDLK_RETURN);
    EXPECT_EQ(menu.title(), "Pick a name for the hero:");
    EXPECT_EQ(input.maxTextLength, 14);
    for (const char* nothing : {"", "  ", "\x1B\t", "\xA3me"}) {
        input.promptText.clear();
        answer(nothing);
        EXPECT_TRUE(input.promptActive) << nothing;
    }
    input.promptText.clear();
    answer("Ada");
    EXPECT_EQ(input.maxTextLength, 93);
    EXPECT_EQ(menu.title(), "Select settings file to use:");
    EXPECT_EQ(menu.page(), cMenu::kChooserPage);
    EXPECT_EQ(menu.listNames(), Names{"[ Create New ]"});
    tap(SDLK_ESCAPE);
    EXPECT_EQ(menu.page(), cMenu::kMainPage);
    tap(SDLK_RETURN);
    answer("Ada");
    tap(SDLK_RETURN);
    EXPECT_EQ(menu.title(), "Save input settings as:");
    EXPECT_EQ(input.maxTextLength, 8);
    answer("sevench");
    EXPECT_EQ(input.listSettings(), Names{"sevench"});
    EXPECT_EQ(world.heroName, "Ada");
    EXPECT_EQ(world.heroSettings, "sevench");
    EXPECT_NE(cObjectMgr::instance().hero(), nullptr);
    EXPECT_EQ(input.returnState, STATE_LOADING);
    EXPECT_EQ(menu.slide(), 1) << "the game goes on with the next frame";
    frames(1);
    input.pump(0, &t.state);
    EXPECT_EQ(t.state, STATE_GAME);

    t.state = STATE_MENU;
    input.openMenu();
    frames(1);
    tap(SDLK_DOWN, SDLK_RETURN);
    answer("Bo");
    EXPECT_EQ(menu.listNames(), (Names{"sevench", "[ Create New ]"}));
    tap(SDLK_RETURN);
    EXPECT_EQ(world.heroName, "Bo");
    EXPECT_EQ(world.listSavedGames(), (Names{"Ada", "Bo"}));
}

TEST_F(Menu, WithoutTheFirstLevelTheMenuStaysAndSaysWhy) {
    tap(SDLK_RETURN);
    answer("Ada");
    tap(SDLK_RETURN);
    answer("s");
    EXPECT_TRUE(menu.isVisible());
    EXPECT_FALSE(world.isGameLoaded());
    EXPECT_NE(menu.notice().find("testlevel.xml"), std::string::npos);
    frames(40);
    EXPECT_EQ(t.state, STATE_MENU);
}

TEST_F(Menu, SavedHeroesAreListedAndLoaded) {
    t.game.write("isle.xml", kHut);
    for (int i = 0; i < 60; ++i) {
        world.heroName = i == 30 ? "\xA3hidden" : "hero" + std::to_string(i);
        world.levelFile = i == 59 ? "isle.xml" : "none.xml";
        world.spawnPoint = "hut";
        ASSERT_TRUE(world.saveGame());
    }
    world.heroName = cWorld::kUnloadedHero;
    tap(SDLK_DOWN, SDLK_RETURN);
    EXPECT_EQ(menu.title(), "Load what game:");
    ASSERT_EQ(menu.listNames().size(), 52u) << "the newest that fit";
    EXPECT_EQ(menu.listNames().back(), "hero59");
    EXPECT_EQ(menu.items()[0].y - menu.scroll(), 170);
    EXPECT_EQ(menu.items()[1].y - menu.scroll(), 152);
    tap(SDLK_RETURN);
    EXPECT_NE(menu.notice().find("none.xml"), std::string::npos);
    EXPECT_EQ(menu.page(), cMenu::kMainPage);
    tap(SDLK_DOWN, SDLK_RETURN, SDLK_UP);
    const cMenu::Item& last = menu.items().back();
    EXPECT_GT(last.y - menu.scroll(), 20) << "scrolled into sight";
    tap(SDLK_RETURN);
    EXPECT_EQ(world.heroName, "hero59");
    EXPECT_EQ(input.returnState, STATE_LOADING);
    EXPECT_FALSE(menu.isVisible());
}

TEST_F(Menu, TheConsoleLeadsIntoASavedGame) {
    t.game.write("isle.xml", kHut);
    for (const auto& [name, level] : {std::pair("Ada", "isle.xml"), {"Bo", "none.xml"}}) {
        world.heroName = name;
        world.levelFile = level;
        world.spawnPoint = "hut";
        ASSERT_TRUE(world.saveGame());
    }
    world.heroName = cWorld::kUnloadedHero;
    for (const char* line : {"load_saved Cy", "load_saved Bo"}) {
        cCommandMgr::instance().execute(line, input.console);
        frames(40);
        input.pump(0, &t.state);
        EXPECT_TRUE(menu.isVisible()) << line;
        EXPECT_EQ(t.state, STATE_MENU) << line;
    }
    EXPECT_EQ(input.console.lines, Names{"There is no saved game of Cy"});
    EXPECT_NE(menu.notice().find("none.xml"), std::string::npos);
    cCommandMgr::instance().execute("load_saved Ada", input.console);
    EXPECT_FALSE(menu.isVisible());
    frames(1);
    input.pump(0, &t.state);
    EXPECT_EQ(t.state, STATE_GAME) << "without a key of the menu's";
    EXPECT_EQ(world.heroName, "Ada");
}

TEST_F(Menu, PromptsTakeTheLettersOfTheFont) {
    const cAutoPlayer player;
    const auto type = [&](const std::string& text) {
        for (const char c : text) player.type(c);
        input.pump(0, &t.state);
    };
    tap(SDLK_RETURN);
    ASSERT_TRUE(input.promptActive);
    type("\xC5"
         "d\xE9 ~\x7F\xA3");
    EXPECT_EQ(input.promptText, "d ~");
    type("\b");
    EXPECT_EQ(input.promptText, "d ");
    input.promptActive = false;
    input.console.visible = true;
    type("\xE9");
    EXPECT_EQ(input.console.line, "\xE9") << "the console takes all";
}

TEST_F(Menu, TheSettingsPageListsSavesAndLoads) {
    toSettings();
    EXPECT_EQ(buttons(), (Buttons{6, 7, 8, 9, 12, 13}));
    ASSERT_TRUE(input.saveSettings(cInputMgr::kDefault));
    world.heroName = "Ada"; // whose settings the chosen ones become
    tap(SDLK_UP, SDLK_RETURN);
    EXPECT_EQ(menu.title(), "Save settings as:") << "the last one saves";
    input.setWalkDefault(true);
    answer("calm");
    EXPECT_EQ(menu.page(), cMenu::kSettingsPage);
    EXPECT_EQ(world.heroSettings, "calm");
    input.setWalkDefault(false);
    for (int i = 0; i < 2; ++i) tap(SDLK_UP);
    tap(SDLK_RETURN);
    EXPECT_EQ(menu.notice(), "The default settings are loaded.");
    EXPECT_EQ(world.heroSettings, cInputMgr::kLatest);
    tap(SDLK_DOWN, SDLK_RETURN);
    EXPECT_EQ(menu.title(), "Load what settings:") << "the one above lists";
    EXPECT_EQ(menu.listNames(), Names{"calm"});
    tap(SDLK_ESCAPE);
    EXPECT_EQ(menu.page(), cMenu::kSettingsPage) << "back from the list";
    for (int i = 0; i < 2; ++i) tap(SDLK_UP);
    tap(SDLK_RETURN, SDLK_RETURN);
    EXPECT_TRUE(input.isWalkDefault());
    EXPECT_EQ(world.heroSettings, "calm");
    tap(SDLK_ESCAPE);
    EXPECT_EQ(menu.page(), cMenu::kMainPage);
}

TEST_F(Menu, SettingsScreensEditACopy) {
    const cInputSettings before = input.bindings.settings;
    toSettings();
    tap(SDLK_DOWN); // video
    tap(SDLK_RETURN);
    ASSERT_EQ(menu.page(), cMenu::kVideoPage);
    for (const int bit : {kOptionStatFading, kOptionShadows, kOptionCrosshair}) {
        tap(SDLK_LEFT);
        EXPECT_EQ(input.editSettings.options & bit, 0);
        tap(SDLK_DOWN);
    }
    std::vector<int> types;
    for (const int key :
         {SDLK_RIGHT, SDLK_RIGHT, SDLK_RIGHT, SDLK_LEFT, SDLK_LEFT, SDLK_RIGHT, SDLK_RIGHT, SDLK_LEFT}) {
        tap(key);
        types.push_back(input.editSettings.crosshairType);
    }
    EXPECT_EQ(types, (std::vector<int>{1, 2, 3, 1, 0, 1, 2, 0}));
    tap(SDLK_DOWN, SDLK_LEFT);
    EXPECT_EQ(input.editSettings.crosshairColour[0], 255 - 32);
    EXPECT_EQ(input.bindings.settings.options, before.options) << "not in force yet";
    tap(SDLK_ESCAPE);
    EXPECT_EQ(menu.page(), cMenu::kVideoPage) << "Escape does nothing here";
    tap(SDLK_UP);
    for (int i = 0; i < 4; ++i) tap(SDLK_UP);
    ASSERT_EQ(menu.items()[static_cast<size_t>(menu.selected())].button, 11);
    tap(SDLK_RETURN);
    EXPECT_EQ(menu.page(), cMenu::kSettingsPage);
    EXPECT_EQ(input.bindings.settings.crosshairColour, before.crosshairColour) << "cancelled";

    tap(SDLK_RETURN); // audio
    ASSERT_EQ(menu.page(), cMenu::kAudioPage);
    tap(SDLK_LEFT);
    EXPECT_FLOAT_EQ(input.editSettings.soundVolume, (204 - 32) / 255.0f);
    for (int i = 0; i < 10; ++i) tap(SDLK_LEFT);
    EXPECT_EQ(input.editSettings.soundVolume, 0.0f);
    point(210 + 220, menu.items()[1].y);
    EXPECT_EQ(menu.selected(), 1);
    t.keys[1] = 1;
    frames(3);
    EXPECT_FLOAT_EQ(input.editSettings.musicVolume, 128 / 255.0f);
    point(640, menu.items()[1].y);
    EXPECT_FLOAT_EQ(input.editSettings.musicVolume, 250 / 255.0f) << "follows the held button";
    t.keys[1] = 0;
    frames(1);
    tap(SDLK_DOWN, SDLK_RETURN);
    EXPECT_EQ(input.bindings.settings.soundVolume, 0.0f);
    EXPECT_FLOAT_EQ(world.playerMusicVolume, 250 / 255.0f) << "OK reaches the parts";
}

TEST_F(Menu, KeysAreCapturedForTheChosenViews) {
    toSettings();
    for (int i = 0; i < 2; ++i) tap(SDLK_DOWN);
    tap(SDLK_RETURN);
    ASSERT_EQ(menu.page(), cMenu::kInputPage);
    ASSERT_EQ(menu.items().size(), 23u);
    const cInputSettings& edit = input.editSettings;
    const auto give = [&](int key) { // Return held for two frames, then the key
        t.keys[SDLK_RETURN] = 1;
        frames(2);
        EXPECT_TRUE(menu.isCapturing());
        t.keys[SDLK_RETURN] = 0;
        t.keys[SDLK_NUMLOCK] = 1;
        frames(2);
        EXPECT_TRUE(menu.isCapturing()) << "a lock is no key";
        tap(key);
        EXPECT_FALSE(menu.isCapturing());
        t.keys[SDLK_NUMLOCK] = 0;
    };
    give(SDLK_x);
    EXPECT_EQ(edit.keysThirdPerson[0], SDLK_x);
    EXPECT_EQ(edit.keysFirstPerson[0], SDLK_x);
    tap(SDLK_RIGHT);
    give(SDLK_DOWN);
    EXPECT_EQ(edit.keysThirdPerson[0], SDLK_DOWN);
    EXPECT_EQ(edit.keysFirstPerson[0], SDLK_x);
    EXPECT_EQ(menu.selected(), 0) << "the key was not meant for the menu";
    tap(SDLK_RIGHT);
    give(4);
    EXPECT_EQ(edit.keysFirstPerson[0], 4);
    tap(SDLK_DOWN);
    point(300, menu.items()[1].y - menu.scroll());
    give(SDLK_ESCAPE);
    EXPECT_EQ(edit.keysThirdPerson[1], SDLK_ESCAPE);
    EXPECT_EQ(edit.keysFirstPerson[1], 115) << "the mouse chose the third-person column";
    for (int i = 1; i < 16; ++i) tap(SDLK_DOWN);
    for (int i = 0; i < 4; ++i) tap(SDLK_RETURN);
    EXPECT_EQ(edit.controlThirdPerson, 0) << "four modes around";
    for (int i = 0; i < 4; ++i) tap(SDLK_DOWN);
    EXPECT_GT(menu.items()[20].y - menu.scroll(), 20);
    for (int i = 0; i < 40; ++i) tap(SDLK_RIGHT);
    EXPECT_FLOAT_EQ(edit.sensitivity, 0.01f);
    for (int i = 0; i < 40; ++i) tap(SDLK_LEFT);
    EXPECT_FLOAT_EQ(edit.sensitivity, 0.0001f);
    point(650, 280);
    t.keys[1] = 1;
    frames(2);
    t.keys[1] = 0;
    frames(1);
    EXPECT_FLOAT_EQ(edit.sensitivity, 0.0001f) << "the scroll bar is no slider";
    EXPECT_EQ(menu.selected(), 20);
    tap(SDLK_DOWN, SDLK_RETURN);
    EXPECT_EQ(input.bindings.getBinding(CMD_FORWARD), SDLK_DOWN);
}

TEST_F(Menu, TheMouseSelectsScrollsAndGoesBack) {
    point(337, 100 + 40);
    EXPECT_EQ(menu.selected(), 3);
    point(20, 100);
    EXPECT_EQ(menu.selected(), 3) << "beside the buttons";
    tap(1);
    ASSERT_EQ(menu.page(), cMenu::kCreditsPage);
    EXPECT_EQ(menu.scroll(), 230);
    tap(4);
    EXPECT_EQ(menu.scroll(), 230);
    t.keys[5] = 1;
    frames(10);
    t.keys[5] = 0;
    EXPECT_EQ(menu.scroll(), 230 - 2 * 40) << "every frame of the wheel";
    tap(SDLK_UP);
    EXPECT_EQ(menu.scroll(), 158);
    point(640, 30);
    tap(1);
    EXPECT_EQ(menu.scroll(), 150) << "towards the pointer";
    tap(3);
    EXPECT_EQ(menu.page(), cMenu::kMainPage);
}

TEST_F(Menu, AnOpenConsoleKeepsItsKeys) {
    input.console.visible = true;
    tap(SDLK_RETURN, SDLK_DOWN);
    EXPECT_FALSE(input.promptActive);
    EXPECT_EQ(menu.selected(), 0);
}
