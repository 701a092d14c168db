// Documents that ask for what cannot go on, played like any other: the frames go on, at most one row in the
// log names the object, and afterwards a good level plays as if nothing had been.

#include "gallery/hall.h"

#include <gtest/gtest.h>

namespace {
/// An object "o" in the hero's reach, with its actions; "gun", "club" and "bomb" are items of it.
std::string object(const std::string& inside, const std::string& name = "o", const std::string& more = "",
                   const std::string& place = "0,1.25,18.7") {
    return "<object name='" + name + "' file='annex.xml' spawnpoint='door' default_action='a' " + more +
           "><appearance type='animated'><model file='figure\\figure' /></appearance><physics position='" +
           place + "' direction='0,0,1' up='0,1,0'><boundingvolume radius='0.5' solid='1' /></physics>" +
           inside +
           "<item name='gun' src='pistol' skill='100' /><item name='club' src='stick' skill='100' /><item "
           "name='bomb' src='grenade' /></object>";
}
std::string action(const std::string& onSet, const std::string& inside = "", const std::string& name = "a") {
    return "<action name='" + name + "' on_set='" + onSet + "'>" + inside + "</action>";
}
std::string on(const std::string& type, const std::string& doList) {
    return "<reaction type='" + type + "' distance='50' point='player' do='" + doList + "' />";
}
std::string talk(const std::string& text, const std::string& name = "d") {
    return "<dialogue name='" + name + "'>" + text + "</dialogue>";
}
std::string nested(int depth) {
    std::string open, close;
    for (int i = 0; i < depth; ++i) {
        open += "<requirement test='active()'>";
        close += "</requirement>";
    }
    return "<reaction type='context'>" + open + close + "</reaction>";
}

std::string used(const std::string& doList, const std::string& more = "") {
    return object(action("", on("context", doList)) + more);
}
std::string timed(const std::string& doList, const std::string& more = "") {
    return object(action("set_timer(20)", on("timer", doList)) + more);
}
std::string talking(const std::string& text, const std::string& more = "") {
    return used("run_dialogue(d)", more + talk(text));
}

std::string times(int count, const std::string& call) {
    std::string list;
    for (int i = 0; i < count; ++i) list += call + ";";
    return list;
}
/// Shoots, and answers each hit with volleys that three actions multiply.
std::string volleys(const std::string& name, const std::string& at, const std::string& place,
                    const std::string& start) {
    return object(
        action(start, on("timer", "use_item(gun,p)") + on("ballistic_hit", times(16, "set_action(b)"))) +
            action(times(16, "set_action(c)"), "", "b") + action(times(3, "set_action(d)"), "", "c") +
            action(times(12, "use_item(gun," + at + ")"), on("ballistic_hit", times(16, "set_action(b)")),
                   "d"),
        name, "", place);
}

constexpr const char* kTooMuch = "asks for more than a frame can hold";
constexpr const char* kEndless = "CML object o calls itself without end";
const std::string kFilm = "<cinematic name='c' length='20' /><cinematic name='e' length='5' />";
const std::string kDestroyed = "Attempted to destroy unexisting object";

struct Row {
    const char* what;
    std::string elements;
    const char* row = nullptr; ///< in the log, as often as `rows` says
    bool goesOn = true;        ///< the hero plays on; else another level is there
    GameState after = STATE_GAME;
    int rows = 1;
};

const Row kRows[] = {
    {"requirements inside each other", object(action("", nested(200)))},
    {"an action that sets itself", object(action("set_action(a)")), kEndless},
    {"an action that sets itself twice", object(action("set_action(a);set_action(a)")), kEndless},
    {"the same by its own name",
     object(action("o.set_action(a);o.set_action(a);inc_local(n,1)", on("context", "set_action(a)"))),
     kEndless},
    {"actions in a circle, in every frame",
     object(action("set_action(b)", "") + action("set_action(a)", "", "b") + action("", "", "c") +
            on("distance_falls_below", "set_action(a)")),
     kEndless},
    {"a timer that sets itself", object(action("set_timer(1)", on("timer", "set_timer(1);inc_local(n,1)")))},
    {"an end of an animation that plays it again",
     object(action("set_animation(FIRST);set_animation_type(single);play_animation()",
                   on("animation_end", "set_animation(FIRST);play_animation()")))},
    {"two that shoot each other",
     object(action("set_timer(20)", on("timer", "use_item(gun,p)") +
                                        on("ballistic_hit", "use_item(gun,target);set_timer(20)"))) +
         object(action("", on("ballistic_hit", "use_item(gun,target)")), "p", "", "0,1.25,10"),
     "causes events without end"},
    {"two that strike each other twice",
     object(action("set_timer(20)", on("timer", "use_item(club,p)") +
                                        on("melee_hit", "use_item(club,target);use_item(club,target)"))) +
         object(action("", on("melee_hit", "use_item(club,target);use_item(club,target)")), "p", "",
                "0,1.25,17.5"),
     "causes events without end"},
    {"lists that run lists, in a circle of shots",
     volleys("o", "p", "0,1.25,18.7", "set_timer(20)") + volleys("p", "o", "0,1.25,10", ""), kTooMuch, true,
     STATE_GAME, 2},
    {"a weapon that is not there",
     object(action("", on("distance_falls_below", "use_item(gone,player);set_action(a)"))),
     "Object tried to use unexesting item! Its name is o"},
    {"a destroy in its own use", used("destroy();set_speed(9);set_action(a)")},
    {"a destroy in its own timer",
     object(action("set_timer(10)", on("timer", "destroy();set_timer(1);set_position(player)")))},
    {"a destroy at an animation's end",
     object(action("set_animation(FIRST);set_animation_type(single);play_animation()",
                   on("animation_end", "destroy();set_animation(SECOND)")))},
    {"a destroy while the level loads", object(action("destroy()"))},
    {"a destroy by the one whom it strikes",
     timed("use_item(club,p)") +
         object(action("", on("melee_hit", "o.destroy();use_item(club,target);destroy()")), "p", "",
                "0,1.25,17.5")},
    {"a destroy done twice", timed("destroy();destroy()"), kDestroyed.c_str()},
    {"a conversation that jumps to itself", talking("^6a^5a ^5a "),
     "CML object o has a dialogue that jumps in a circle at ^5a"},
    {"a conversation that starts itself", talking("^9run_dialogue(d) on and on ")},
    {"a conversation that calls without end",
     talking("^9set_action(b) well ^0 ", action("set_action(b)", "", "b")), kEndless},
    {"a conversation whose speaker goes", talking("^9destroy() bye ^0 you ^9destroy() ^0 ")},
    {"a film that starts films", timed("run_cinematic(c);set_timer(100);inc_local(n,1)") + kFilm, nullptr,
     false, STATE_CINEMATIC},
    {"a film out of a conversation", talking("^9run_cinematic(c) seen ^0 ") + kFilm},
    {"a conversation out of a film",
     timed("run_cinematic(c);set_timer(100);set_action(b)",
           action("", on("timer", "run_dialogue(d)"), "b") + talk("now ^0 ")) +
         kFilm},
    {"a level change out of a use", used("swap_level()"), nullptr, false},
    {"a level change behind a destroy", used("destroy();swap_level();set_speed(5)"), nullptr, false},
    {"a level change out of a conversation", talking("off ^9swap_level() we ^0 go ^0 "), nullptr, false},
    {"a level change in a film",
     timed("run_cinematic(c);set_timer(50);set_action(b)", action("", on("timer", "swap_level()"), "b")) +
         kFilm,
     nullptr, false},
    {"a level change while the level loads", object(action("swap_level()")), nullptr, false},
    {"a level change in a hit, in every frame",
     object(action("", on("distance_falls_below", "use_item(gun,player);swap_level();run_dialogue(d)")) +
            talk("x ")),
     nullptr, false},
};
} // namespace

TEST(BadInput, NothingHangsAndOneRowNamesTheObject) {
    Hall hall;
    ASSERT_TRUE(hall.started);
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.what);
        TempGame::clearErrors();
        hall.t.writeLevel(
            "<files appearance='gallery.oct' collision='gallery.oct' music='' />"
            "<player spawnpoint='hall'><physics position='0,1.25,20' direction='0,0,-1' up='0,1,0' />"
            "<camera firstperson='0' position='0,0.8,3.9' /></player>" +
                row.elements,
            "bad.xml");
        hall.load("bad.xml");
        for (int i = 0; i < 6; ++i) hall.use(25);
        EXPECT_EQ(hall.world.levelFile == "bad.xml", row.goesOn || row.after == STATE_CINEMATIC);
        if (row.after == STATE_GAME) hall.press(CMD_JUMP, 60); // leaves whatever conversation there is
        EXPECT_EQ(hall.app.state(), row.after);
        int named = 0;
        for (const std::string& logged : TempGame::errors()) {
            const bool names = row.row && logged.find(row.row) != std::string::npos;
            if (!names) ADD_FAILURE() << logged;
            named += names;
        }
        EXPECT_EQ(named, row.row ? row.rows : 0);

        // What comes after it is untouched.
        hall.enter("ledger");
        EXPECT_EQ(hall.app.state(), STATE_GAME);
        hall.use();
        EXPECT_EQ(TestWorld::local("ledger", "b"), 17);
        const float before = Hall::hero()->getPosition().z;
        hall.hold(CMD_BACK, 10);
        EXPECT_GT(Hall::hero()->getPosition().z, before + 0.5f);
    }
}
