// The second and third level as they are played: fights won and lost, fights talked away, the way to the end.

#include "core/name_hash.h"
#include "game/item_def.h"
#include "script/cml_object.h"
#include "support/game_run.h"
#include "ui/input_settings.h"
#include "world/model_objects.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <gtest/gtest.h>

using inhabitants::action;
using inhabitants::page;
using inhabitants::place;
using inhabitants::script;

namespace {
cInventory& bag() {
    return cWorld::instance().inventory;
}
int32_t item(const char* name) {
    return cItemDefs::instance().findItem(name);
}
float distanceTo(const GameRun& game, const char* name) {
    return (place(name) - game.hero()).length();
}
/// Goes for an enemy and strikes whenever it is within reach, until it is dead. False when the hero dies
/// first.
bool fight(GameRun& game, const char* enemy, float reach, int mostFrames) {
    for (int i = 0; i < mostFrames && cWorld::instance().health > 0; ++i) {
        if (action(enemy) == "dead") return true;
        if (action(enemy) == "die") {
            game.player.release(CMD_FORWARD);
            game.frames(1);
        } else if (distanceTo(game, enemy) < reach) {
            game.player.turnTowards(place(enemy));
            game.hold(CMD_FIRE, 2);
        } else {
            game.player.walkTowards(place(enemy));
            game.frames(1);
        }
    }
    return false;
}
/// Along the path that winds once round the mountain: 0 at its foot, 1 at the top.
bool walkUp(GameRun& game, float part, float aside, int mostFrames) {
    const float r = 26 - 14.5f * part + aside, angle = 6.28318531f * part;
    return game.walkTo(r * std::sin(angle), r * std::cos(angle), mostFrames);
}
/// Turns the pages until one holds `words`; then takes the reply `down` places below the highlighted one.
void answer(GameRun& game, const char* words, int down) {
    for (int i = 0; i < 12 && page().find(words) == std::string::npos; ++i) game.use();
    ASSERT_NE(page().find(words), std::string::npos) << page();
    for (int i = 0; i < down; ++i) {
        game.hold(CMD_BACK, 2);
        game.frames(20);
    }
    game.use();
}
} // namespace

TEST(Story, AStickBeatsABoarAndTheHerbWomanPaysForItsTusk) {
    GameRun game(GameRun::at("shore", "deepwood.xml"));
    ASSERT_TRUE(game.follow({{0, 26}, {1.8f, 24.4f}}));
    game.walkTo(2.9f, 24.2f, 40); // right up to the crate
    game.use();
    ASSERT_TRUE(bag().has(item("stick"))) << "found at the landing";
    game.walkTo(-0.5f, 23, 120);
    ASSERT_TRUE(fight(game, "boar_path", 2.4f, 3000)) << "health " << cWorld::instance().health;
    EXPECT_GE(cWorld::instance().health, 30) << "it hurts, but a new player lives";
    const cVector3 body = place("boar_path");
    game.walkTo(body.x, body.z, 400);
    game.use();
    ASSERT_EQ(bag().countOf(item("tusk")), 1);

    ASSERT_TRUE(game.follow({{0, 26}, {-2.5f, 21}, {3, 12}, {0, 4}, {-8, 8}, {-12.8f, 6.4f}}, 1500));
    game.use();
    answer(game, "Thank you, Edda", 3);
    game.talkToTheEnd();
    EXPECT_EQ(bag().countOf(item("draught")), 2) << "a gift";
    game.frames(60);
    game.use();
    game.talkToTheEnd();
    EXPECT_EQ(bag().countOf(item("draught")), 4) << "and the price of a tusk";
    EXPECT_FALSE(bag().has(item("tusk")));

    // One of them mends him.
    cWorld::instance().health = 30;
    game.hold(CMD_NEXT_ITEM, 2);
    game.frames(5);
    ASSERT_TRUE(bag().isSelected(item("draught")));
    game.hold(CMD_FIRE, 2);
    game.frames(60);
    EXPECT_GE(cWorld::instance().health, 30 + 40);
    EXPECT_LT(cWorld::instance().health, 30 + 50);
}

TEST(Story, StandingBeforeTheRaidersIsDeathAndTheShoreAgain) {
    GameRun game(GameRun::at("shore", "deepwood.xml"));
    ASSERT_TRUE(game.follow({{0, 26}, {-2.5f, 21}, {-0.5f, 17}}));
    // Round the boar, into the light of the fire.
    game.player.press(CMD_RUN);
    ASSERT_TRUE(game.follow({{3, 12}, {0, 4}, {8, 1}, {13.5f, 2}}, 1500));
    game.player.release(CMD_RUN);
    bool dead = false;
    for (int i = 0; i < 6000 && !dead; ++i) {
        game.frames(1);
        dead = cWorld::instance().health <= 0;
    }
    ASSERT_TRUE(dead) << "two crossbows at twelve paces; health " << cWorld::instance().health;
    game.frames(400);
    EXPECT_EQ(cWorld::instance().health, 100);
    EXPECT_GT(game.hero().z, 30) << "back where the boat landed";
    EXPECT_EQ(action("raider_fire"), "watch") << "and nobody remembers him";
}

TEST(Story, APistolBeatsAnOutlander) {
    GameRun game(GameRun::at("landing", "summit.xml"));
    bag().give(item("pistol"), 6); // as it is found on the first island
    for (float part = 0; part < 0.21f; part += 0.02f) ASSERT_TRUE(walkUp(game, part, 0, 300)) << part;
    ASSERT_NE(action("raider_bend"), "watch") << "he has seen the hero";
    ASSERT_TRUE(fight(game, "raider_bend", 8, 1500)) << "health " << cWorld::instance().health;
    EXPECT_GE(cWorld::instance().health, 50) << "two bolts at the most";
    const cVector3 body = place("raider_bend");
    game.walkTo(body.x, body.z, 400);
    game.use();
    EXPECT_TRUE(bag().has(item("grenade"))) << "what he carried";
}

TEST(Story, ApplesBuyTheBridgeAndALetterTheBeacon) {
    GameRun game(GameRun::at("shore", "deepwood.xml"));
    bag().give(item("apple"), 3);
    bag().give(item("letter"), 1);
    game.player.press(CMD_RUN);
    ASSERT_TRUE(
        game.follow({{0, 26}, {-2.5f, 21}, {-0.5f, 17}, {3, 12}, {0, 4}, {0, -5}, {1.7f, -6.2f}}, 1500));
    game.player.release(CMD_RUN);
    game.use();
    ASSERT_NE(page().find("smells of summer"), std::string::npos) << page();
    game.talkToTheEnd();
    EXPECT_FALSE(bag().has(item("apple")));
    game.frames(120);
    EXPECT_EQ(action("toll_gate"), "open");
    game.player.press(CMD_RUN);
    ASSERT_TRUE(game.follow({{0.9f, -8}, {0.9f, -17}, {0.9f, -22}, {0, -32}, {0.2f, -33.4f}}, 1200));
    game.walkTo(0.4f, -35, 60);
    game.player.release(CMD_RUN);
    game.use();
    game.talkToTheEnd();
    game.frames(120);
    ASSERT_EQ(cWorld::instance().levelFile, "summit.xml");
    ASSERT_TRUE(bag().has(item("letter"))) << "what he carries comes with him";
    EXPECT_LT(place("flame_beacon").y, 0) << "dark";

    // Up the mountain, past those who shoot.
    game.player.press(CMD_RUN);
    ASSERT_TRUE(game.walkTo(0, 26));
    for (float part = 0.02f; part < 0.87f; part += 0.02f) {
        // Who stands in the way is passed on one side or the other.
        const auto reached = [&](float aside) { return walkUp(game, part, aside, 150); };
        ASSERT_TRUE(reached(0) || reached(1.2f) || reached(-1.2f) || reached(0)) << "part " << part;
        cWorld::instance().health = 100; // the way is what is walked here, not the fights
    }
    game.player.release(CMD_RUN);
    for (int i = 0; i < 20 && game.app.state() != STATE_DIALOGUE; ++i) {
        walkUp(game, 0.88f + 0.005f * static_cast<float>(i), 0, 60);
        game.frames(25);
    }
    for (int i = 0; i < 200 && game.app.state() != STATE_DIALOGUE; ++i) game.frames(1);
    ASSERT_NE(page().find("what is that seal"), std::string::npos) << page();
    game.talkToTheEnd();
    ASSERT_TRUE(bag().has(item("flint"))) << "Marn gives in";
    game.frames(200);
    ASSERT_TRUE(game.follow({{-1.5f, 4}, {-1.2f, 2.2f}}));
    game.walkTo(0, 0, 60); // up the steps to the bowl
    game.use();
    for (int i = 0; i < 100 && game.app.state() != STATE_CINEMATIC; ++i) game.frames(1);
    ASSERT_EQ(game.app.state(), STATE_CINEMATIC);
    EXPECT_GT(place("flame_beacon").y, place("beacon_top").y) << "the beacon burns";
    for (int i = 0; i < 1500 && game.app.state() != STATE_QUIT; ++i) game.frames(1);
    EXPECT_EQ(game.app.state(), STATE_QUIT) << "the last picture, and out";
}

TEST(Story, WhoIsKilledLiesDownAndOnceSearchedIsInNobodysWay) {
    for (const auto& [spawn, level, people] :
         {std::tuple("shore", "deepwood.xml", 6u), {"landing", "summit.xml", 5u}}) {
        GameRun game(GameRun::at(spawn, level));
        std::vector<cCmlObject*> alive, dead;
        for (const auto& e : cWorld::instance().document.children) {
            const std::string& name = e->getAttribute("name");
            if (e->name != "object" ||
                !static_cast<cCmlElement&>(*e).findChildWith(kCmlAction, "name", "die"))
                continue;
            alive.push_back(&script(name.c_str()));
        }
        ASSERT_EQ(alive.size(), people);
        const auto pose = [](const cCmlObject* who) -> const cCharacterPose& {
            return static_cast<cAnimatedObject*>(who->getOwner())->pose();
        };
        const auto hit = [](cCmlObject* who, int32_t damage) {
            who->setParam(damage);
            who->fireReaction(kTriggerBallisticHit);
        };
        for (cCmlObject* who : alive) hit(who, 1);
        // Best when the pain, or the aiming, is over and nothing plays; boars never stand still.
        for (int frame = 0; !alive.empty(); ++frame) {
            game.frames(1);
            std::erase_if(alive, [&](cCmlObject* who) {
                if (pose(who).isPlaying() && frame < 200) return false;
                hit(who, 1000);
                dead.push_back(who);
                return true;
            });
        }
        game.frames(150);
        for (cCmlObject* who : dead) {
            const cAnimModel& body = pose(who).getModel()->parts[kLowerPart];
            const int32_t death = body.findAnimation("BOTH_DEATH1");
            EXPECT_GE(pose(who).getState(kLowerPart).frameA,
                      body.animations[static_cast<size_t>(death)].endFrame - 1)
                << who->name() << " still stands";
            EXPECT_EQ(who->getCurrentAction()->getAttribute("name"), "dead");
            who->fireReaction(kTriggerContext);
            EXPECT_FALSE(who->isActive()) << who->name();
        }
    }
}

TEST(Story, WhoLeavesAConversationEarlyIsAskedOrGivenAgain) {
    const auto standBefore = [](GameRun& game, const char* whom) {
        cObjectMgr::instance().hero()->setPosition(place(whom) + cVector3(0, 0, 1.6f));
        game.frames(5);
    };
    const auto leave = [](GameRun& game) {
        game.hold(CMD_JUMP, 2);
        game.frames(20);
        EXPECT_EQ(game.app.state(), STATE_GAME);
    };
    {
        GameRun game(GameRun::at("shore", "deepwood.xml"));
        standBefore(game, "edda");
        game.use();
        leave(game);
        game.use();
        game.talkToTheEnd();
        EXPECT_EQ(bag().countOf(item("draught")), 2);
        game.frames(30);
        game.use();
        game.talkToTheEnd();
        EXPECT_EQ(bag().countOf(item("draught")), 2) << "but not twice";
    }
    GameRun game(GameRun::at("landing", "summit.xml"));
    bag().give(item("letter"), 1);
    standBefore(game, "marn");
    for (int times = 0; times < 2; ++times) {
        for (int i = 0; i < 250 && game.app.state() != STATE_DIALOGUE; ++i) game.frames(1);
        game.frames(40);
        ASSERT_NE(page().find("what is that seal"), std::string::npos) << page();
        leave(game);
    }
    EXPECT_TRUE(bag().has(item("letter")));
}

TEST(Story, ThePowderAtTheArchLoadsWhatTheHeroHas) {
    GameRun game(GameRun::at("landing", "summit.xml"));
    for (const bool pistol : {false, true})
        for (const bool rifle : {false, true}) {
            bag().clear();
            ASSERT_EQ(cWorld::instance().loadLevel("summit.xml"), 0);
            if (pistol) bag().give(item("pistol"), 1);
            if (rifle) bag().give(item("rifle"), 1);
            for (int i = 0; i < 4 && action("powder_arch") == "full"; ++i)
                script("powder_arch").fireReaction(kTriggerContext);
            EXPECT_EQ(action("powder_arch"), "empty");
            EXPECT_EQ(bag().countOf(item("pistol")), pistol ? 1 + 6 : 0);
            EXPECT_EQ(bag().countOf(item("rifle")), rifle ? 1 + 3 : 0) << "with a pistol: " << pistol;
            EXPECT_EQ(bag().countOf(item("draught")), 1);
        }
}
