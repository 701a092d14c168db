// players.cfl: its bytes, its damage, and what a load brings back.

#include "game/inventory.h"
#include "support/damage.h"
#include "support/test_world.h"
#include "ui/command_mgr.h"
#include "ui/input_mgr.h"
#include "world/players_file.h"

#include <filesystem>
#include <functional>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {
constexpr const char* kFile = "players.cfl";
constexpr const char* kItems =
    "<items><i name=\"nut\" allow_grouping=\"1\"><image column=\"0\" row=\"0\"/></i>"
    "<i name=\"key\"><image column=\"0\" row=\"0\"/></i></items>";

class SavedHeroes : public ::testing::Test {
protected:
    SavedHeroes() {
        t.game.write("objects.xml", kItems);
        cItemDefs::instance().loadItemDefs();
        t.writeCharacter("maincharfinal\\mainchar_noweapon");
    }
    /// Saves a hero who carries `nuts`.
    void save(const std::string& name, int nuts = 0, const std::string& level = "isle.xml",
              const std::string& spawn = "hut") {
        world.heroName = name;
        world.levelFile = level;
        world.spawnPoint = spawn;
        world.inventory.clear();
        if (nuts > 0) world.inventory.give(0, nuts);
        EXPECT_TRUE(world.saveGame());
    }
    std::string file() const { return t.game.read(kFile); }
    void put(const std::string& bytes) const { t.game.write(kFile, bytes); }
    std::vector<std::string> names() const { return world.listSavedGames(); }

    TestWorld t;
    cWorld& world = cWorld::instance();
    cInputMgr& input = cInputMgr::instance();
};

std::string bytesOf(std::initializer_list<int> values) {
    std::string bytes;
    for (const int v : values) bytes += static_cast<char>(v);
    return bytes;
}
} // namespace

TEST_F(SavedHeroes, TheFileIsLaidOutByteForByte) {
    save("Ada", 3);
    world.inventory.give(1, 1);
    ASSERT_TRUE(world.saveGame());
    const std::string texts = std::string("Ada\0hut\0isle.xml\0\xA3LATEST\0", 4 + 4 + 9 + 8);
    const int length = 24 + 3 + 3 + 8 + 7 + 12;
    // The items' sum is 1·1 + (1·1)/2; the texts' 'l' − 93·12 + 'u'·4.
    const int check = 'l' - 93 * 12 + 'u' * 4;
    EXPECT_EQ(file(), bytesOf({1, 0, 0, 0}) + std::string("Ada\0", 4) + bytesOf({length, 0, 0, 0}) +
                          bytesOf({2, 0, 0, 0, 0, 0, 0, 0, 3, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0, 1, 0, 0, 0}) +
                          texts +
                          bytesOf({check & 255, check >> 8 & 255, check >> 16 & 255, check >> 24 & 255}));
    EXPECT_EQ(input.findSettings(cInputMgr::kLatest), 0) << "the settings in force are stored with the hero";
    const cCheckpoint checkpoint{"", "x", "ab", "\x80"};
    EXPECT_EQ(checkpoint.check(), -128 * 12) << "nothing behind a text's end counts";
}

TEST_F(SavedHeroes, HeroesAreReplacedAppendedAndDropped) {
    save("Ada", 1);
    save("Bo", 2);
    const std::string two = file();
    save("Ada", 5);
    EXPECT_EQ(file().size(), two.size()) << "replaced";
    EXPECT_EQ(names(), (std::vector<std::string>{"Ada", "Bo"}));
    save("Ada", 1);
    EXPECT_EQ(file(), two) << "the same game gives the same bytes";
    save("Nowhere", 1, "isle.xml", "");
    EXPECT_EQ(names().size(), 3u);
    save("Cy", 3);
    TempGame::clearErrors();
    world.heroName = std::string(128, 'x');
    EXPECT_FALSE(world.saveGame());
    EXPECT_EQ(TempGame::errors().size(), 1u);
    EXPECT_EQ(names(), (std::vector<std::string>{"Ada", "Bo", "Cy"}));
    EXPECT_EQ(world.findSavedGame("Cy"), 2);
    EXPECT_EQ(world.findSavedGame("cy"), -1);
}

TEST_F(SavedHeroes, ALoadBringsEverythingBack) {
    t.game.write("isle.xml", "<level name=\"l\">" + spawnElement() + "</level>");
    input.bindings.settings.walkIsDefault = 1;
    ASSERT_TRUE(input.saveSettings("calm"));
    save("Ada", 4);
    ASSERT_TRUE(input.saveSettings("other"));
    save("Bo", 1);
    input.bindings.settings.walkIsDefault = 0;
    world.health = 3;
    EXPECT_EQ(world.loadSavedGame("Cy"), -1);
    EXPECT_EQ(world.heroName, "Bo") << "an unknown name changes nothing";
    ASSERT_EQ(world.loadSavedGame("Ada"), 0);
    EXPECT_EQ(world.heroName, "Ada");
    EXPECT_EQ(world.inventory.countOf(0), 4);
    EXPECT_EQ(input.settingsName, "calm");
    EXPECT_TRUE(input.isWalkDefault());
    EXPECT_EQ(world.health, 100);
    EXPECT_EQ(world.hud.statsTimer, 200);
    ASSERT_NE(cObjectMgr::instance().hero(), nullptr);
    EXPECT_EQ(cObjectMgr::instance().hero()->getPosition(), cVector3(0, 1.3f, 0));
    EXPECT_EQ(t.state, STATE_GAME);
    const std::string before = file();
    ASSERT_TRUE(world.saveGame());
    EXPECT_EQ(file(), before) << "save, load, save";
}

TEST_F(SavedHeroes, WhatIsChosenInPlayOutlastsADeathAndTheLoadOfTheHero) {
    t.game.write("isle.xml", "<level name=\"l\">" + spawnElement() + "</level>");
    const auto press = [&](bool walks) {
        input.editSettings = input.bindings.settings;
        input.editSettings.walkIsDefault = walks;
        EXPECT_TRUE(input.acceptEdited());
    };
    const auto say = [&](const std::string& line) { cCommandMgr::instance().execute(line, input.console); };
    const auto store = [&](const char* name, bool walks) {
        input.setWalkDefault(walks);
        ASSERT_TRUE(input.saveSettings(name));
    };
    const std::string loadDefaults = std::string("load_config ") + cInputMgr::kDefault;
    struct {
        const char* ofHero;
        std::function<void()> choose; ///< ends with walking, begins with running
        const char* later;            ///< the hero's entry
        bool lasts = true;
    } const kRows[] = {
        {"calm", [&] { press(true); }, "calm"},
        {cInputMgr::kLatest, [&] { press(true); }, cInputMgr::kLatest},
        {"", [&] { press(true); }, cInputMgr::kLatest},
        {cInputMgr::kDefault, [&] { press(true); }, cInputMgr::kLatest},
        {"calm", [&] { say("load_config walks"); }, "walks"},
        {"calm", [&] { say(loadDefaults); }, cInputMgr::kLatest},
        {"calm", [&] { input.setWalkDefault(true), say("save_config mine"); }, "mine"},
        {"calm", [&] { say("default_walk"); }, "calm", false},
    };
    store("walks", true);
    store(cInputMgr::kDefault, true);
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.later);
        store("calm", false);
        store(cInputMgr::kLatest, false);
        input.settingsName = "";
        save("Bo", 2);
        save("Ada", 3);
        const std::string ofHero = *row.ofHero ? row.ofHero : cInputMgr::kLatest;
        cPlayersFile file = cPlayersFile::read();
        ASSERT_TRUE(file.setSettings("Ada", ofHero));
        ASSERT_TRUE(file.write());
        world.heroSettings = row.ofHero;
        row.choose();
        EXPECT_EQ(world.heroSettings, row.later);
        world.returnToCheckpoint();
        EXPECT_EQ(input.isWalkDefault(), row.lasts) << "a death";
        input.setWalkDefault(false);
        ASSERT_EQ(world.loadSavedGame("Ada"), 0);
        EXPECT_EQ(input.isWalkDefault(), row.lasts);
        EXPECT_EQ(world.inventory.countOf(0), 3) << "the rest of the checkpoint stays";
        ASSERT_EQ(world.loadSavedGame("Bo"), 0);
        ASSERT_TRUE(world.saveGame());
        EXPECT_EQ(world.heroSettings, cInputMgr::kLatest) << "nobody else's settings";
        ASSERT_EQ(input.loadSettings(cInputMgr::kDefault), 0);
        EXPECT_TRUE(input.isWalkDefault()) << "the defaults stay";
    }
    world.heroName = cWorld::kUnloadedHero;
    press(true);
    input.setWalkDefault(false);
    ASSERT_EQ(input.loadSettings(cInputMgr::kLatest), 0);
    EXPECT_TRUE(input.isWalkDefault()) << "for the next start";
}

TEST_F(SavedHeroes, SettingsThatCouldNotBeReadAreNotReplaced) {
    t.game.write("isle.xml", "<level name=\"l\">" + spawnElement() + "</level>");
    input.setWalkDefault(true);
    for (const char* name : {"calm", cInputMgr::kLatest}) {
        ASSERT_TRUE(input.saveSettings(name));
        save("Ada");
        world.heroSettings = name;
        cPlayersFile file = cPlayersFile::read();
        ASSERT_TRUE(file.setSettings("Ada", name));
        ASSERT_TRUE(file.write());
        input.settingsName = "other"; // of the hero before
        const std::string good = t.game.read("settings.cfl");
        const std::filesystem::path path = t.game.dir() + "/settings.cfl";
        std::filesystem::remove(path);
        std::filesystem::create_symlink("settings.cfl", path); // every look at it fails
        TempGame::clearErrors();
        ASSERT_EQ(world.loadSavedGame("Ada"), 0);
        EXPECT_EQ(TempGame::errorCount("settings.cfl is there but cannot be read"), 1);
        std::filesystem::remove(path);
        t.game.write("settings.cfl", good);
        input.setWalkDefault(false);
        input.editSettings = input.bindings.settings;
        EXPECT_FALSE(input.acceptEdited()) << "and the menu says so";
        EXPECT_TRUE(world.saveGame());
        EXPECT_EQ(t.game.read("settings.cfl"), good) << name;
        EXPECT_EQ(world.heroSettings, name) << "the hero keeps his entry";
        EXPECT_TRUE(input.saveSettings(name)) << "who names it may replace it";
        EXPECT_TRUE(input.acceptEdited());
    }
}

TEST_F(SavedHeroes, ACheckpointThatLeadsNowhereLeadsToTheMenu) {
    t.game.write("isle.xml", "<level name=\"l\">" + spawnElement() + "</level>");
    t.game.write("bad.xml", "<level><object");
    struct {
        const char *level, *spawn;
        size_t flipped; ///< from the record's end: a character of the level's name
    } const kRows[] = {{"isle.xml", "nowhere", 0},
                       {"none.xml", "hut", 0},
                       {"bad.xml", "hut", 0},
                       {"end", "end", 0},
                       {"isle.xml", "hut", 4 + 8 + 9 - 2}};
    for (const auto& row : kRows) {
        save("Ada", 1, row.level, row.spawn);
        std::string bytes = file();
        if (row.flipped > 0) bytes[bytes.size() - row.flipped] ^= 1;
        put(bytes);
        t.state = STATE_GAME;
        world.inventory.toggle();
        world.drawOverlays(); // the inventory slides in, and shows the panel
        ASSERT_EQ(world.loadSavedGame("Ada"), 0) << row.level;
        world.drawOverlays();
        EXPECT_EQ(world.hud.statsTimer, 0) << "the panel would lie behind the notice";
        EXPECT_EQ(t.state, STATE_MENU) << row.level;
        EXPECT_TRUE(input.menu.isVisible());
        EXPECT_FALSE(world.isGameLoaded());
        EXPECT_EQ(cObjectMgr::instance().count(), 0u);
        t.frame();
    }
}

TEST_F(SavedHeroes, ALevelWithoutSceneryIsEntered) {
    t.game.write("isle.xml", "<level name=\"l\"><files appearance=\"none.oct\" collision=\"none.oct\" />" +
                                 spawnElement() + "</level>");
    save("Ada", 1);
    ASSERT_EQ(world.loadSavedGame("Ada"), 0);
    EXPECT_TRUE(world.isGameLoaded());
    EXPECT_NE(cObjectMgr::instance().hero(), nullptr);
    EXPECT_EQ(TempGame::errorCount("Failed to open scenery file none.oct"), 1);
}

TEST_F(SavedHeroes, OfADamagedFileEveryWholeGameIsKept) {
    const std::vector<std::string> all{"Ada", "Bo", "Cy"};
    std::vector<size_t> ends; // of the records, when all three stand in the file
    for (const std::string& name : all) save(name, 2);
    const std::string good = file();
    size_t end = 4 + 4 + 3 + 3;
    for (size_t i = 0; i < all.size(); ++i) ends.push_back(end += static_cast<unsigned char>(good[end]));
    ASSERT_EQ(ends.back(), good.size());
    for (size_t size = 0; size < good.size(); ++size) {
        put(good.substr(0, size));
        TempGame::clearErrors();
        size_t whole = 0;
        while (ends[whole] <= size) ++whole;
        ASSERT_EQ(names(), std::vector<std::string>(all.begin(), all.begin() + static_cast<int>(whole)))
            << size;
        EXPECT_EQ(TempGame::errors().size(), 1u) << size;
    }
    for (const char* count :
         {"\xFF\xFF\xFF\xFF", "\xFF\xFF\xFF\x7F", "\x04\0\0\0", "\x02\0\0\0", "\0\0\0\0"}) {
        put(std::string(count, 4) + good.substr(4));
        EXPECT_EQ(names(), all) << "no count hides a game";
    }
    std::string second = good;
    second[ends[0]] = 0;      // its length
    second[ends[1] - 1] ^= 1; // and its check
    put(second);
    EXPECT_EQ(names(), (std::vector<std::string>{"Ada", "Cy"})) << "those after a broken one are found again";
    save("Di", 1);
    EXPECT_EQ(t.game.read("players.cfl.damaged"), second);
    EXPECT_EQ(TempGame::errorCount("players.cfl was damaged: it is kept as players.cfl.damaged"), 1);
    EXPECT_EQ(names(), (std::vector<std::string>{"Ada", "Cy", "Di"}));
}

TEST_F(SavedHeroes, OneDamagedPartCostsNoHero) {
    const std::vector<std::string> all{"Ada", "Bo", "Cy"};
    std::vector<size_t> starts;
    for (const std::string& name : all) save(name, 2);
    const std::string good = file();
    size_t at = 4 + 4 + 3 + 3;
    for (size_t i = 0; i < all.size(); at += static_cast<unsigned char>(good[at]), ++i) starts.push_back(at);
    for (size_t i = 0; i < all.size(); ++i) {
        for (int bit = 0; bit < 32; ++bit) {
            std::string bytes = good;
            char& byte = bytes[starts[i] + static_cast<size_t>(bit) / 8];
            byte = static_cast<char>(byte ^ 1 << bit % 8);
            put(bytes);
            ASSERT_EQ(names(), all) << "length of " << all[i] << ", bit " << bit;
        }
    }
    std::string bytes = good;
    bytes[starts[2]] ^= 1;
    put(bytes);
    save("Ada", 2);
    EXPECT_EQ(file(), good) << "the length is put right";

    bytes[starts[0] + 4 + 4 + 8] ^= 1;                 // the sum of what Ada carries
    bytes[starts[1] + 4 + 4 + 8 + 4 + 3 + 4 + 2] ^= 1; // the letter of Bo's level that his check counts
    put(bytes);
    save("Di");
    EXPECT_EQ(names(), (std::vector<std::string>{"Ada", "Bo", "Cy", "Di"}));
    t.game.write("isle.xml", "<level name=\"l\">" + spawnElement() + "</level>");
    ASSERT_EQ(world.loadSavedGame("Bo"), 0);
    EXPECT_FALSE(world.isGameLoaded()) << "as when his record alone is damaged";
    ASSERT_EQ(world.loadSavedGame("Ada"), 0);
    EXPECT_TRUE(world.isGameLoaded());
    EXPECT_TRUE(world.inventory.entries().empty());
}

TEST_F(SavedHeroes, ProgramsThatSaveAtTheSameTimeLoseNoHero) {
    constexpr int kPrograms = 3, kSaves = 15;
    namespace fs = std::filesystem;
    const auto name = [](int program, int i) { return std::to_string(program) + "-" + std::to_string(i); };
    const std::function<void(int, int)> kWays[] = {
        [&](int program, int i) {
            input.settingsName = "none of ten"; // too long to be saved: only players.cfl is written
            save(name(program, i));
        },
        [&](int program, int i) { EXPECT_TRUE(input.saveSettings(name(program, i))); }};
    // One user directory; one each, whose files are links to the same ones; a lock file that cannot be
    // written.
    for (const char* where : {"one", "linked", "locked by another"}) {
        const fs::path store = fs::path(t.game.dir()) / where;
        const auto folder = [&](int program) {
            return std::string(where) == "linked" ? store / std::to_string(program) : store;
        };
        for (int program = 0; program < kPrograms; ++program) {
            fs::create_directories(folder(program));
            for (const char* file : {"players.cfl", "settings.cfl"}) {
                if (folder(program) != store) fs::create_symlink(store / file, folder(program) / file);
            }
        }
        if (std::string(where) == "locked by another") fs::create_directory(store / "quorvane.lock");
        std::string problem;
        for (const auto& saveOne : kWays) {
            int start[2];
            ASSERT_EQ(pipe(start), 0);
            std::vector<pid_t> programs;
            for (int program = 0; program < kPrograms; ++program) {
                programs.push_back(fork());
                if (programs.back() != 0) continue;
                close(start[1]);
                EXPECT_TRUE(platform::openFileSystem("test", {{}, folder(program).string()}, problem));
                char byte;
                static_cast<void>(read(start[0], &byte, 1)); // until the test closes it
                for (int i = 0; i < kSaves; ++i) saveOne(program, i);
                _exit(HasFailure());
            }
            close(start[0]);
            close(start[1]);
            for (const pid_t program : programs) {
                int status = -1;
                EXPECT_EQ(waitpid(program, &status, 0), program);
                EXPECT_EQ(status, 0);
            }
        }
        ASSERT_TRUE(platform::openFileSystem("test", {{}, store.string()}, problem));
        EXPECT_EQ(names().size(), size_t{kPrograms * kSaves}) << where;
        EXPECT_EQ(input.listSettings().size(), size_t{kPrograms * kSaves}) << where;
    }
}

TEST_F(SavedHeroes, WhereNothingCanBeLockedOneRowSaysSo) {
    std::filesystem::create_symlink("none/there", t.game.dir() + "/quorvane.lock");
    TempGame::clearErrors();
    for (const char* name : {"Ada", "Bo"}) save(name);
    EXPECT_EQ(names().size(), 2u);
    EXPECT_EQ(TempGame::errors(),
              std::vector<std::string>{t.game.dir() + "/quorvane.lock cannot be locked: what two programs "
                                                      "save there at a time may be lost"});
}

TEST_F(SavedHeroes, AFullDiskLeavesTheOldFileAndTellsThePlayer) {
    save("Ada", 1);
    const std::string before = file();
    input.settingsName = "none of ten"; // too long to be saved: only players.cfl is written
    TempGame::clearErrors();
    {
        const FullDisk full(10);
        world.heroName = "Bo";
        EXPECT_FALSE(world.saveGame());
    }
    EXPECT_EQ(TempGame::errors(), std::vector<std::string>{"The file \"players.cfl\" cannot be written"});
    EXPECT_EQ(file(), before);
    ASSERT_FALSE(world.hud.messages.empty());
    EXPECT_EQ(world.hud.messages.back().text, "The game could not be saved. The terminal says why.");
}

TEST_F(SavedHeroes, WithoutTheDiskTheJourneyGoesOn) {
    t.game.write("isle.xml", "<level name=\"l\">" + spawnElement() + "</level>");
    t.game.write("next.xml", "<level name=\"n\">" + spawnElement() + "</level>");
    save("Ada", 2);
    world.returnToCheckpoint();
    ASSERT_EQ(world.inventory.countOf(0), 2);
    world.inventory.give(0, 3);
    {
        const FullDisk full(10);
        world.requestLevelChange("next.xml", "hut");
    }
    world.health = 7;
    world.returnToCheckpoint();
    EXPECT_EQ(world.levelFile, "next.xml") << "not back to the checkpoint that the file still holds";
    EXPECT_EQ(world.inventory.countOf(0), 5);
    EXPECT_EQ(world.health, 100);
    EXPECT_NE(cObjectMgr::instance().hero(), nullptr);
}
