#include "script/cml_call_checker.h"
#include "script/cml_checker.h"
#include "script/cml_vocabulary.h"
#include "support/temp_game.h"

#include <gtest/gtest.h>

namespace {
CmlLookups lookups() {
    CmlLookups lookups;
    lookups.globalIndex = [](const std::string&) { return 0; };
    lookups.findItem = [](const std::string& name) { return name == "key" ? 0 : -1; };
    lookups.itemAt = [](int32_t) { return nullptr; };
    lookups.preloadSound = [](const std::string&) {};
    return lookups;
}

/// Files: thing.cpm, ding.wav, b.ogg, next.xml with the spawn point "door". One character, "man", whose lower
/// body alone can CROUCH.
CmlCheckData gameData() {
    CmlCheckData data;
    data.fileExists = [](const std::string& file) {
        return std::set<std::string>{"thing.cpm", "ding.wav", "gnid.wav", "idng.wav", "b.ogg", "next.xml"}
                   .count(file) != 0;
    };
    data.animations = [](const std::string& model) -> const CmlCheckData::Animations* {
        static const CmlCheckData::Animations kMan{{"IDLE", "CROUCH", "BA", "AB"}, {"IDLE"}};
        return model == "man" || model == "maincharfinal\\mainchar_noweapon" ? &kMan : nullptr;
    };
    data.itemExists = [](const std::string& name) { return name == "bow"; };
    data.kindExists = [](const std::string& type, const std::string&, const std::string&) {
        return type == "Thing";
    };
    data.spawnPointExists = [](const std::string&, const std::string& name) { return name == "door"; };
    return data;
}

/// "line: warning" a row; errors stand before them with "error".
std::string check(const std::string& document) {
    const TempGame game;
    game.write("a.xml", document);
    CmlReport errors, warnings;
    errors.quiet = warnings.quiet = true;
    checkCmlDocument("a.xml", lookups(), gameData(), errors, warnings);
    std::string rows;
    for (const auto& row : errors.rows) rows += std::to_string(row.line) + ": error: " + row.message + "\n";
    for (const auto& row : warnings.rows) rows += std::to_string(row.line) + ": " + row.message + "\n";
    return rows;
}

std::string level(const std::string& inside) {
    return "<level name=\"l\">\n" + inside + "\n</level>";
}
/// An object with a static model and a body.
std::string object(const std::string& name, const std::string& attributes, const std::string& inside = "") {
    return "<object name=\"" + name + "\" " + attributes +
           "><appearance type=\"static\"><model file=\"thing.cpm\" /></appearance><physics "
           "position=\"0,0,0\">"
           "<boundingvolume start=\"0,0,0\" end=\"0,0,0\" radius=\"0.5\" /></physics>" +
           inside + "</object>";
}
std::string person(const std::string& name, const std::string& attributes, const std::string& inside = "") {
    return "<object name=\"" + name + "\" " + attributes +
           "><appearance type=\"animated\"><model file=\"man\" /></appearance><physics position=\"0,0,0\" "
           "/>" +
           inside + "</object>";
}
/// Somebody who says this; the script begins on line 3.
std::string talk(const std::string& script) {
    return level(object("o", "default_action=\"a\"",
                        "<action name=\"a\" on_set=\"run_dialogue(d)\" />\n<dialogue name=\"d\">" + script +
                            "</dialogue>"));
}

struct Case {
    std::string document;
    const char* warning; ///< the one row that is expected, or nothing at all
};
void expectEach(const std::vector<Case>& cases) {
    for (const Case& c : cases) {
        const std::string rows = check(c.document),
                          expected = *c.warning ? std::string(c.warning) + "\n" : "";
        EXPECT_EQ(rows, expected) << c.document;
    }
}
/// A call of the object "o", which stands beside "gate" with other children and variables.
std::string calling(const std::string& calls, const std::string& list = "on_set") {
    const std::string requirement = list == "test" ? "<requirement test=\"" + calls + "\" />" : "";
    return level(object("o",
                        "default_action=\"a\" on_set=\"set_local(mine,1);set_timer(1)" +
                            (list == "test" ? "" : ";" + calls) + "\"",
                        "<action name=\"a\" on_set=\"\"><reaction type=\"timer\">" + requirement +
                            "</reaction></action><item name=\"bow\" src=\"bow\" />") +
                 object("gate", "default_action=\"open\" on_set=\"set_local(first,0);set_local(mine,0)\"",
                        "<action name=\"open\" />"));
}
} // namespace

TEST(CmlChecker, WarnsOfCallsWhoseArgumentsNameNothing) {
    expectEach({
        {calling(
             "set_direction(gate);set_position(origin);turn(-5);play_sound(ding,50);use_item(bow,random)"),
         ""},
        {calling("gate.set_active(0);set_speed(11);set_acceleration(1,2,3);get_object(key)"), ""},
        {calling("set_action(b)"), "2: set_action(b): the object \"o\" has no action \"b\""},
        {calling("use_item(spear,player)"),
         "2: use_item(spear,player): the object \"o\" has no item \"spear\""},
        {calling("use_item(bow,invert_player)"),
         "2: use_item(bow,invert_player): \"invert_player\" is no target here"},
        {calling("door.set_active(0)"), "2: door.set_active(0): the level has no object \"door\""},
        {calling("set_direction(door)"), "2: set_direction(door): the level has no object \"door\""},
        {calling("set_position(random)"), "2: set_position(random): \"random\" is no target here"},
        {calling("set_direction( player)"),
         "2: set_direction( player): the blank belongs to the argument \" player\"; write none"},
        {calling("set_speed(10)"), "2: set_speed(10): moves nothing, a speed has to be above 10"},
        {calling("set_speed(param)"), "2: set_speed(param): \"param\" is no whole number"},
        {calling("set_timer(1.5)"), "2: set_timer(1.5): \"1.5\" is no whole number"},
        {calling("set_timer()"), "2: set_timer(): takes 1 argument"},
        {calling("get_object(key,1,2)"), "2: get_object(key,1,2): takes 1 to 2 arguments"},
        {calling("set_animation(IDLE)"), "2: set_animation(IDLE): the object \"o\" has no animated model"},
        {calling("play_sound(dong)"), "2: play_sound(dong): there is no sound file dong.wav"},
        {calling("play_sound(ding);play_sound(idng)"),
         "2: play_sound(idng): the sound's name has the hash of \"ding\", one of them is never heard"},
        {calling("swap_level"), "2: swap_level: the file of the object \"o\" names no level: \"\""},
        {calling("play_stream()"), "2: play_stream(): the file of the object \"o\" names no music: \"\""},
        {level(object("o", "file=\"next.xml\" spawnpoint=\"door\" on_set=\"swap_level()\"")), ""},
        {level(object("o", "file=\"next.xml\" spawnpoint=\"roof\" on_set=\"swap_level()\"")),
         "2: swap_level(): the level next.xml has no spawnpoint \"roof\""},
        {calling("target_type(Animal)", "test"),
         "2: target_type(Animal): compares with a number, equal or not_equal; a name is never equal"},
        {calling("distance_less_than(invert_player,2)", "test"),
         "2: distance_less_than(invert_player,2): \"invert_player\" is no target here"},
        {calling("in_fov(player)", "test"),
         "2: in_fov(player): the object \"o\" has no fov, so it sees nobody"},
    });
}

TEST(CmlChecker, KnowsThatChildrenAndVariablesAreNumberedByTheObjectAroundTheCall) {
    expectEach({
        {calling("gate.set_action(open)"), "2: gate.set_action(open): the object \"o\" has no action "
                                           "\"open\"; it is looked up there, in the object around the call"},
        {calling("gate.set_action(a)"),
         "2: gate.set_action(a): it is looked up in the object around the call, as child 2 of \"o\", and "
         "that child of \"gate\" is no action \"a\""},
        {calling("o.set_action(a);o.set_local(mine,2)"), ""},
        {calling("gate.set_local(mine,1)"), "2: gate.set_local(mine,1): local variables are numbered by the "
                                            "object around the call, \"o\"; that number is "
                                            "not \"mine\" in \"gate\""},
        {calling("local_equals(mine,1)", "test"), ""},
        {calling("local_equals(mein,1)", "test"),
         "2: the local variable \"mein\" of the object \"o\" is asked for and never set"},
        {calling("local_equals(mine,other)", "test"),
         "2: the local variable \"other\" of the object \"o\" is asked for and never set"},
        // Twins: the same children and variables at the same places.
        {level(object("left", "default_action=\"shut\" on_set=\"set_local(n,0)\"",
                      "<action name=\"shut\" /><action name=\"open\" "
                      "on_set=\"right.set_action(open);right.inc_local(n,1)\" />") +
               object("right", "default_action=\"shut\" on_set=\"set_local(n,0)\"",
                      "<action name=\"shut\" on_set=\"left.set_action(open)\" /><action name=\"open\" />")),
         ""},
    });
}

TEST(CmlChecker, WarnsOfObjectsThatAreNeverFoundMadeOrSetGoing) {
    expectEach({
        {level(object("a", "") + "\n" + object("b", "")), ""},
        {level(object("a", "") + "\n" + object("a", "")),
         "3: there is an object \"a\" before this one: calls never reach this one"},
        {level(object("ab", "") + "\n" + object("ba", "")),
         "3: the name \"ba\" has the hash of \"ab\": calls never reach this one"},
        {level(object("random", "")), "2: calls read the name \"random\" as the word random"},
        {level("<object name=\"a\"><physics position=\"0,0,0\" /></object>"),
         "2: the object \"a\" is not created: it needs an appearance with a model, and physics"},
        {level(person("a", "on_set=\"set_animation(IDLE);set_animation_legs(CROUCH)\"")), ""},
        {level(person("a", "on_set=\"set_animation(CROUCH)\"")),
         "2: the upper body of the model man has no animation \"CROUCH\""},
        {level(person("a", "on_set=\"set_animation_legs(AB)\"")),
         "2: the lower body of the model man has \"BA\" with the hash of \"AB\""},
        {level(person("a", "on_set=\"set_speed(20)\"")),
         "2: set_speed(20): the object \"a\" has no boundingvolume, so it cannot be moved"},
        {level("<object name=\"a\" on_set=\"set_animation(FLY)\"><appearance type=\"animated\"><model "
               "file=\"woman\" "
               "/></appearance>\n<physics /></object>"),
         "2: the model \"woman\" of the object \"a\" cannot be read, so its animations are not checked"},
        {level(object("a", "type=\"Ting\" race=\"R\" class=\"C\"")), "2: the hierarchy has no Ting, R, C"},
        {level(object("a", "default_action=\"b\"")),
         "2: default_action: the object \"a\" has no action \"b\""},
        {level(object("a", "default_action=\"b\"", "<action name=\"b\" />\n<action name=\"c\" />")),
         "3: nothing ever starts the action \"c\""},
        {level(object("a", "default_action=\"b\"", "<action name=\"b\" />\n<action name=\"b\" />")),
         "3: another action \"b\" stands before this one, which is never used"},
        {level(object("a", "", "<reaction type=\"context\" do=\"destroy\" />")),
         "2: the object \"a\" has reactions but no action; without a current action none happens"},
        {level(object("a", "default_action=\"b\"",
                      "<action name=\"b\">\n<reaction type=\"timer\" do=\"destroy\" /></action>")),
         "3: nothing ever sets the timer of the object \"a\""},
        {level(object("a", "", "<item name=\"x\" src=\"cow\" />")),
         "2: there is no item \"cow\" in objects.xml"},
        {level(object("a", "defualt_action=\"b\"")), "2: <object> has no attribute \"defualt_action\""},
        {level("<cinematic name=\"intro\" length=\"1\"><camera><frame pos=\"1;2;3\" target=\"1,2,3\" "
               "/></camera></cinematic>"),
         "2: pos=\"1;2;3\" wants three numbers with commas between them"},
        {level("<cinematic name=\"intro\" length=\"1\"><player_cin><frame upper_anim=\"CROUCH\" "
               "lower_anim=\"CROUCH\" "
               "/></player_cin></cinematic>"),
         "2: the upper body of the model maincharfinal\\mainchar_noweapon has no animation \"CROUCH\""},
        {level("<cinematic name=\"c\" length=\"1\" />"), "2: nothing ever starts the cinematic \"c\""},
        {level("<files music=\"b\" />"), "2: there is no music file b.ogg"}, // too short a name to be played
        {"<level><object name=\"a\"", "1: error: CML file contains errors! (a.xml)"},
    });
}

TEST(CmlChecker, WarnsOfReactionsThatNeverHappen) {
    const auto reacting = [](const std::string& reactions) {
        return level(object("o", "default_action=\"a\" on_set=\"set_local(n,1);set_timer(5)\"",
                            "<action name=\"a\">\n" + reactions + "</action>"));
    };
    expectEach({
        {reacting(
             "<reaction type=\"distance_falls_below\" point=\"player\" distance=\"0.5\" do=\"destroy\" />"),
         ""},
        {reacting("<reaction type=\"context\"><requirement test=\"active\" do=\"destroy\" /><requirement "
                  "do=\"destroy\" /></reaction>"),
         ""},
        {reacting("<reaction type=\"colision_chr\" do=\"destroy\" />"),
         "3: a reaction of the type \"colision_chr\" never happens; there is no such trigger"},
        {reacting("<reaction type=\"distance_exceeds\" point=\"player\" do=\"destroy\" />"),
         "3: reaction \"distance_exceeds\" wants a distance above 0"},
        {reacting("<reaction type=\"distance_exceeds\" distance=\"1\" point=\"hero\" do=\"destroy\" />"),
         "3: point=\"hero\" is read as the origin; it can be player, self or origin"},
        {reacting("<reaction type=\"timer\" />\n<reaction type=\"timer\" do=\"destroy\" />"),
         "4: another reaction \"timer\" stands before this one, which is never used"},
        {reacting("<reaction type=\"context\" do=\"destroy\">\n<requirement do=\"turn(1)\" /></reaction>"),
         "4: a requirement without a test always holds: what comes after it is never done"},
        {reacting("<requirement do=\"turn(1)\" />"), "3: <requirement> is not read here, inside <action>"},
    });
}

TEST(CmlChecker, FollowsEveryWayThroughATalkingScript) {
    expectEach({
        {talk("^25 Ann: ^20 Hello, ^A! ^0 \n^5q ^6q ^82Who?^w Bye.^e \n^6w Ann. ^0 \n^5q \n^6e Bye. ^0 ^7 "),
         ""},
        {talk("^3 One ^1 two. ^0 ^9set_timer(5) ^4 Three."), ""},
        {talk("Hello. ^7 "),
         "3: dialogue \"d\": ^7 on the same page as text: nobody sees it; write ^0 before"},
        {talk("Hello. ^9turn(9) There. ^0 ^7 "),
         "3: dialogue \"d\": what stands before ^9 on its page vanishes; write ^0 before"},
        {talk("\n^9turn(9)\nHello there."),
         "4: dialogue \"d\": a line's end is no blank: the word after ^9 is swallowed"},
        {talk("^9set_local(a, 1) Hello."),
         "3: dialogue \"d\": the call ends at its first blank: \"set_local(a,\""},
        {talk("\nHello. ^0\nThere."),
         "4: dialogue \"d\": a blank is missing after the tag \"^0\", since a line's end is none"},
        {talk("^21Hello there."), "3: dialogue \"d\": a blank is missing after the tag \"^21\""},
        {talk("Hello\nthere."),
         "3: dialogue \"d\": a line's end is no blank: what stands before and after it is one word"},
        {talk("Hello^1 there."), "3: dialogue \"d\": the tag \"^1\" is glued to the word before it"},
        {talk("Hello ^6q there. ^0 ^7 "),
         "3: dialogue \"d\": the label \"^6q\" is run into without a jump, and shown as a word"},
        {talk("Hello ^B there."), "3: dialogue \"d\": there is no tag \"^B\""},
        {talk("Hello ^2x there."), "3: dialogue \"d\": ^2 wants a colour from 0 to 7"},
        {talk("Hello. ^5x"), "3: dialogue \"d\": the label of the jump \"^5x\" is not there"},
        {talk("^82Yes^yNo^n ^6y Yes. ^0 ^7 "),
         "3: dialogue \"d\": the label of the reply \"^n\" is not there"},
        {talk("Well? ^82Yes^yNo^y ^6y Yes."),
         "3: dialogue \"d\": the menu is drawn over the page's text; write ^0 before"},
        {talk("^82Yes^yNo"), "3: dialogue \"d\": reply 2 of the menu does not end in ^ and a label\n3: "
                             "dialogue \"d\": the label of the reply \"^y\" is not there"},
        {talk("^87 ^7 "), "3: dialogue \"d\": a menu has 2 to 6 replies\n3: dialogue \"d\": the text from "
                          "\"^7 \" on can never be reached"},
        {talk("Bye. ^0 ^7 \n^6e Never. ^0 ^7 "),
         "4: dialogue \"d\": the text from \"Never. ^0 ^7 \" on can never be reached"},
        {talk("Page. ^0 ^0 Page."), "3: dialogue \"d\": the page that ends here shows nothing"},
        {talk("^5a ^6b ^5a ^6a ^5b "),
         "3: dialogue \"d\": from here on it jumps in a circle that nothing stops"},
        {talk("Hello. ^0 \n^5q ^6q ^82Yes^yNo^q ^6y Again. ^0 ^5q "),
         "3: dialogue \"d\": from here on the conversation can never be left"},
        {talk(" "), "3: dialogue \"d\": it has no text"},
        {level(object("o", "default_action=\"a\"",
                      "<action name=\"a\" />\n<dialogue name=\"d\">Hello.</dialogue>")),
         "3: nothing ever starts the dialogue \"d\""},
    });
}

TEST(CmlChecker, KnowsEveryProcedureAndTest) {
    for (const CmlProcedureRow& row : cmlProcedures()) EXPECT_TRUE(isCheckedCall(row.name)) << row.name;
    for (const CmlFunctionRow& row : cmlFunctions()) EXPECT_TRUE(isCheckedCall(row.name)) << row.name;
    EXPECT_FALSE(isCheckedCall("fly"));
}
