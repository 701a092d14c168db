#include "world/hierarchy.h"

#include "support/temp_game.h"

#include <array>
#include <gtest/gtest.h>

TEST(Hierarchy, FindsNamesAsTheFileCountsThem) {
    const std::string
        counted = "A\n-x\n-y\nB\n-z\n",
        odd = "~ nothing here\r\n\r\nHumanoid rest is ignored\r\n \t- Guard\r\n--~ only a comment\r\n"
              "- - Captain ~ a class\r\n--Private";
    std::string many;
    for (int i = 0; i < 70000; ++i) many += "a\n";
    const struct {
        std::string file;
        const char *type, *race, *classIndex;
        std::array<int, 3> indices;
    } rows[] = {
        {counted, "A", "x", "", {0, 0, -1}},
        {counted, "A", "y", "", {0, 1, -1}},
        {counted, "B", "z", "", {1, 0, -1}},
        {counted, "A", "z", "", {0, 2, -1}}, // counts run on into later parents
        {counted, "C", "x", "", {-1, -1, -1}},
        {counted, "B", "x", "", {1, -1, -1}},
        {odd, "Humanoid", "Guard", "Captain", {0, 0, 0}},
        {odd, "Humanoid", "Guard", "Private", {0, 0, 1}},
        {odd, "humanoid", "Guard", "Private", {-1, -1, -1}},
        {many + "b\n", "b", "", "", {INT16_MAX, -1, -1}}, // more than an index holds
        {"", "A", "x", "y", {-1, -1, -1}},                // no file
    };
    for (const auto& row : rows) {
        TempGame game;
        if (!row.file.empty()) game.write("hierarchy.cfl", row.file);
        const HierarchyIndices found = lookupHierarchy(row.type, row.race, row.classIndex);
        EXPECT_EQ((std::array<int, 3>{found.type, found.race, found.classIndex}), row.indices)
            << row.type << '/' << row.race << '/' << row.classIndex;
        EXPECT_TRUE(TempGame::errors().empty());
    }
}
