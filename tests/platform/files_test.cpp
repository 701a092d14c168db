#include "platform/files.h"

#include "support/temp_game.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>

namespace {
namespace fs = std::filesystem;

void put(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << text;
}

std::string get(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

/// A zip archive with one stored file, which may promise another size than it has.
std::string zipOf(const std::string& name, const std::string& content, uint32_t promised = 0) {
    const auto number = [](uint32_t v, int bytes) {
        std::string out;
        for (int i = 0; i < bytes; ++i) out += static_cast<char>(v >> 8 * i);
        return out;
    };
    const auto size = promised ? promised : static_cast<uint32_t>(content.size());
    const std::string shared = number(20, 2) + number(0, 2) + number(0, 2) + number(0, 2) + number(0x21, 2) +
                               number(0, 4) + number(size, 4) + number(size, 4) +
                               number(static_cast<uint32_t>(name.size()), 2) + number(0, 2);
    const std::string local = "PK\3\4" + shared + name + content;
    const std::string central = "PK\1\2" + number(20, 2) + shared + number(0, 2) + number(0, 2) +
                                number(0, 2) + number(0, 4) + number(0, 4) + name;
    return local + central + "PK\5\6" + number(0, 4) + number(1, 2) + number(1, 2) +
           number(static_cast<uint32_t>(central.size()), 4) + number(static_cast<uint32_t>(local.size()), 4) +
           number(0, 2);
}
} // namespace

TEST(Files, NamesComeWithAnySeparatorAndCase) {
    TempGame game;
    put(fs::path(game.dir()) / "Sounds" / "Hopp.WAV", "x");
    for (const char* name : {"Sounds/Hopp.WAV", "sounds\\hopp.wav", "SOUNDS/HOPP.WAV", "./sounds//hopp.wav",
                             "img\\..\\sounds\\hopp.wav"}) {
        EXPECT_EQ(game.read(name), "x") << name;
        EXPECT_TRUE(platform::fileExists(name)) << name;
    }
    for (const char* name : {"sounds", "sounds\\hopp", "", "sounds\\hopp.wav\\x"}) {
        EXPECT_FALSE(platform::fileExists(name)) << name;
    }
    EXPECT_TRUE(TempGame::errors().empty());
}

TEST(Files, NamesThatLeaveTheDataAreRefusedWithARow) {
    TempGame game;
    put(fs::path(game.dir()) / "a.txt", "x");
    const std::string climb = "../" + fs::path(game.dir()).filename().string() + "/a.txt";
    for (const std::string& name :
         {climb, game.dir() + "/a.txt", std::string("\\a.txt"), std::string("c:\\a.txt"),
          std::string("img/../../a.txt"), std::string("..")}) {
        TempGame::clearErrors();
        platform::Bytes bytes{1};
        EXPECT_FALSE(platform::readFile(name, bytes)) << name;
        EXPECT_TRUE(bytes.empty());
        EXPECT_EQ(TempGame::errorCount("The file name \"" + name + "\" leads out of the game data"), 1)
            << name;
        EXPECT_FALSE(platform::fileExists(name)) << name;
        EXPECT_FALSE(platform::writeFile(name, {'y'})) << name;
        EXPECT_EQ(TempGame::errorCount("The file \"" + name + "\" cannot be written"), 1) << name;
    }
    EXPECT_EQ(get(fs::path(game.dir()) / "a.txt"), "x");
}

TEST(Files, TheUserDirectoryComesBeforeTheDataInTheirOrder) {
    TempGame game;
    const fs::path base = game.dir();
    put(base / "zip" / "data.zip", zipOf("Img/Only.txt", "from the archive"));
    put(base / "one" / "both.txt", "one");
    put(base / "one" / "all.txt", "one");
    put(base / "two" / "BOTH.TXT", "two");
    put(base / "two" / "all.txt", "two");
    put(base / "user" / "ALL.txt", "user");
    std::string problem;
    ASSERT_TRUE(platform::openFileSystem(
        "test",
        {{(base / "one").string(), (base / "two").string(), (base / "zip" / "data.zip").string()},
         (base / "user").string()},
        problem))
        << problem;
    EXPECT_EQ(game.read("all.txt"), "user");
    EXPECT_EQ(game.read("BOTH.TXT"), "one") << "the first root wins whatever the case";
    EXPECT_EQ(game.read("img\\only.txt"), "from the archive");
    EXPECT_FALSE(
        platform::openFileSystem("test", {{(base / "none").string()}, (base / "user").string()}, problem));
    EXPECT_EQ(problem, "Cannot open the directory or archive \"" + (base / "none").string() + "\".");
}

TEST(Files, AnArchiveThatPromisesMoreThanItHoldsTakesNoMemory) {
    TempGame game;
    const fs::path zip = fs::path(game.dir()) / "zip" / "data.zip";
    put(zip, zipOf("big.txt", "little", 900u << 20));
    std::string problem;
    if (!platform::openFileSystem("test", {{zip.string()}, game.dir()}, problem))
        return; // refused as a whole
    platform::Bytes bytes;
    EXPECT_FALSE(platform::readFile("big.txt", bytes));
    EXPECT_TRUE(bytes.empty());
    EXPECT_LE(bytes.capacity(), size_t{4} << 20);
}

TEST(Files, WritingReplacesTheWholeFileUnderTheNameThatItHasOrLeavesTheOldOne) {
    TempGame game;
    const fs::path base = game.dir(), file = base / "Save" / "Game.cfl";
    put(file, "a long old content");
    for (const char* name : {"Game.cfl.12.new", "Game.cfl.7-1.new", "Game.cfl.mine.new", "Game.cfl.13.new"}) {
        put(file.parent_path() / name, "unfinished");
        if (std::string(name) != "Game.cfl.13.new")
            fs::last_write_time(file.parent_path() / name,
                                fs::file_time_type::clock::now() - std::chrono::hours(2));
    }
    ASSERT_TRUE(platform::writeFile("save\\GAME.CFL", {'n', 'e', 'w'}));
    EXPECT_EQ(get(file), "new");
    EXPECT_TRUE(fs::exists(file.parent_path() / "Game.cfl.mine.new")) << "nothing of ours";
    EXPECT_TRUE(fs::exists(file.parent_path() / "Game.cfl.13.new")) << "another program may be writing it";
    EXPECT_EQ(std::distance(fs::directory_iterator(file.parent_path()), {}), 3)
        << "nothing else is left beside it";
    ASSERT_TRUE(platform::writeFile("deep\\er\\file", {}));
    EXPECT_TRUE(fs::exists(base / "deep" / "er" / "file"));
    EXPECT_FALSE(platform::writeFile("save", {'n'})) << "a folder of that name";
    EXPECT_EQ(TempGame::errorCount("The file \"save\" cannot be written"), 1);
    EXPECT_EQ(get(file), "new");
    EXPECT_EQ(std::distance(fs::directory_iterator(base), {}), 3) << "save, deep and the log";
}

TEST(Files, LinksCountAsWhatTheyLeadTo) {
    TempGame game;
    const fs::path base = game.dir(), away = base / "away";
    put(away / "Store" / "Hopp.WAV", "sound");
    put(away / "one.txt", "one");
    fs::create_directories(base / "data");
    fs::create_directory_symlink(away / "Store", base / "data" / "Sounds");
    fs::create_symlink("../away/one.txt", base / "data" / "Relative.txt");
    fs::create_symlink("none", base / "data" / "dangling.txt");
    fs::create_symlink(away, base / "data" / "folder.txt");
    fs::create_symlink("/dev/zero", base / "data" / "endless.txt");
    std::string problem;
    ASSERT_TRUE(
        platform::openFileSystem("test", {{(base / "data").string()}, (base / "user").string()}, problem));
    EXPECT_EQ(game.read("sounds\\hopp.wav"), "sound");
    EXPECT_EQ(game.read("relative.txt"), "one");
    EXPECT_FALSE(platform::fileExists("sounds\\..\\one.txt"))
        << "a name stays in the data, whatever the links";
    for (const char* name : {"dangling.txt", "folder.txt", "endless.txt"})
        EXPECT_FALSE(platform::fileExists(name)) << name;
}

TEST(Files, TheTargetOfALinkIsWrittenAndTheLinkStays) {
    TempGame game;
    const fs::path base = game.dir(), away = base / "away", user = base / "user";
    put(away / "old.cfl", "old");
    fs::create_directories(user);
    std::string problem;
    ASSERT_TRUE(platform::openFileSystem("test", {{}, user.string()}, problem));
    struct {
        const char *name, *target, *holds, *written; ///< `written`: where, from base; null: refused
    } const kRows[] = {{"absolute.cfl", nullptr, "old", "away/old.cfl"},
                       {"relative.cfl", "../away/old.cfl", "new", "away/old.cfl"},
                       {"chain.cfl", "relative.cfl", "new", "away/old.cfl"},
                       {"dangling.cfl", "../away/fresh.cfl", "", "away/fresh.cfl"},
                       {"unmounted.cfl", "../disk/game.cfl", "", nullptr},
                       {"read_only.cfl", "/proc/self/game.cfl", "", nullptr},
                       {"device.cfl", "/dev/full", "", nullptr},
                       {"circle.cfl", "circle.cfl", "", nullptr}};
    for (const auto& row : kRows) {
        const fs::path link = user / row.name, target = row.target ? fs::path(row.target) : away / "old.cfl";
        fs::create_symlink(target, link);
        EXPECT_EQ(game.read(row.name), row.holds) << row.name;
        TempGame::clearErrors();
        EXPECT_EQ(platform::writeFile(row.name, {'n', 'e', 'w'}), row.written != nullptr) << row.name;
        EXPECT_EQ(TempGame::errors().size(), row.written ? 0u : 1u) << row.name;
        EXPECT_EQ(fs::read_symlink(link), target) << row.name;
        if (row.written) {
            EXPECT_EQ(get(base / row.written), "new") << row.name;
        }
    }
    EXPECT_FALSE(fs::exists(base / "disk")) << "a disk that is not there is not made up";
    EXPECT_EQ(std::distance(fs::directory_iterator(away), {}), 2) << "nothing is left beside the target";
}

TEST(Files, WhatCannotBeLookedAtIsNotTakenFromTheData) {
    TempGame game;
    const fs::path base = game.dir();
    put(base / "data" / "settings.cfl", "shipped");
    fs::create_directories(base / "user");
    fs::create_symlink("settings.cfl", base / "user" / "settings.cfl"); // every look at it fails
    std::string problem;
    ASSERT_TRUE(
        platform::openFileSystem("test", {{(base / "data").string()}, (base / "user").string()}, problem));
    EXPECT_TRUE(platform::fileExists("settings.cfl"));
    platform::Bytes bytes;
    EXPECT_FALSE(platform::readFile("settings.cfl", bytes));
    fs::remove(base / "user" / "settings.cfl");
    EXPECT_EQ(game.read("settings.cfl"), "shipped");
}
