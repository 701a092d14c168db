#include "script/dialogue.h"

#include "render/renderer.h"
#include "script/event_mgr.h"
#include "support/test_world.h"

#include <gtest/gtest.h>

namespace {
constexpr int kScreen = 640; // with margins of 100 the box is 440 wide, the text 416; three lines fit

class Dialogue : public ::testing::Test {
protected:
    Dialogue() { cWorld::instance().heroName = "Ann"; }

    void say(const std::string& text) {
        t.writeCpm("thing.cpm");
        ASSERT_EQ(t.load(objectElement("o", "default_action=\"a\"",
                                       "<action name=\"a\" /><dialogue name=\"d\">" + text + "</dialogue>")),
                  0);
        d.start(*self().getElement()->findChild(kCmlDialogue), self());
    }
    cCmlObject& self() { return TestWorld::script("o"); }
    std::string page() {
        std::string all;
        int y = 0;
        for (const auto& word : d.layOutPage()) {
            if (word.y != y) all += "|";
            y = word.y;
            all += word.text;
        }
        return all;
    }
    void use() {
        t.state = STATE_DIALOGUE;
        d.advance(16, &t.state);
    }

    TestWorld t;
    cDialogue d{kScreen};
};

int widthOf(const std::string& text) {
    return cRenderer::instance().textWidth(0, 1, text);
}
} // namespace

TEST_F(Dialogue, TheBoxOpensInStepsAndCloses) {
    say("Hello ");
    // 220 + 110 pixels in steps of 20, then the text.
    cDialogue::Box box = d.stepBox();
    for (int frame = 1; frame <= 17; ++frame, box = d.stepBox()) {
        EXPECT_TRUE(box.animating) << frame;
        EXPECT_EQ(box.outer, std::min(20 * frame, 220));
    }
    EXPECT_FALSE(box.animating);
    EXPECT_EQ(box.outer, 220);
    EXPECT_EQ(box.inner, 208);
    d.close();
    for (int frame = 1; frame <= 17; ++frame) {
        EXPECT_TRUE(d.isVisible()) << frame;
        EXPECT_TRUE(d.stepBox().animating) << frame;
    }
    EXPECT_FALSE(d.isVisible());
    EXPECT_EQ(cDialogue(50).stepBox().outer, 0) << "a screen narrower than the margins";
}

TEST_F(Dialogue, WordsWrapAndPagesTurn) {
    const std::string word = "mmmmmmmmmmmm ";
    const int fitting = 416 / widthOf(word);
    ASSERT_GE(fitting, 2);
    std::string line;
    for (int i = 0; i < fitting; ++i) line += word;
    say(line + line + line + line + line);
    EXPECT_EQ(d.layOutPage().back().y, 3 * 24) << "a line may begin at 72 of 120 pixels";
    EXPECT_EQ(page(), line + "|" + line + "|" + line + "|" + line);
    use();
    EXPECT_EQ(t.state, STATE_DIALOGUE);
    EXPECT_EQ(page(), line);
    use();
    EXPECT_EQ(t.state, STATE_GAME) << "the text is at its end";
    EXPECT_FALSE(d.isActive());

    // A first word wider than the box stands on the second line, and every page shows something.
    const std::string wide(60, 'm');
    say(wide + " " + wide + " " + wide + " " + wide + " " + wide + " ");
    for (int i = 0; i < 2; ++i, use()) {
        ASSERT_FALSE(d.layOutPage().empty());
        EXPECT_EQ(d.layOutPage()[0].y, 24);
        EXPECT_TRUE(d.isActive());
    }
    EXPECT_FALSE(d.isActive());
    say("one ^0");
    page();
    use();
    EXPECT_FALSE(d.isActive()) << "^0 at the very end leads nowhere else";
}

TEST_F(Dialogue, WhatIsNoTagIsAWordAndWhatIsNoColourIsWhite) {
    say("a ^22 b ^29 c ^z x ^5b lost ^6b found ");
    EXPECT_EQ(page(), "a b c ^z x  found ") << "the blank behind a label is a word";
    EXPECT_EQ(d.layOutPage()[1].colour.g, 64);
    EXPECT_EQ(d.layOutPage()[2].colour.g, 255);
    say("^3 first ^3 second ");
    EXPECT_EQ(page(), "Ann: first |Ann: second ") << "an empty line is used";
}

TEST_F(Dialogue, RepliesAreChosenAndWrapped) {
    const std::string text = "Well? ^83Yes^aNo^bMaybe^a ^6a Good ^7 ^6b Bad ^7 ";
    say(text);
    EXPECT_EQ(page(), "Well? Yes|No|Maybe");
    EXPECT_TRUE(d.isChoosing());
    d.moveChoice(-1);
    const auto words = d.layOutPage();
    EXPECT_EQ(d.getChoice(), 2) << "up from the first reply is the last";
    EXPECT_EQ(words[3].colour.r, 255);
    EXPECT_EQ(words[1].colour.r, 128);
    EXPECT_EQ(words[2].x, 0);
    say(text);
    page();
    d.moveChoice(4);
    use();
    EXPECT_FALSE(d.isChoosing());
    EXPECT_EQ(page(), " Bad ") << "a choice that was not drawn yet is wrapped as well";
    EXPECT_FALSE(d.isActive()) << "^7 ends it";
    cEventMgr::instance().process(16, &t.state);
    EXPECT_EQ(t.state, STATE_GAME);

    const std::string bad = "Talking script contains errors!";
    for (const auto& [script, row] : {std::pair("^82Yes^qNo^q ", std::string("Could not find target point")),
                                      {"^81Yes^a ", bad},
                                      {"^87a^ab^ac^ad^ae^af^ag^a ", bad},
                                      {"^8", bad},
                                      {"^82Yes^a No", bad},
                                      {"^82Yes^aNo^", bad}}) {
        TempGame::clearErrors();
        say(script);
        page();
        if (d.isActive()) use();
        EXPECT_FALSE(d.isActive()) << script;
        ASSERT_EQ(TempGame::errors().size(), 1u) << script;
        EXPECT_NE(TempGame::errors()[0].find(row), std::string::npos) << script;
    }
}

TEST_F(Dialogue, TheSpeakersEndIsTheConversationsEnd) {
    cDialogue& game = cDialogue::instance();
    say("^9destroy() bye ");
    game.start(*self().getElement()->findChild(kCmlDialogue), self());
    game.layOutPage();
    t.state = STATE_DIALOGUE;
    EXPECT_TRUE(game.isActive());
    t.frame();
    EXPECT_FALSE(game.isActive());
    t.frame();
    EXPECT_EQ(t.state, STATE_GAME);
}
