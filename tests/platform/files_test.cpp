#include "platform/files.h"

#include "support/temp_game.h"

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
    ASSERT_TRUE(platform::writeFile("save\\GAME.CFL", {'n', 'e', 'w'}));
    EXPECT_EQ(get(file), "new");
    EXPECT_EQ(std::distance(fs::directory_iterator(file.parent_path()), {}), 1)
        << "nothing is left beside it";
    ASSERT_TRUE(platform::writeFile("deep\\er\\file", {}));
    EXPECT_TRUE(fs::exists(base / "deep" / "er" / "file"));
    EXPECT_FALSE(platform::writeFile("save", {'n'})) << "a folder of that name";
    EXPECT_EQ(TempGame::errorCount("The file \"save\" cannot be written"), 1);
    EXPECT_EQ(get(file), "new");
    EXPECT_FALSE(fs::exists(base / "save.new"));
}
