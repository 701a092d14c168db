#include "core/name_hash.h"
#include "script/cml_element.h"
#include "script/cml_vocabulary.h"
#include "support/temp_game.h"

#include <gtest/gtest.h>
#include <set>

namespace {
/// A document compiled with look-ups of its own.
struct Compiled {
    TempGame game;
    cCmlElement root;
    CmlReport report;
    std::map<std::string, int32_t> globals;
    std::vector<std::string> sounds;
    int result;

    explicit Compiled(const std::string& text) {
        game.write("a.xml", text);
        CmlLookups lookups;
        lookups.globalIndex = [this](const std::string& name) {
            return globals.try_emplace(name, static_cast<int32_t>(globals.size())).first->second;
        };
        lookups.findItem = [](const std::string& name) { return name == "Key" ? 4 : -1; };
        lookups.itemAt = [](int32_t) { return nullptr; };
        lookups.preloadSound = [this](const std::string& name) { sounds.push_back(name); };
        result = root.load("a.xml", lookups, report);
    }
    cCmlElement& object() { return *root.findChild(kCmlObjectElement); }
    const cCmlCall& call(size_t i = 0) { return object().calls.at(i); }
    std::string rows() const {
        std::string all;
        for (const auto& row : report.rows) all += std::to_string(row.line) + ": " + row.message + "\n";
        return all;
    }
};

std::string objectWith(const std::string& onSet, const std::string& inside = "") {
    return "<level name=\"l\"><object name=\"door\" on_set=\"" + onSet + "\">" + inside + "</object></level>";
}
} // namespace

TEST(CmlCompile, SplitsListsAndConvertsArguments) {
    struct {
        const char *call, *procedure;
        std::vector<int32_t> args;
        int32_t object = 0;
    } const kRows[] = {
        {"set_timer(500)", "set_timer", {500, 0, 0}},
        {"gate.set_active(0)", "set_active", {0, 0, 0}, nameHash("gate")},
        {"set_direction( player)", "set_direction", {0, 0, 0}}, // not the keyword, and no number
        {"set_direction(_x)", "set_direction", {0, 0, 0}},
        {"inc_local(count,other)", "inc_local_r", {0, 1, 0}}, // in the order of first appearance
        {"set_action(open)", "set_action", {2, 0, 0}},        // every child counts
        {"set_action(none)", "set_action", {-1, 0, 0}},
        {"get_object(Key,2)", "get_object", {4, 2, 0}},
        {"play_sound(creak,-5)", "play_sound", {nameHash("creak"), -5, 0}},
        {"use_item(bow,target)", "use_item", {100, 1, kWordTarget}}, // skill at most 100, item, target
    };
    for (const auto& row : kRows) {
        Compiled c(objectWith(row.call + std::string(";"),
                              "<dialogue name=\"d\">x</dialogue><item name=\"bow\" src=\"Bow\" "
                              "skill=\"120\" /><action name=\"open\" />"));
        ASSERT_EQ(c.object().calls.size(), 1u) << "a trailing separator adds no call";
        EXPECT_EQ(c.call().procedure, findProcedure(row.procedure)) << row.call;
        EXPECT_EQ(c.call().objectId, row.object) << row.call;
        EXPECT_EQ(c.call().args, row.args) << row.call;
        EXPECT_EQ(c.rows(), "") << row.call;
        EXPECT_EQ(c.sounds.size(), row.procedure == std::string("play_sound")) << row.call;
    }
    EXPECT_EQ(Compiled(objectWith("set_timer()")).call().argCount, 0) << "empty parentheses hold no argument";
}

TEST(CmlCompile, ReportsEachBadCallWithItsLine) {
    for (const auto& [onSet, row] :
         {std::pair("fly(1)", "Unrecognised procedure \"fly\" in CML file"),
          {"", "Unrecognised procedure \"\" in CML file"},
          {"randomize_local(count,param)", "Unrecognised procedure \"randomize_local_p\" in CML file"},
          {"run_cinematic(flight)", "CML object door tries to run unknown cinematic \"flight\""},
          {"run_dialogue(talk)", "CML object door does not include dialogue object \"talk\""}}) {
        Compiled c("<level name=\"l\">\n\n" + objectWith(onSet + std::string(";")).substr(16));
        EXPECT_EQ(c.result, 0) << "compiling never stops at a bad call";
        EXPECT_EQ(c.rows(), "3: " + std::string(row) + "\n");
        EXPECT_EQ(TempGame::errorCount(row), 1);
        EXPECT_EQ(c.call().procedure, nullptr);
    }
    Compiled item(objectWith("get_object(Sword)"));
    EXPECT_EQ(item.rows(), "1: CML object object specified unexisting object \"Sword\"\n");
    EXPECT_EQ(item.call().args[0], 0) << "an unknown item becomes the first one";
    Compiled outside("<level name=\"l\"><action name=\"a\" on_set=\"destroy()\" /></level>");
    EXPECT_EQ(outside.rows(), "1: CML object a has actions outside objects\n");
    Compiled test(objectWith("", "<action name=\"a\"><reaction type=\"timer\"><requirement "
                                 "test=\"is_odd(1)\" /></reaction></action>"));
    EXPECT_EQ(test.rows(), "1: Unrecognised function \"is_odd\" in CML file\n");
}

TEST(CmlCompile, UnknownElementsFailTheDocumentOnce) {
    Compiled c("<level name=\"l\">\n<object name=\"a\"><wings /></object><feet /></level>");
    EXPECT_LT(c.result, 0);
    EXPECT_EQ(c.rows(), "2: CML file contains errors! There is no element <wings>\n");
    Compiled missing("<level");
    EXPECT_LT(missing.result, 0);
    EXPECT_FALSE(missing.report.rows.empty());
}

TEST(CmlCompile, ReadsNumbersOfObjectsReactionsFramesAndFilters) {
    Compiled c("<level name=\"l\"><object name=\"o\" fov=\"60\"><action name=\"a\">"
               "<reaction type=\"distance_exceeds\" point=\"player\" distance=\"2.5\" /></action></object>"
               "<object name=\"p\" />"
               "<cinematic name=\"c\" length=\"90\"><camera>"
               "<frame number=\"7\" pos=\"1,2,3\" dir=\"0,0,-1\" /><frame pos=\"5\" target=\"4,5,6,7\" "
               "up=\"0,2,0\" /></camera>"
               "<player_cin><frame dir=\"0,0,-4\" speed=\"1500\" upper_anim=\"ab\" /></player_cin>"
               "<filter frame=\"50\" rgb=\"1,0,0\" alpha=\"0.5\" /></cinematic></level>");
    EXPECT_NEAR(c.object().fov, 0.5f, 1e-5f);
    EXPECT_EQ(c.root.childAt(1)->fov, 1) << "nothing is within an angle of zero";
    const cCmlElement& reaction = *c.object().childAt(0)->childAt(0);
    EXPECT_EQ(reaction.point, 2);
    EXPECT_EQ(reaction.distance, 2.5f);
    const cCmlElement& cinematic = *c.root.findChild(kCmlCinematic);
    EXPECT_EQ(cinematic.length, 90);
    const cCmlElement &first = *cinematic.slots[0]->childAt(0), &second = *cinematic.slots[0]->childAt(1);
    EXPECT_EQ(first.number, 7);
    EXPECT_EQ(first.vectors[1], cVector3(1, 2, 2)) << "a camera's direction counts from its position";
    EXPECT_TRUE(first.vectors[2].isNear({0, 1, 0})) << "derived from the view";
    EXPECT_EQ(first.speed, cCmlElement::kNoSpeed);
    EXPECT_EQ(second.vectors[0], cVector3()) << "too short to be a vector";
    EXPECT_EQ(second.vectors[1], cVector3(4, 5, 7)) << "between the first and the last comma";
    EXPECT_EQ(second.vectors[2], cVector3(0, 1, 0));
    const cCmlElement& hero = *cinematic.slots[1]->childAt(0);
    EXPECT_EQ(hero.vectors[1], cVector3(0, 0, -1));
    EXPECT_EQ(hero.speed, 1.5f);
    EXPECT_EQ(hero.upperAnim, 195);
    const cCmlElement& filter = *cinematic.findChild(kCmlFilter);
    EXPECT_EQ(filter.frame, 50);
    EXPECT_EQ(filter.alpha, 0.5f);
    EXPECT_EQ(filter.vectors[0], cVector3(1, 0, 0));
}

TEST(CmlCompile, DialogueCallsBecomeIndices) {
    Compiled c(objectWith("", "<dialogue name=\"d\">Hello ^9set_timer(1) and ^9destroy() ^7</dialogue>"));
    EXPECT_EQ(c.object().childAt(0)->text, "Hello ^90 and ^91 ^7");
    EXPECT_EQ(c.object().childAt(0)->calls.at(1).procedure, findProcedure("destroy"));
}

TEST(CmlVocabulary, EveryRowIsUniqueAndComplete) {
    auto expectOf = [names = std::set<std::string_view>()](const auto& rows) mutable {
        for (const auto& row : rows) {
            EXPECT_TRUE(names.insert(row.name).second) << row.name;
            EXPECT_TRUE(row.handler && !row.help.empty()) << row.name;
        }
    };
    expectOf(cmlProcedures());
    expectOf(cmlFunctions());
}
