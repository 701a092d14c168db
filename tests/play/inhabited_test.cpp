// The first level as its people live in it: talk, lever, gate, bell, flight, watch and ride, by keys alone.

#include "script/cml_object.h"
#include "script/dialogue.h"
#include "support/game_run.h"
#include "ui/input_mgr.h"
#include "world/world.h"

#include <SDL.h>
#include <gtest/gtest.h>

using inhabitants::action;
using inhabitants::page;
using inhabitants::place;
using inhabitants::script;

TEST(Inhabited, RosaRemembersWhatWasSaid) {
    GameRun game(GameRun::at("hut"));
    ASSERT_TRUE(game.walkTo(0.4f, -8.2f));
    game.frames(10);
    EXPECT_EQ(action("rosa"), "greet") << "she waves to whom she sees";
    ASSERT_TRUE(game.walkTo(0.8f, -9.8f));
    game.use();
    ASSERT_EQ(game.app.state(), STATE_DIALOGUE);
    EXPECT_NE(page().find("Good morning, Quorvane!"), std::string::npos);
    game.hold(CMD_JUMP, 2);
    game.frames(40);
    ASSERT_EQ(game.app.state(), STATE_GAME);
    game.use();
    EXPECT_NE(page().find("Good morning, Quorvane!"), std::string::npos) << "who left after a word missed it";
    game.use();
    game.use();
    cInputMgr::instance().bindings.setBinding(CMD_USE, SDLK_WORLD_1); // which has no name
    game.frames(2);
    EXPECT_EQ(cDialogue::instance().getHint(),
              "W and S choose a reply, KEY_161 takes it, SPACE ends the talk.");
    cInputMgr::instance().bindings.setBinding(CMD_USE, SDLK_e);
    game.hold(CMD_BACK, 2);
    game.frames(20);
    EXPECT_EQ(cDialogue::instance().getHint(), "") << "who has chosen knows";
    game.use();
    EXPECT_NE(page().find("harbour bell"), std::string::npos) << "the second reply";
    const cVector3 before = game.hero();
    game.hold(CMD_FORWARD, 30);
    EXPECT_EQ(game.hero(), before) << "nobody walks away in the middle of a word";
    game.hold(CMD_JUMP, 2);
    game.frames(40);
    EXPECT_EQ(game.app.state(), STATE_GAME);
    game.use();
    ASSERT_EQ(game.app.state(), STATE_DIALOGUE);
    EXPECT_NE(page().find("The lever stands"), std::string::npos) << "she does not introduce herself twice";
    game.use();
    EXPECT_NE(page().find("What is there to do"), std::string::npos)
        << "but what was cut short is asked again";
}

TEST(Inhabited, TheUseKeyAloneGetsThroughEveryConversation) {
    for (const auto& [spawn, level] :
         {std::pair("hut", "testlevel.xml"), {"shore", "deepwood.xml"}, {"landing", "summit.xml"}}) {
        GameRun game(GameRun::at(spawn, level));
        const cCmlElement& document = cWorld::instance().document;
        cDialogue& talk = cDialogue::instance();
        // From whatever reply the highlight was moved to when the first menu came.
        const auto pressesUntilTheEnd = [&](const cCmlElement& dialogue, cCmlObject& speaker, int choice) {
            GameState state = STATE_DIALOGUE;
            talk.start(dialogue, speaker);
            int presses = 0;
            bool moved = false;
            for (; talk.isActive() && presses < 60; ++presses) {
                talk.layOutPage();
                if (talk.isChoosing() && !moved) talk.moveChoice(choice);
                moved |= talk.isChoosing();
                talk.advance(16, &state);
            }
            talk.close();
            return presses;
        };
        for (const auto& object : document.children)
            for (const auto& e : object->children) {
                if (e->name != "dialogue") continue;
                const std::string& name = object->getAttribute("name");
                for (int choice = 0; choice < cDialogue::kMostReplies; ++choice)
                    EXPECT_LT(pressesUntilTheEnd(static_cast<cCmlElement&>(*e), script(name.c_str()), choice),
                              30)
                        << name << ", " << e->getAttribute("name") << ", reply " << choice;
            }
    }
}

TEST(Inhabited, TheLeverOpensTheGateAndTheBellShutsIt) {
    GameRun game(GameRun::at("hut"));
    ASSERT_TRUE(game.follow({{0.0f, -5.0f}, {-7.6f, -5.0f}, {-7.8f, 2.0f}, {-12.6f, 2.6f}}));
    game.face(-12.6f, 20);
    game.runAndJump(12, 50);
    // And on to the second ledge, with a run-up again.
    ASSERT_TRUE(game.walkTo(-12.6f, 6.6f));
    game.frames(20);
    game.face(-12.6f, 20);
    game.runAndJump(3, 45);
    ASSERT_GT(game.hero().y, 4.1f + 1.2f) << "on the upper ledge";
    game.walkTo(-12.7f, 9, 60);
    EXPECT_EQ(script("gate_bastion").getFlags() & MOVE_PASSABLE, 0u);
    game.use();
    ASSERT_EQ(game.app.state(), STATE_DIALOGUE);
    game.talkToTheEnd();
    game.frames(80);
    EXPECT_NE(script("gate_bastion").getFlags() & MOVE_PASSABLE, 0u) << "the gate stands open";
    EXPECT_GT(std::fabs(script("gate_bastion").getOwner()->getDirection().x), 0.9f) << "and has swung aside";

    ASSERT_TRUE(game.follow({{-8.2f, 8.4f},
                             {-7.2f, 13.0f},
                             {-5.2f, 15.5f},
                             {0.0f, 18.0f},
                             {9.5f, 17.4f},
                             {9.5f, 9.5f},
                             {9.5f, 5.9f}},
                            1200));
    game.use();
    ASSERT_EQ(game.app.state(), STATE_DIALOGUE);
    game.talkToTheEnd();
    game.frames(60);
    EXPECT_FALSE(game.walkTo(9.5f, 9.5f, 200)) << "the bell has shut the gate behind him";
    ASSERT_TRUE(game.walkTo(9.5f, 5.9f));
    game.use();
    game.talkToTheEnd();
    game.frames(80);
    EXPECT_TRUE(game.walkTo(9.5f, 9.5f, 300)) << "the second stroke lets him go";
    script("boat_pier").fireReaction(kTriggerContext);
    EXPECT_NE(page().find("a light answers the bell"), std::string::npos) << page();

    ASSERT_TRUE(cWorld::instance().startNewGame("Ada"));
    game.frames(60);
    EXPECT_EQ(action("gate_bastion"), "shut") << "the lever is down again";
    script("boat_pier").fireReaction(kTriggerContext);
    EXPECT_NE(page().find("nowhere to row"), std::string::npos) << "nor has she rung the bell: " << page();
}

TEST(Inhabited, HensFleeAndTheGuardFollows) {
    GameRun game(GameRun::at("pier"));
    ASSERT_TRUE(game.walkTo(0, 19));
    int frames = 0;
    while (action("harald") != "notice" && ++frames < 1500) game.frames(1);
    EXPECT_LT(frames, 1500) << "he looks towards the pier and sees the hero";
    ASSERT_TRUE(game.walkTo(-4, 17.5f));
    game.frames(400);
    EXPECT_LT((place("harald") - game.hero()).length(), 5.5f);
    ASSERT_TRUE(game.walkTo(-7.2f, 13));
    const cVector3 hen = place("hen_1");
    for (int i = 0; i < 200 && action("hen_1") != "flee"; ++i) {
        game.player.walkTowards({hen.x, 0, hen.z});
        game.frames(1);
    }
    EXPECT_EQ(action("hen_1"), "flee");
    game.player.release(CMD_FORWARD);
    const float near = (place("hen_1") - game.hero()).length();
    game.frames(30);
    EXPECT_GT((place("hen_1") - game.hero()).length(), near + 0.5f);
}

TEST(Inhabited, TheTortoiseWalksAndBlocks) {
    GameRun game(GameRun::at("hut"));
    const cVector3 first = place("tortoise");
    game.frames(250);
    EXPECT_GT((place("tortoise") - first).length(), 2) << "it goes its way";
    ASSERT_TRUE(game.follow({{0.0f, -5.0f}, {5.8f, -5.0f}}));
    game.walkTo(14, -4.8f, 400);
    EXPECT_LT(game.hero().x, place("tortoise").x) << "nobody walks through it";
    game.use();
    EXPECT_EQ(game.app.state(), STATE_DIALOGUE);
}

TEST(Inhabited, TheTrolleyCarriesHimUpAndDown) {
    GameRun game(GameRun::at("hut"));
    ASSERT_TRUE(game.follow({{0.0f, -10.4f}, {-6.2f, -10.0f}}));
    const auto ride = [&](int frames) {
        game.hold(CMD_USE, 2);
        EXPECT_EQ(game.app.state(), STATE_CINEMATIC);
        float apart = 0;
        for (int i = 2; i < frames; ++i) {
            game.frames(1);
            const cVector3 between = game.hero() - place("trolley_hill");
            if (i < 190) apart = std::max(apart, std::hypot(between.x, between.z));
        }
        EXPECT_LT(apart, 0.9f) << "he stays in the trolley";
        game.frames(5);
        EXPECT_EQ(game.app.state(), STATE_GAME);
    };
    ride(300);
    EXPECT_GT(game.hero().y, 6.5f) << "at the light";
    ASSERT_TRUE(game.walkTo(-14.9f, -9));
    ride(240);
    EXPECT_LT(game.hero().y, 3.6f);
    ASSERT_TRUE(game.walkTo(-3, -9)) << "he has ground under his feet";
}
