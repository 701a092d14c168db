#include "support/damage.h"
#include "support/test_world.h"
#include "ui/console.h"
#include "ui/input_mgr.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {
constexpr int kKey = 200;

class Input : public ::testing::Test {
protected:
    TestWorld t;
    cInputMgr& input = cInputMgr::instance();
};
using Settings = Input;

std::string typed(const std::string& text, int limit = 93, bool shift = false) {
    std::string line;
    for (const char c : text) typeCharacter(line, limit, c, shift);
    return line;
}
} // namespace

TEST_F(Input, AHeldCommandTriggersOnceAnInterval) {
    cBindings bindings;
    bindings.setKeyState(t.keys.data());
    bindings.setBinding(CMD_USE, kKey);
    bindings.setBinding(CMD_USE + kFirstPersonCommands, kKey + 1);
    bindings.settings.repeatIntervals[CMD_USE] = 200;
    t.keys[kKey] = 1;
    std::vector<int> frames;
    for (int frame = 1; frame <= 30; ++frame) {
        if (bindings.isCommandTriggered(CMD_USE)) frames.push_back(frame);
        bindings.countDown(16);
    }
    EXPECT_EQ(frames, (std::vector<int>{1, 14, 27}));
    t.keys[kKey + 1] = 1;
    EXPECT_FALSE(bindings.isCommandTriggered(CMD_USE + kFirstPersonCommands)) << "both views share the timer";
    EXPECT_TRUE(bindings.isCommandDown(CMD_USE + kFirstPersonCommands));
    bindings.countDown(0xFFFFFFFF);
    bindings.holdOffCommand(CMD_USE, 250);
    bindings.countDown(249);
    EXPECT_FALSE(bindings.isCommandTriggered(CMD_USE));
    bindings.countDown(1);
    EXPECT_TRUE(bindings.isCommandTriggered(CMD_USE));
}

TEST_F(Input, CodesOutsideOfTheTableAreRefused) {
    cBindings bindings;
    EXPECT_FALSE(bindings.isKeyDown(5)) << "before the first pump nothing is held";
    bindings.setKeyState(t.keys.data());
    for (const int code : {-1, kKeyCount, INT32_MAX}) {
        bindings.setBinding(CMD_JUMP, kKey);
        bindings.setBinding(CMD_JUMP, code);
        EXPECT_EQ(bindings.getBinding(CMD_JUMP), kKey);
        bindings.setKey(code, true);
        EXPECT_FALSE(bindings.isKeyDown(code));
    }
    for (const int command : {-1, 32, INT32_MAX}) {
        EXPECT_FALSE(bindings.isCommandTriggered(command));
        EXPECT_EQ(bindings.getBinding(command), 0);
        bindings.holdOffCommand(command, 5);
    }
}

TEST_F(Input, CameraControlByModeAndView) {
    cBindings bindings;
    bindings.setKeyState(t.keys.data());
    bindings.settings.sensitivity = 0.01f;
    for (const auto& [mode, x, y] :
         {std::tuple(0, 0.3f, -0.2f), {1, 0.3f, 0.2f}, {2, 0.1f, 0.1f}, {3, 0.1f, -0.1f}}) {
        for (const int view : {0, 1}) {
            float dx = 0, dy = 0;
            t.keys[275] = t.keys[273] = 1; // right, up
            bindings.settings.controlThirdPerson = bindings.settings.controlFirstPerson = 9;
            bindings.setControlMode(view, mode);
            EXPECT_TRUE(bindings.getCameraControl(view, 30, -20, dx, dy));
            EXPECT_FLOAT_EQ(dx, x) << mode;
            EXPECT_FLOAT_EQ(dy, y) << mode;
            EXPECT_FALSE(bindings.getCameraControl(1 - view, 30, -20, dx, dy)) << "no such mode";
            t.keys.fill(0);
            EXPECT_FALSE(bindings.getCameraControl(view, 0, 0, dx, dy));
        }
    }
    bindings.setControlMode(0, 1);
    bindings.setControlMode(0, 4);
    EXPECT_EQ(bindings.getControlMode(0), 1);
}

TEST(Typing, AFullTextHasItsLastCharacterReplaced) {
    const std::string hundred = std::string(91, 'a') + "bcdefghiZ";
    EXPECT_EQ(typed(hundred), std::string(91, 'a') + "Z");
    EXPECT_EQ(typed("123456789", 8), "1234569");
    EXPECT_EQ(typed(std::string(20, 'x'), 14).size(), 13u);
    EXPECT_EQ(typed("ab\b\b\bc"), "c") << "an empty text stays empty";
    EXPECT_EQ(typed(std::string("ab\0c", 4)), "abc") << "a silent key changes nothing";
    EXPECT_EQ(typed(std::string("1234567\0", 8), 8), "123456") << "but a full text loses its end";
}

TEST(Typing, ShiftFollowsItsOwnTable) {
    EXPECT_EQ(typed("az09123456789'+,-.<", 93, true), "AZ=)!\"#4%&/()*?;_:>");
    EXPECT_EQ(typed("AZ ?!{", 93, true), "AZ ?!{");
    EXPECT_EQ(typed("\xE5\xC5", 93, true), "\xE5\xC5") << "beyond ASCII nothing changes";
}

TEST(KeyNames, ReadsWordsAndRefusesBadCodes) {
    TempGame game;
    cKeyNames names;
    names.load();
    EXPECT_EQ(names.keys[97], "???");
    EXPECT_EQ(names.commands[0], "");
    std::string text;
    for (int i = 0; i < kCommandCount; ++i) text += "C" + std::to_string(i) + (i % 2 ? "\r\n" : " ");
    game.write("keynames.cfl", text + "A 97\nwheel 4\t far 322 none 0 minus -3 last 321 odd x B 98 end");
    names.load();
    EXPECT_EQ(names.commands[15], "C15");
    for (const auto& [key, name] : {std::pair(97, "A"), {4, "wheel"}, {321, "last"}, {0, "???"}, {98, "B"}})
        EXPECT_EQ(names.keys[static_cast<size_t>(key)], name);
}

TEST_F(Settings, TheRecordIsLaidOutByteForByte) {
    cInputSettings s;
    for (size_t i = 0; i < kCommandCount; ++i) {
        s.keysThirdPerson[i] = static_cast<int32_t>(i + 1);
        s.keysFirstPerson[i] = static_cast<int32_t>(i + 101);
        s.repeatIntervals[i] = static_cast<int32_t>(i + 1000);
    }
    s.controlThirdPerson = 2;
    s.controlFirstPerson = 3;
    s.walkIsDefault = 1;
    s.moveRelativeToCamera = 0;
    s.sensitivity = 0.005f;
    s.options = 5;
    s.crosshairType = 3;
    s.crosshairColour = {9, 8, 7, 6};
    s.soundVolume = 0.5f;
    s.musicVolume = 1;
    cBinaryWriter out;
    s.write(out);
    const platform::Bytes bytes = out.bytes();
    ASSERT_EQ(bytes.size(), cInputSettings::kRecordBytes);
    struct {
        size_t offset;
        uint8_t value;
    } const kRows[] = {{0, 1},   {60, 16}, {64, 101},   {128, 0xE8}, {129, 3},   {192, 2},
                       {193, 3}, {194, 1}, {195, 0},    {199, 0x3B}, {200, 5},   {201, 3},
                       {202, 9}, {205, 6}, {209, 0x3F}, {213, 0x3F}, {212, 0x80}};
    for (const auto& row : kRows) EXPECT_EQ(bytes[row.offset], row.value) << row.offset;
    cBinaryReader in(bytes);
    cInputSettings read;
    read.read(in);
    cBinaryWriter again;
    read.write(again);
    EXPECT_EQ(again.bytes(), bytes);
}

TEST_F(Settings, NamedEntriesAreReplacedAppendedAndListed) {
    EXPECT_EQ(input.loadSettings("none"), -1);
    for (const bool walks : {true, false}) { // appended, then replaced
        input.setWalkDefault(walks);
        EXPECT_TRUE(input.saveSettings("tencharact")) << "ten characters fill the field";
        EXPECT_EQ(input.settingsName, "tencharact");
        input.setWalkDefault(!walks);
        EXPECT_TRUE(input.saveSettings(cInputMgr::kLatest));
        EXPECT_EQ(input.settingsName, "tencharact") << "the latest is no name of the player's";
        EXPECT_EQ(t.game.read("settings.cfl").size(), 4 + 2 * (10 + 214u));
        EXPECT_EQ(input.loadSettings("tencharact"), 0);
        EXPECT_EQ(input.isWalkDefault(), walks);
    }
    for (const char* refused : {"elevenchars", ""}) EXPECT_FALSE(input.saveSettings(refused));
    EXPECT_EQ(input.listSettings(), std::vector<std::string>{"tencharact"});
    EXPECT_EQ(input.findSettings(cInputMgr::kLatest), 1);
    EXPECT_EQ(input.loadSettings("TENCHARACT"), -1);
    ASSERT_TRUE(input.saveSettings(cInputMgr::kDefault));
    ASSERT_EQ(input.loadSettings(cInputMgr::kDefault), 0);
    EXPECT_EQ(input.settingsName, "") << "nothing is saved over the defaults";
}

TEST_F(Settings, LoadingReachesTheParts) {
    input.bindings.settings.options = 0;
    input.bindings.settings.musicVolume = 0.25f;
    input.bindings.settings.crosshairType = 2;
    ASSERT_TRUE(input.saveSettings("plain"));
    input.bindings.settings = cInputSettings();
    input.applySettings();
    EXPECT_TRUE(cObjectMgr::instance().shadowsEnabled);
    ASSERT_EQ(input.loadSettings("plain"), 0);
    EXPECT_FALSE(cObjectMgr::instance().shadowsEnabled);
    EXPECT_FALSE(cWorld::instance().hud.crosshairOn);
    EXPECT_FALSE(cWorld::instance().hud.statsFading);
    EXPECT_EQ(cWorld::instance().hud.crosshairStyle, 2);
    EXPECT_FLOAT_EQ(cWorld::instance().playerMusicVolume, 0.25f);
}

TEST_F(Settings, AStartTakesTheLatestElseTheDefaults) {
    EXPECT_TRUE(cObjectMgr::instance().shadowsEnabled) << "the built-in ones are applied as well";
    input.bindings.settings.walkIsDefault = 1;
    ASSERT_TRUE(input.saveSettings(cInputMgr::kDefault));
    cInputMgr::destroy();
    EXPECT_TRUE(cInputMgr::instance().isWalkDefault());
    EXPECT_EQ(cInputMgr::instance().settingsName, "");
    cInputMgr::instance().setWalkDefault(false);
    cInputMgr::destroy(); // saves the latest
    EXPECT_FALSE(cInputMgr::instance().isWalkDefault());
    EXPECT_EQ(cInputMgr::instance().findSettings(cInputMgr::kLatest), 1);
    cInputMgr::instance().saveOnExit = false;
}

TEST_F(Settings, OfADamagedFileEveryWholeEntryIsKept) {
    const std::vector<std::string> names{"one", "two", "three"};
    for (size_t i = 0; i < names.size(); ++i) {
        input.bindings.settings.repeatIntervals.fill(static_cast<int32_t>(i + 1));
        ASSERT_TRUE(input.saveSettings(names[i]));
    }
    const std::string good = t.game.read("settings.cfl");
    const size_t firstRecord = 4 + names.size() * 10;
    const auto expectKept = [&](size_t kept, const std::string& damaged) {
        t.game.write("settings.cfl", damaged);
        TempGame::clearErrors();
        ASSERT_EQ(
            input.listSettings(),
            std::vector<std::string>(names.begin(), std::next(names.begin(), static_cast<ptrdiff_t>(kept))));
        const std::string row =
            "settings.cfl is damaged; " + std::to_string(kept) + " entries of it can be read";
        EXPECT_EQ(TempGame::errorCount(row), 1);
        for (size_t i = 0; i < kept; ++i) {
            ASSERT_EQ(input.loadSettings(names[i]), 0);
            EXPECT_EQ(input.bindings.settings.repeatIntervals[7], static_cast<int32_t>(i + 1));
        }
    };
    for (size_t size = 0; size < good.size(); ++size) {
        SCOPED_TRACE(size);
        expectKept(size < firstRecord ? 0 : (size - firstRecord) / 214, good.substr(0, size));
    }
    const std::string cut = good.substr(0, good.size() - 1);
    for (const std::string& behind : {std::string(5, 'x'), std::string(300, 'x'), std::string(224, '\0')})
        expectKept(3, good + behind);
    std::vector<std::string> counts{"\xFF\xFF\xFF\xFF", "\xFF\xFF\xFF\x7F", std::string(4, '\0')};
    for (size_t bit = 0; bit < 32; ++bit) {
        counts.push_back(good.substr(0, 4));
        char& byte = counts.back()[bit / 8];
        byte = static_cast<char>(byte ^ 1 << bit % 8);
    }
    for (const std::string& count : counts) {
        expectKept(3, count + good.substr(4));
        expectKept(3, count + good.substr(4) + "extra");
        expectKept(2, count + cut.substr(4));
    }
    std::string noisy = cut;
    noisy[4 + 5] = 'x'; // behind the terminator of "one"
    expectKept(2, noisy);
    expectKept(0, std::string(4 + 3 * 224 + 1, '\0'));
    expectKept(0, std::string(1000, 'a'));
    std::string odd = good;
    for (size_t i = 0; i < names.size(); ++i) odd[firstRecord + i * 214 + 3] = 9; // keys that no keyboard has
    expectKept(3, odd + "extra");
    EXPECT_TRUE(input.saveSettings("three"));
    EXPECT_EQ(input.listSettings(), names);

    TempGame::clearErrors();
    t.game.write("settings.cfl", cut);
    EXPECT_TRUE(input.saveSettings("one"));
    EXPECT_EQ(t.game.read("settings.cfl.damaged"), cut) << "kept for whoever can mend it";
    EXPECT_EQ(TempGame::errorCount("settings.cfl was damaged: it is kept as settings.cfl.damaged"), 1);
    EXPECT_EQ(input.listSettings(), (std::vector<std::string>{"one", "two"}));
}

TEST_F(Settings, ReplacingAnEntryTouchesNoOther) {
    ASSERT_TRUE(input.saveSettings("one"));
    ASSERT_TRUE(input.saveSettings("two"));
    std::string file = t.game.read("settings.cfl");
    file[4 + 10 + 5] = 'x';     // behind the terminator of "two"
    file[4 + 20 + 214 + 3] = 9; // a key code of "two" that no keyboard has
    t.game.write("settings.cfl", file);
    ASSERT_TRUE(input.saveSettings("one"));
    EXPECT_EQ(t.game.read("settings.cfl"), file);
}

TEST_F(Settings, WildValuesOfAFileAreMadeSafe) {
    ASSERT_TRUE(input.saveSettings("one"));
    const std::string good = t.game.read("settings.cfl");
    const platform::Bytes bytes(good.begin(), good.end());
    readDamaged(bytes, 300, [&](const platform::Bytes& damaged) {
        t.game.write("settings.cfl", {damaged.begin(), damaged.end()});
        if (input.loadSettings("one") != 0) return;
        const cInputSettings& s = input.bindings.settings;
        for (size_t i = 0; i < kCommandCount; ++i) {
            EXPECT_TRUE(s.keysThirdPerson[i] >= 0 && s.keysThirdPerson[i] < kKeyCount);
            EXPECT_TRUE(s.keysFirstPerson[i] >= 0 && s.keysFirstPerson[i] < kKeyCount);
        }
        EXPECT_LE(std::fabs(s.sensitivity), 1);
        for (const float volume : {s.soundVolume, s.musicVolume}) EXPECT_TRUE(volume >= 0 && volume <= 1);
        for (int command = 0; command < 32; ++command) input.bindings.isCommandTriggered(command);
    });
}

TEST_F(Settings, VolumesStayWithinTheirRange) {
    struct {
        float saved, sound, music;
    } const kRows[] = {{-0.5f, 0, 0}, {1.5f, 1, 1}, {0.25f, 0.25f, 0.25f}, {NAN, 0.8f, 0.6f}};
    for (const auto& row : kRows) {
        input.bindings.settings.soundVolume = input.bindings.settings.musicVolume = row.saved;
        ASSERT_TRUE(input.saveSettings("one"));
        ASSERT_EQ(input.loadSettings("one"), 0);
        EXPECT_FLOAT_EQ(input.getSoundVolume(), row.sound) << row.saved;
        EXPECT_FLOAT_EQ(input.getMusicVolume(), row.music) << row.saved;
    }
}
