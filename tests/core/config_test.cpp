#include "core/config_mgr.h"

#include "support/temp_game.h"

#include <gtest/gtest.h>

namespace {
constexpr const char* kInvalid = "Invalid value requested from cfg, KEY";

/// What a key is stored as: the one request that is answered without a row.
std::string stored(const cConfigFile& file, const std::string& key) {
    TempGame::clearErrors();
    const int32_t i = file.getInt(key);
    if (TempGame::errors().empty()) return "int " + std::to_string(i);
    TempGame::clearErrors();
    const float f = file.getFloat(key);
    if (TempGame::errors().empty()) return "float " + std::to_string(f);
    TempGame::clearErrors();
    const std::string text = file.getString(key);
    return TempGame::errors().empty() ? "text [" + text + "]" : "nothing";
}

std::string storedFrom(const TempGame& game, const std::string& content, const std::string& key) {
    game.write("a.cfg", content);
    cConfigFile file;
    file.load("a.cfg");
    return stored(file, key);
}
} // namespace

TEST(Config, AValuesCharactersDecideItsType) {
    const struct {
        const char *line, *expected, *key = "KEY";
    } rows[] = {
        {"KEY -3", "int -3"},
        {"KEY 10 20", "int 10"},
        {"KEY 1-2", "int 1"},
        {"KEY -", "int 0"},
        {"KEY 5 \t", "int 5"},
        {"KEY 2.5", "float 2.500000"},
        {"KEY 1e3", "float 1000.000000"},
        {"KEY e", "float 0.000000"},
        {"KEY .", "float 0.000000"},
        {"KEY 3E4", "text [3E4]"},
        {"KEY +5", "text [+5]"},
        {"KEY 1,5", "text [1,5]"},
        {"KEY two  words ", "text [two  words ]"},
        // blanks, comments, short lines
        {"KEY    7", "int 7"},
        {"KEY\t\t7", "int 7"},
        {"KEY \tx", "text [\tx]"}, // of a mixed run a part stays
        {"KEY\t  x", "text [  x]"},
        {"KEY ", "int 0"},
        {"KEY\t\t", "int 0"},
        {"LONGKEY", "text []", "LONGKEY"},
        {" KEY 5", "text [KEY 5]", ""},
        {"A 1", "nothing", "A"},
        {"A 12", "int 12", "A"},
        {"~KEY 5", "nothing", "~KEY"},
        {"KEY 5\n~KEY 6\nKEY 7", "int 7"},
        {"key 5", "nothing"},
        {"\n\n\nKEY 5", "int 5"},
    };
    TempGame game;
    for (const auto& row : rows) {
        for (const char* end : {"", "\n", "\r\n"})
            EXPECT_EQ(storedFrom(game, std::string(row.line) + end, row.key), row.expected)
                << row.line << end;
    }
    // An overlong line is cut, and reading goes on.
    for (const size_t length : {506u, 2000u}) {
        const std::string content = "LONG " + std::string(length, 'x') + "\nKEY 5\n";
        EXPECT_EQ(storedFrom(game, content, "LONG"), "text [" + std::string(506, 'x') + "]") << length;
        EXPECT_EQ(storedFrom(game, content, "KEY"), "int 5") << length;
    }
}

TEST(Config, EachTypeHasItsOwnMap) {
    TempGame game;
    game.write("a.cfg", "KEY 3\nKEY 2.5\nKEY word\n");
    cConfigFile file;
    file.load("a.cfg");
    EXPECT_EQ(file.getInt("KEY"), 3);
    EXPECT_EQ(file.getFloat("KEY"), 2.5f);
    EXPECT_EQ(file.getString("KEY"), "word");
    EXPECT_TRUE(TempGame::errors().empty());
    file.load("nothing");
    EXPECT_EQ(TempGame::errorCount("Failed to open config file: nothing"), 1);
    EXPECT_EQ(stored(file, "KEY"), "nothing") << "loading clears first";
}

TEST(Config, EveryMismatchedRequestIsAnsweredAndLogged) {
    TempGame game;
    const std::string real = "Float value KEY requested as int", whole = "Int value KEY requested as float";
    const struct {
        std::string value;
        int32_t asInt;
        float asFloat;
        std::vector<std::string> logged; ///< of a request as int, as float and as text
    } rows[] = {
        {"2.9", 2, 2.9f, {real, kInvalid}},      {"-2.9", -2, -2.9f, {real, kInvalid}},
        {"1e30", 0, 1e30f, {real, kInvalid}},    {"2", 2, 2.0f, {whole, kInvalid}},
        {"word", 0, 0.0f, {kInvalid, kInvalid}},
    };
    for (const auto& row : rows) {
        game.write("a.cfg", "KEY " + row.value + "\n");
        cConfigFile file;
        file.load("a.cfg");
        for (int request = 0; request < 2; ++request) { // the second one as much as the first
            TempGame::clearErrors();
            EXPECT_EQ(file.getInt("KEY"), row.asInt);
            EXPECT_EQ(file.getFloat("KEY"), row.asFloat);
            EXPECT_EQ(file.getString("KEY"), row.value == "word" ? "word" : "");
            EXPECT_EQ(TempGame::errors(), row.logged) << row.value;
        }
    }
}

TEST(Config, ASectionIsReadOnceAndKept) {
    TempGame game;
    game.write("menu.cfg", "KEY 5\n");
    cConfigMgr config;
    EXPECT_EQ(config.getInt("KEY", "menu"), 5);
    game.write("menu.cfg", "KEY 6\n");
    EXPECT_EQ(config.getInt("KEY", "menu"), 5);
    EXPECT_EQ(config.getInt("KEY", "none"), 0);
    game.write("none.cfg", "KEY 7\n");
    EXPECT_EQ(config.getInt("KEY", "none"), 0) << "a section that was missing stays empty";
    EXPECT_EQ(TempGame::errorCount("Failed to open config file: none.cfg"), 1);
    EXPECT_EQ(TempGame::errorCount(kInvalid), 2);
}
