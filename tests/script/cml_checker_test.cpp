#include "script/cml_call_checker.h"
#include "script/cml_checker.h"
#include "script/cml_vocabulary.h"
#include "support/temp_game.h"

#include <algorithm>
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

/// "line: warning" a row; errors stand before them with "error". Here and in the document ' stands for ".
std::string check(std::string document) {
    const TempGame game;
    std::replace(document.begin(), document.end(), '\'', '"');
    game.write("a.xml", document);
    CmlReport errors, warnings;
    errors.quiet = warnings.quiet = true;
    checkCmlDocument("a.xml", lookups(), gameData(), errors, warnings);
    std::string rows;
    for (const auto& row : errors.rows) rows += std::to_string(row.line) + ": error: " + row.message + "\n";
    for (const auto& row : warnings.rows) rows += std::to_string(row.line) + ": " + row.message + "\n";
    std::replace(rows.begin(), rows.end(), '"', '\'');
    return rows;
}

std::string level(const std::string& inside) {
    return "<level name='l'>\n" + inside + "\n</level>";
}
/// An object with a static model and a body.
std::string object(const std::string& name, const std::string& attributes, const std::string& inside = "") {
    return "<object name='" + name + "' " + attributes +
           "><appearance type='static'><model file='thing.cpm' /></appearance><physics "
           "position='0,0,0'><boundingvolume start='0,0,0' end='0,0,0' radius='0.5' /></physics>" +
           inside + "</object>";
}
std::string person(const std::string& name, const std::string& attributes, const std::string& inside = "") {
    return "<object name='" + name + "' " + attributes +
           "><appearance type='animated'><model file='man' /></appearance><physics position='0,0,0' />" +
           inside + "</object>";
}
/// Somebody who says this; the script begins on line 3.
std::string talk(const std::string& script) {
    return level(
        object("o", "default_action='a'",
               "<action name='a' on_set='run_dialogue(d)' />\n<dialogue name='d'>" + script + "</dialogue>"));
}

void expectRows(const std::string& document, const std::string& rows) {
    EXPECT_EQ(check(document), rows) << document;
}
using Wrap = std::string (*)(const std::string& text);
void expectNothing(Wrap wrap, std::initializer_list<std::string> texts) {
    for (const std::string& text : texts) expectRows(wrap(text), "");
}
struct Case {
    std::string text, warning; ///< the only one
};
/// The rows begin with `where`, in which % stands for the text.
void expectEach(Wrap wrap, const std::string& where, std::initializer_list<Case> cases) {
    for (const Case& c : cases) {
        const std::string call = where.back() == '%' ? c.text + ": " : "";
        expectRows(wrap(c.text), where.substr(0, where.find('%')) + call + c.warning + "\n");
    }
}
/// The object "o", which stands beside "gate" with other children and variables.
std::string beside(const std::string& calls, const std::string& test) {
    return level(object("o", "default_action='a' on_set='set_local(mine,1);set_timer(1)'",
                        "<action name='a' on_set=''><reaction type='timer' do='" + calls + "'>" + test +
                            "</reaction></action><item name='bow' src='bow' />") +
                 object("gate", "default_action='open' on_set='set_local(first,0);set_local(mine,0)'",
                        "<action name='open' />"));
}
std::string calling(const std::string& calls) {
    return beside(calls, "");
}
std::string asking(const std::string& test) {
    return beside("", "<requirement test='" + test + "' />");
}
std::string reacting(const std::string& reactions) {
    return level(object("o", "default_action='a' on_set='set_local(n,1);set_timer(5)'",
                        "<action name='a'>\n" + reactions + "</action>"));
}
} // namespace

TEST(CmlChecker, WarnsOfCallsWhoseArgumentsNameNothing) {
    expectNothing(
        calling,
        {"set_direction(gate);set_position(origin);turn(-5);play_sound(ding,50);use_item(bow,random)",
         "gate.set_active(0);set_speed(11);set_acceleration(1,2,3);get_object(key)"});
    expectNothing(level, {object("o", "file='next.xml' spawnpoint='door' on_set='swap_level()'")});
    expectEach(calling, "2: %",
               {{"set_action(b)", "the object 'o' has no action 'b'"},
                {"use_item(spear,player)", "the object 'o' has no item 'spear'"},
                {"use_item(bow,invert_player)", "'invert_player' is no target here"},
                {"door.set_active(0)", "the level has no object 'door'"},
                {"set_direction(door)", "the level has no object 'door'"},
                {"set_position(random)", "'random' is no target here"},
                {"set_direction( player)", "the blank belongs to the argument ' player'; write none"},
                {"set_speed(10)", "moves nothing, a speed has to be above 10"},
                {"set_speed(param)", "'param' is no whole number"},
                {"set_timer(1.5)", "'1.5' is no whole number"},
                {"set_timer(-5)", "a negative time is read as weeks"},
                {"set_local(n,99999999999)", "99999999999 is more than a number can hold"},
                {"set_timer()", "takes 1 argument"},
                {"get_object(key,1,2)", "takes 1 to 2 arguments"},
                {"set_animation(IDLE)", "the object 'o' has no animated model"},
                {"play_sound(dong)", "there is no sound file dong.wav"},
                {"swap_level", "the file of the object 'o' names no level: ''"},
                {"play_stream()", "the file of the object 'o' names no music: ''"}});
    expectEach(calling, "2: ",
               {{"play_sound(ding);play_sound(idng)",
                 "play_sound(idng): the sound's name has the hash of 'ding', one of them is never heard"}});
    expectEach(level, "2: ",
               {{object("o", "file='next.xml' spawnpoint='roof' on_set='swap_level()'"),
                 "swap_level(): the level next.xml has no spawnpoint 'roof'"}});
    expectEach(asking, "2: %",
               {{"target_type(Animal)", "compares with a number, equal or not_equal; a name is never equal"},
                {"distance_less_than(invert_player,2)", "'invert_player' is no target here"},
                {"in_fov(player)", "the object 'o' has no fov, so it sees nobody"}});
}

TEST(CmlChecker, KnowsThatChildrenAndVariablesAreNumberedByTheObjectAroundTheCall) {
    expectNothing(calling, {"o.set_action(a);o.set_local(mine,2)"});
    expectNothing(asking, {"local_equals(mine,1)"});
    expectNothing(level, {object("left", "default_action='shut' on_set='set_local(n,0)'",
                                 "<action name='shut' /><action name='open' "
                                 "on_set='right.set_action(open);right.inc_local(n,1)' />") +
                          object("right", "default_action='shut' on_set='set_local(n,0)'",
                                 "<action name='shut' on_set='set_timer(1)'><reaction type='timer' "
                                 "do='left.set_action(open)' /></action><action name='open' />")});
    expectEach(calling, "2: %",
               {{"gate.set_action(open)",
                 "the object 'o' has no action 'open'; it is looked up there, in the object around the call"},
                {"gate.set_action(a)", "it is looked up in the object around the call, as child 2 of 'o', "
                                       "and that child of 'gate' is no action 'a'"},
                {"gate.set_local(mine,1)", "local variables are numbered by the object around the call, 'o'; "
                                           "that number is not 'mine' in 'gate'"}});
    expectEach(
        asking, "2: ",
        {{"local_equals(mein,1)", "the local variable 'mein' of the object 'o' is asked for and never set"},
         {"local_equals(mine,other)",
          "the local variable 'other' of the object 'o' is asked for and never set"}});
}

TEST(CmlChecker, WarnsOfObjectsThatAreNeverFoundMadeOrSetGoing) {
    expectNothing(level, {object("a", "") + "\n" + object("b", ""),
                          person("a", "on_set='set_animation(IDLE);set_animation_legs(CROUCH)'")});
    expectEach(level, "3: ",
               {{object("a", "") + "\n" + object("a", ""),
                 "there is an object 'a' before this one: calls never reach this one"},
                {object("ab", "") + "\n" + object("ba", ""),
                 "the name 'ba' has the hash of 'ab': calls never reach this one"},
                {object("a", "default_action='b'", "<action name='b' />\n<action name='c' />"),
                 "nothing ever starts the action 'c'"},
                {object("a", "default_action='b'", "<action name='b' />\n<action name='b' />"),
                 "another action 'b' stands before this one, which is never used"},
                {object("a", "default_action='b'",
                        "<action name='b'>\n<reaction type='timer' do='destroy' /></action>"),
                 "nothing ever sets the timer of the object 'a'"}});
    expectEach(level, "2: ",
               {{object("random", ""), "calls read the name 'random' as the word random"},
                {"<object name='a'><physics position='0,0,0' /></object>",
                 "the object 'a' is not created: it needs an appearance with a model, and physics"},
                {person("a", "on_set='set_animation(CROUCH)'"),
                 "the upper body of the model man has no animation 'CROUCH'"},
                {person("a", "on_set='set_animation_legs(AB)'"),
                 "the lower body of the model man has 'BA' with the hash of 'AB'"},
                {person("a", "on_set='set_speed(20)'"),
                 "set_speed(20): the object 'a' has no boundingvolume, so it cannot be moved"},
                {"<object name='a' on_set='set_animation(FLY)'><appearance type='animated'><model "
                 "file='woman' /></appearance>\n<physics /></object>",
                 "the model 'woman' of the object 'a' cannot be read, so its animations are not checked"},
                {object("a", "type='Ting' race='R' class='C'"), "the hierarchy has no Ting, R, C"},
                {object("a", "default_action='b'"), "default_action: the object 'a' has no action 'b'"},
                {object("a", "", "<reaction type='context' do='destroy' />"),
                 "the object 'a' has reactions but no action; without a current action none happens"},
                {object("a", "", "<item name='x' src='cow' />"), "there is no item 'cow' in objects.xml"},
                {object("a", "defualt_action='b'"), "<object> has no attribute 'defualt_action'"},
                {"<cinematic name='intro' length='1'><camera><frame pos='1;2;3' target='1,2,3' "
                 "/></camera></cinematic>",
                 "pos='1;2;3' wants three numbers with commas between them"},
                {"<cinematic name='intro' length='1'><player_cin><frame upper_anim='CROUCH' "
                 "lower_anim='CROUCH' /></player_cin></cinematic>",
                 "the upper body of the model maincharfinal\\mainchar_noweapon has no animation 'CROUCH'"},
                {"<cinematic name='c' length='1' />", "nothing ever starts the cinematic 'c'"},
                {object("a", "fov='wide'"), "fov='wide' is no number"},
                {"<cinematic name='intro' length='0' />", "cinematic 'intro' wants a length above 0"},
                {"<cinematic name='intro' length='9'><camera /></cinematic>",
                 "cinematic 'intro': <camera> has no frames"},
                {"<cinematic name='intro' length='9'><camera><frame number='5' /><frame number='2' "
                 "/></camera></cinematic>",
                 "cinematic 'intro': a frame's number is below that of the frame before"},
                {"<player spawnpoint='a' /><player spawnpoint='b' /><player spawnpoint='a' />",
                 "another player stands at 'a' before this one, which is never used"},
                {"<files appearance='thing.cpm' collision='gone.oct' music='' />",
                 "there is no collision file 'gone.oct'"},
                {"<enviroment file='gone.env' />", "there is no environment file 'gone.env'"},
                {"<files appearance='thing.cpm' collision='thing.cpm' music='b' />",
                 "there is no music file b.ogg"}});
    expectRows("<level><object name='a'",
               "1: error: CML file contains errors! (a.xml): the file ends before its first element does\n");
}

TEST(CmlChecker, WarnsOfReactionsThatNeverHappen) {
    expectNothing(reacting,
                  {"<reaction type='distance_falls_below' point='player' distance='0.5' do='destroy' />",
                   "<reaction type='context'><requirement test='active' do='destroy' /><requirement "
                   "do='destroy' /></reaction>"});
    expectEach(reacting, "3: ",
               {{"<reaction type='colision_chr' do='destroy' />",
                 "a reaction of the type 'colision_chr' never happens; there is no such trigger"},
                {"<reaction type='distance_exceeds' point='player' do='destroy' />",
                 "reaction 'distance_exceeds' wants a distance above 0"},
                {"<reaction type='distance_exceeds' distance='1' point='hero' do='destroy' />",
                 "point='hero' is read as the origin; it can be player, self or origin"},
                {"<reaction type='animation_end' do='destroy' />",
                 "reaction 'animation_end': the object 'o' is not animated"},
                {"<requirement do='turn(1)' />", "<requirement> is not read here, inside <action>"}});
    expectRows(level(person("p", "default_action='a'",
                            "<action name='a'><reaction type='collision_mesh' do='turn(1)' /></action>")),
               "2: reaction 'collision_mesh': the object 'p' has no boundingvolume, so nothing touches it\n");
    expectEach(reacting, "4: ",
               {{"<reaction type='timer' />\n<reaction type='timer' do='destroy' />",
                 "another reaction 'timer' stands before this one, which is never used"},
                {"<reaction type='context' do='destroy'>\n<requirement do='turn(1)' /></reaction>",
                 "a requirement without a test always holds: what comes after it is never done"}});
}

TEST(CmlChecker, WarnsOfWhatThePlacingUndoes) {
    const std::string undone =
        ": undone when the level is loaded, since the object is placed as its physics say "
        "after this on_set; a timer comes later\n";
    for (const char* call :
         {"set_position(gate)", "set_direction(gate)", "turn(90)", "level()", "set_radius(9)"}) {
        const auto of = [&](const std::string& object, const std::string& first, const std::string& timer,
                            const std::string& second, const std::string& prefix = "") {
            const auto list = [&](const std::string& where) {
                return where.empty() ? where : ";" + prefix + call;
            };
            return level(::object("gate", "") + "\n" +
                         ::object("o", "default_action='a' on_set='set_timer(1)" + list(object) + "'",
                                  "\n<action name='a' on_set='set_speed(0)" + list(first) +
                                      "'><reaction type='timer' do='set_action(b)" + list(timer) +
                                      "' /></action>\n<action name='b' on_set='set_speed(0)" + list(second) +
                                      "' />"));
        };
        expectRows(of("x", "", "", ""), "3: " + (call + undone));
        expectRows(of("", "x", "", "", "o."), "4: o." + (call + undone));
        expectRows(of("", "", "x", "x"), "");
        expectRows(of("x", "x", "", "", "gate."), "");
    }
    // Actions that set each other, and what comes later in the document.
    const auto chain = [](const std::string& second) {
        return level(
            object("o", "default_action='a'",
                   "<action name='a' on_set='set_action(b)' />\n<action name='b' on_set='set_action(a);" +
                       second + "' />") +
            "\n" + object("gate", ""));
    };
    expectRows(chain("turn(9)"), "3: turn(9)" + undone);
    expectRows(
        chain("gate.turn(9)"),
        "3: gate.turn(9): skipped when the level is loaded, since the object 'gate' is not there yet; a "
        "timer comes later\n");
    expectNothing(
        level,
        {object("gate", "", "") +
             object("o", "default_action='a'", "<action name='a' on_set='gate.turn(9);gate.set_timer(1)' />"),
         object("gate", "default_action='a'", "<action name='a' /><action name='b' on_set='turn(9)' />") +
             object("o", "default_action='a'",
                    "<action name='a' on_set='gate.set_action(b);set_action(b)' /><action "
                    "name='b' />")});
}

TEST(CmlChecker, WarnsOfAnimationsThatNothingPlays) {
    const std::string begin = "set_animation(IDLE);set_animation_type(loop);play_animation();set_timer(5)",
                      once = "set_animation(IDLE);set_animation_type(single)";
    struct {
        std::string first, timer, end; ///< the default action's list, what its timer does, action "b"
        bool warned;
    } const kRows[] = {
        {begin, "set_action(b)", once, false}, // the loop goes on playing
        {begin, "halt_animation();set_action(b)", once, true},
        {once + ";play_animation();set_timer(5)", "set_action(b)", once, true},
        {once + ";play_animation();set_timer(5)", "set_action(b)", "set_animation(IDLE)", true},
        {once + ";play_animation();set_timer(5)", "set_action(b);play_animation()", once, false},
        {once + ";play_animation();set_timer(5)", "set_animation_type(loop);play_animation();set_action(b)",
         once, false},
        {"set_timer(5)", "set_action(b)", once, true},
        {"set_timer(5)", "set_action(b)", "set_animation(IDLE)", false}, // a posture
        {"set_timer(5)", "play_animation();set_action(b)", once, false},
        {"set_timer(5)", "set_action(b)", "play_animation();" + once, false},
        {"set_timer(5)", "run_dialogue(d)", once, true},
    };
    for (const auto& row : kRows) {
        const bool talks = row.timer == "run_dialogue(d)";
        expectRows(
            level(person("o", "default_action='a'",
                         "<action name='a' on_set='" + row.first + "'><reaction type='timer' do='" +
                             row.timer + "' /></action>\n<action name='b' on_set='" + row.end + "' />" +
                             (talks ? "<dialogue name='d'>^9set_action(b) Look. ^0 ^7 </dialogue>" : ""))),
            row.warned ? "3: set_animation(IDLE): nothing plays it where the animation before it has ended; "
                         "play_animation() is missing\n"
                       : "");
    }
    // An object whose action another one sets goes its own ways, and the other one's.
    const auto steered = [&](const std::string& first, const std::string& calm, const std::string& hit) {
        return level(
            person("o", "default_action='a'",
                   "<action name='a' on_set='" + first +
                       "'><reaction type='melee_hit' do='set_action(b)' /></action>\n<action name='c' "
                       "on_set='" +
                       calm + "' />\n<action name='b' on_set='" + hit + "' />") +
            person("p", "default_action='a'",
                   "<action name='a' on_set='set_timer(1)'><reaction type='timer' "
                   "do='o.set_action(c);set_action(c)' /></action><action name='c' />"));
    };
    const std::string unplayed = ": set_animation(IDLE): nothing plays it where the animation before it has "
                                 "ended; play_animation() is missing\n";
    expectRows(steered(begin, once, once), "");
    expectRows(steered(once + ";play_animation()", "", once), "4" + unplayed);
    expectRows(steered("", once, ""), "3" + unplayed);
    expectRows(steered("", once + ";play_animation()", ""), "");
    // What another object does to the animation is not followed, and what is played later is meant so.
    const std::string still = "default_action='a' on_set='" + once + "'";
    const auto timer = [](const std::string& what) {
        return "<action name='a' on_set='set_timer(5)'><reaction type='timer' do='" + what + "' /></action>";
    };
    expectNothing(level, {person("o", still, timer("play_animation()")),
                          person("o", "default_action='a'",
                                 "<action name='a' on_set='set_action(a);set_action(a);set_action(a)' />"),
                          person("o", still, timer("turn(9)")) +
                              person("p", "default_action='a'", timer("o.play_animation()"))});
}

TEST(CmlChecker, WarnsOfWhatStandsInAnothersShadow) {
    const std::string chest = object("chest", "default_action='a'",
                                     "<action name='a'><reaction type='context' do='turn(9)' /></action>");
    const auto thing = [](const std::string& name, const std::string& place, const std::string& radius,
                          const std::string& does = "") {
        return "<object name='" + name + "' " + does +
               "><appearance type='static'><model file='thing.cpm' /></appearance><physics position='" +
               place + "' radius='" + radius + "' /></object>\n";
    };
    const auto rug = [&](const std::string& place, const std::string& radius, const std::string& does = "") {
        return thing("rug", place, radius, does);
    };
    const std::string warning =
        "3: the use key hardly reaches the object 'chest': 'rug' comes before it and stands "
        "in the same place\n";
    for (const auto& [before, warned] : {std::pair(rug("0,0,0", "2"), true),
                                         {rug("0.5,0,0", "0.5"), true},
                                         {rug("1,0,0", "0.5"), false}, // it can be gone round
                                         {rug("0,0,0", "0.1"), false},
                                         {rug("9,0,0", "2"), false},
                                         {rug("0,0,0", "2", "on_set='set_active(0)'"), false}})
        expectRows(level(before + chest), warned ? warning : "");
    // Half of it each: from both sides, or both from the same.
    expectRows(
        level(rug("1,0,0", "0.5") + thing("box", "-1,0,0", "0.5") + chest),
        "4: the use key hardly reaches the object 'chest': 'rug' and 'box' come before it and stand in the "
        "same place\n");
    expectRows(level(rug("1,0,0", "0.5") + thing("box", "1,0,0.1", "0.5") + chest), "");
    expectNothing(level, {chest + rug("0,0,0", "2"),
                          rug("0,0,0", "2") + chest +
                              person("o", "default_action='a'", "<action name='a' on_set='rug.destroy()' />"),
                          rug("0,0,0", "2") + object("chest", "")});
}

TEST(CmlChecker, FollowsEveryWayThroughATalkingScript) {
    expectNothing(
        talk, {"^25 Ann: ^20 Hello, ^A! ^0 \n^5q ^6q ^82Bye.^eWho?^w \n^6w Ann. ^0 \n^5q \n^6e Bye. ^0 ^7 ",
               "^5q ^6q ^82Who?^wBye.^e ^6w Ann. ^0 ^5r ^6r ^82Bye.^eWho again?^w ^6e Bye. ^0 ^7 ",
               "^3 One ^1 two. ^0 ^9set_timer(5) ^4 Three."});
    expectEach(
        talk, "3: dialogue 'd': ",
        {{"Hello. ^7 ", "^7 on the same page as text: nobody sees it; write ^0 before"},
         {"Hello. ^9turn(9) There. ^0 ^7 ", "what stands before ^9 on its page vanishes; write ^0 before"},
         {"^9set_local(a, 1) Hello.", "the call ends at its first blank: 'set_local(a,'"},
         {"^21Hello there.", "a blank is missing after the tag '^21'"},
         {"Hello\nthere.", "a line's end is no blank: what stands before and after it is one word"},
         {"Hello^1 there.", "the tag '^1' is glued to the word before it"},
         {"Hello ^6q there. ^0 ^7 ", "the label '^6q' is run into without a jump, and shown as a word"},
         {"Hello ^B there.", "there is no tag '^B'"},
         {"Hello ^2x there.", "^2 wants a colour from 0 to 7"},
         {"Hello. ^5x", "the label of the jump '^5x' is not there"},
         {"^82Yes^yNo^n ^6y Yes. ^0 ^7 ", "the label of the reply '^n' is not there"},
         {"Well? ^82Yes^yNo^y ^6y Yes.", "the menu is drawn over the page's text; write ^0 before"},
         {"Page. ^0 ^0 Page.", "the page that ends here shows nothing"},
         {"^5a ^6b ^5a ^6a ^5b ", "from here on it jumps in a circle that nothing stops"},
         {"Hello. ^0 \n^5q ^6q ^82Yes^yNo^q ^6y Again. ^0 ^5q ",
          "from here on the conversation can never be left"},
         {"^5q ^6q ^82Who?^wBye.^e ^6w Ann. ^0 ^5q ^6e Bye. ^0 ^7 ",
          "the use key alone goes round here for ever: a question that was asked has to lead on"},
         {" ", "it has no text"}});
    expectEach(talk, "4: dialogue 'd': ",
               {{"\n^9turn(9)\nHello there.", "a line's end is no blank: the word after ^9 is swallowed"},
                {"\nHello. ^0\nThere.", "a blank is missing after the tag '^0', since a line's end is none"},
                {"Bye. ^0 ^7 \n^6e Never. ^0 ^7 ", "the text from 'Never. ^0 ^7 ' on can never be reached"}});
    expectEach(
        level, "3: ",
        {{object("o", "default_action='a'", "<action name='a' />\n<dialogue name='d'>Hello.</dialogue>"),
          "nothing ever starts the dialogue 'd'"}});
    expectRows(talk("^82Yes^yNo"), "3: dialogue 'd': reply 2 of the menu does not end in ^ and a label\n3: "
                                   "dialogue 'd': the label of the reply '^y' is not there\n");
    expectRows(talk("^87 ^7 "), "3: dialogue 'd': a menu has 2 to 6 replies\n3: dialogue 'd': the text from "
                                "'^7 ' on can never be reached\n");
}

TEST(CmlChecker, KnowsEveryProcedureAndTest) {
    for (const CmlProcedureRow& row : cmlProcedures()) EXPECT_TRUE(isCheckedCall(row.name)) << row.name;
    for (const CmlFunctionRow& row : cmlFunctions()) EXPECT_TRUE(isCheckedCall(row.name)) << row.name;
    EXPECT_FALSE(isCheckedCall("fly"));
}
