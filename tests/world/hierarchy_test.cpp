#include "world/hierarchy.h"

#include "support/temp_game.h"

#include <gtest/gtest.h>

namespace {
struct Row {
    const char *type, *race, *classIndex;
    int16_t found[3];
};

void check(const Row& row) {
    const HierarchyIndices indices = lookupHierarchy(row.type, row.race, row.classIndex);
    const std::string label = std::string(row.type) + "/" + row.race + "/" + row.classIndex;
    EXPECT_EQ(indices.type, row.found[0]) << label;
    EXPECT_EQ(indices.race, row.found[1]) << label;
    EXPECT_EQ(indices.classIndex, row.found[2]) << label;
}
} // namespace

TEST(Hierarchy, CountsRunOnIntoLaterParents) {
    TempGame game;
    game.write("hierarchy.cfl", "A\n-x\n-y\nB\n-z\n");
    for (const Row& row : {Row{"A", "x", "", {0, 0, -1}},
                           {"A", "y", "", {0, 1, -1}},
                           {"B", "z", "", {1, 0, -1}},
                           {"A", "z", "", {0, 2, -1}},
                           {"C", "x", "", {-1, -1, -1}},
                           {"B", "x", "", {1, -1, -1}}}) {
        check(row);
    }
}

TEST(Hierarchy, ReadsBlanksCommentsAndLineEnds) {
    TempGame game;
    game.write("hierarchy.cfl",
               "~ nothing here\r\n\r\nHumanoid rest is ignored\r\n \t- Guard\r\n--~ only a comment\r\n"
               "- - Captain ~ a class\r\n--Private");
    check({"Humanoid", "Guard", "Captain", {0, 0, 0}});
    check({"Humanoid", "Guard", "Private", {0, 0, 1}});
    check({"humanoid", "Guard", "Private", {-1, -1, -1}});
}

TEST(Hierarchy, MoreNamesThanAnIndexHoldsCountAsTheLast) {
    TempGame game;
    std::string many;
    for (int i = 0; i < 70000; ++i) many += "a\n";
    game.write("hierarchy.cfl", many + "b\n");
    check({"b", "", "", {INT16_MAX, -1, -1}});
}

TEST(Hierarchy, AMissingFileKnowsNothing) {
    TempGame game;
    check({"A", "x", "y", {-1, -1, -1}});
    EXPECT_TRUE(TempGame::errors().empty());
}
