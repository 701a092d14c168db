// The console: every command with good and bad input, scrolling, drawing's line cut.

#include "support/test_world.h"
#include "ui/command_mgr.h"
#include "ui/input_mgr.h"

#include <SDL.h>
#include <gtest/gtest.h>

namespace {
using Lines = std::vector<std::string>;

class Commands : public ::testing::Test {
protected:
    /// What the console prints in answer.
    Lines run(const std::string& line) {
        input.console.lines.clear();
        cCommandMgr::instance().execute(line, input.console);
        return input.console.lines;
    }
    TestWorld t;
    cInputMgr& input = cInputMgr::instance();
    cInputSettings& settings = input.bindings.settings;
};
} // namespace

TEST_F(Commands, EachAnswersInItsWords) {
    ASSERT_EQ(cCommandMgr::rows().size(), 24u);
    const Lines badCamera{"Unknown parameter",
                          "Valid parameters are MOUSE, INVERTMOUSE, ARROWKEYS and INVERTARROWKEYS",
                          "Optional second parameter: THIRDPERSON or FIRSTPERSON",
                          "to set camera controls for only one of the modes"};
    const struct {
        const char* line;
        Lines answer;
    } kRows[] = {
        {"", {"Unable to recognize command \"\""}},
        {" quit", {"Unable to recognize command \" quit\""}},
        {"QUIT", {"Unable to recognize command \"QUIT\""}},
        {"help", {"Command help takes 1-1 parameters"}},
        {"help help", {"help: Prints description for a command."}},
        {"help bogus", {"No commands called \"bogus\""}},
        {"help h4xx0r", {"h4xx0r: H4xx0ring is teh l33t!"}},
        {"printParams", {}},
        {"printParams a  b c%s ", {"a", "b", "c%s"}},
        {"h4xx0r",
         {" ", "h4xx0rin9...", " ", "Oh noes!", " ", "Joo haev b33n teh h4xx0r3d!",
          "yu0r Megahurtz haev b33n stoeled!!!!11one", " "}},
        {"h4xx0r x", {"Command h4xx0r takes 0-0 parameters"}},
        {"detach_cam", {"Camera Detached"}},
        {"save_config mine", {"Settings saved to mine"}},
        {"save_config elevenchars", {"Unable to save settings elevenchars"}},
        {"load_config mine", {"Settings loaded from mine"}},
        {"load_config none", {"Unable to load settings none"}},
        {"load_saved nobody", {"There is no saved game of nobody"}},
        {"set_camera MOUSE", {"Third-person camera set", "First-person camera set"}},
        {"set_camera ARROWKEYS THIRDPERSON", {"Third-person camera set"}},
        {"set_camera INVERTARROWKEYS FIRSTPERSON", {"First-person camera set"}},
        {"set_camera INVERTMOUSE both", {"Third-person camera set", "First-person camera set"}},
        {"set_camera mouse", badCamera},
        {"set_sensitive 50", {"Camera sensitivity set to 50.00"}},
        {"set_sensitive 0.5", {"Please enter a value 1-100"}},
        {"set_sensitive 100.5", {"Please enter a value 1-100"}},
        {"set_sensitive nan", {"Please enter a value 1-100"}},
        {"set_sensitive x", {"Please enter a value 1-100"}},
        {"relative_to_self", {"3rd person movement relative to self"}},
        {"relative_to_cam", {"3rd person movement relative to camera"}},
        {"default_walk", {"Walking is default"}},
        {"default_run", {"Running is default"}},
        {"bind a", {"Command bind takes 2-3 parameters"}},
        {"bind a b c d", {"Command bind takes 2-3 parameters"}},
        {"dropOctree a b c", {"Command dropOctree takes 6-7 parameters"}},
        {"dropOctree none.obj a.oct 60 4 32 1", {"Could not find file \"none.obj\""}},
        {"dropOctree in.obj a.oct 9 4 32 1", {"Invalid parameters"}},
        {"drop_md3 x", {"Command drop_md3 takes 2-4 parameters"}},
    };
    for (const auto& row : kRows) EXPECT_EQ(run(row.line), row.answer) << row.line;
    EXPECT_EQ(run("drop_md3 none thing").size(), 1u);
    for (const auto& row : cCommandMgr::rows()) {
        const std::string full = std::string(row.name) + ": " + row.description;
        std::string got;
        for (const std::string& line : run(std::string("help ") + row.name)) got += line;
        EXPECT_EQ(got, full);
    }
}

TEST_F(Commands, SettingsFollow) {
    cHud& hud = cWorld::instance().hud;
    run("set_camera ARROWKEYS THIRDPERSON");
    EXPECT_EQ(settings.controlThirdPerson, kControlArrows);
    EXPECT_EQ(settings.controlFirstPerson, kControlMouse);
    run("set_camera INVERTMOUSE FIRSTPERSON");
    EXPECT_EQ(settings.controlThirdPerson, kControlArrows);
    EXPECT_EQ(settings.controlFirstPerson, kControlInvertedMouse);
    run("set_sensitive 50");
    EXPECT_FLOAT_EQ(settings.sensitivity, 0.005f);
    run("relative_to_self");
    run("default_walk");
    EXPECT_FALSE(input.isMoveRelativeToCamera());
    EXPECT_TRUE(input.isWalkDefault());
    hud.statsTimer = 0;
    for (const bool on : {false, true}) {
        run(on ? "crosshair_on" : "crosshair_off");
        run(on ? "stat_fade_on" : "stat_fade_off");
        run(on ? "enable_shadows" : "disable_shadows");
        EXPECT_EQ(settings.options, on ? 7 : 0);
        EXPECT_EQ(hud.crosshairOn, on);
        EXPECT_EQ(hud.statsFading, on);
        EXPECT_EQ(cObjectMgr::instance().shadowsEnabled, on);
        EXPECT_EQ(hud.statsTimer, 200) << "shown again when the fading ends";
    }
    SDL_Init(SDL_INIT_VIDEO);
    run("quit a b c");
    SDL_Event event;
    bool quit = false;
    while (SDL_PollEvent(&event)) quit = quit || event.type == SDL_QUIT;
    EXPECT_TRUE(quit);
    SDL_Quit();
}

TEST_F(Commands, BindTakesAnAbbreviatedCommandAndAWholeKeyName) {
    std::string names = "FORWARD BACK LEFT RIGHT RUN USE JUMP FIRE UN_A UN_B IN OUT ITEMS";
    names += " NEXT_ITEM A_NAME_THAT_IS_LONGER_THAN_ITS_SLOT VIEW ";
    t.game.write("keynames.cfl", names + "A 97 AA 98 SPACE 32 A_KEY_OF_NINETEEN_X 99");
    EXPECT_EQ(run("bind JUMP AA"),
              (Lines{"JUMP for third person set to AA", "JUMP for first person set to AA"}));
    EXPECT_EQ(settings.keysThirdPerson[CMD_JUMP], 98);
    EXPECT_EQ(settings.keysFirstPerson[CMD_JUMP], 98);
    EXPECT_EQ(run("bind UN A FIRSTPERSON"), Lines{"UN for first person set to A"});
    EXPECT_EQ(settings.keysFirstPerson[9], 97) << "the last that begins so";
    EXPECT_EQ(settings.keysThirdPerson[9], 0);
    EXPECT_EQ(run("bind R SPACE THIRDPERSON"), Lines{"R for third person set to SPACE"});
    EXPECT_EQ(settings.keysThirdPerson[CMD_RUN], 32);
    EXPECT_EQ(run("bind jump A"), Lines{"Invalid command \"jump\""});
    EXPECT_EQ(run("bind JUMP SPAC"), Lines{"Invalid input \"SPAC\""});
    EXPECT_EQ(run("bind JUMP A_KEY_OF_NINETEEN_X"), Lines{"Invalid input \"A_KEY_OF_NINETEEN_X\""})
        << "no blank has room behind it";
    EXPECT_EQ(run("bind USE ?"), (Lines{"USE for third person set to ?", "USE for first person set to ?"}));
    EXPECT_EQ(settings.keysThirdPerson[CMD_USE], kKeyCount - 1) << "nobody has named the last key";

    const Lines table = run("print_bind");
    ASSERT_EQ(table.size(), 2 + 16 + 7u);
    EXPECT_EQ(table[0], "COMMAND          FIRST PERSON        THIRD PERSON");
    EXPECT_EQ(table[1], "-------------------------------------------------");
    EXPECT_EQ(table[2 + CMD_RUN], "RUN              ?                    SPACE              ");
    EXPECT_EQ(table[2 + 14].substr(0, 21), "A_NAME_THAT_IS_LONG  ") << "cut, not overrun";
    EXPECT_EQ(Lines(table.begin() + 18, table.end()),
              (Lines{" ", "First-person camera controlled by mouse",
                     "Third-person camera controlled by mouse", "Running is default",
                     "Third-person movement is relative to camera", "Camera sensitivity is 40.00", " "}));
}

TEST(Console, CutsAtNinetyTwoAndScrollsToItsEnds) {
    cConsole console;
    console.print(std::string(92, 'a'));
    console.print(std::string(93, 'b'));
    console.print("");
    ASSERT_EQ(console.lines.size(), 4u);
    EXPECT_EQ(console.lines[1].size(), 92u);
    EXPECT_EQ(console.lines[2], "b");
    EXPECT_EQ(console.lines[3], "");
    for (int i = 0; i < 30; ++i) console.print("x");
    for (int i = 0; i < 200; ++i) console.scrollUp(16, 6);
    EXPECT_EQ(console.scrollOffset, (34 - 16) * 12) << "the oldest line stands at the top";
    console.scrollDown(6);
    EXPECT_EQ(console.scrollOffset, 18 * 12 - 6);
    for (int i = 0; i < 200; ++i) console.scrollDown(6);
    EXPECT_EQ(console.scrollOffset, 0);
}
