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
    int frames = 0;
    cDialogue::Box box = d.stepBox();
    for (; box.animating; box = d.stepBox()) {
        EXPECT_LE(box.outer, 220);
        EXPECT_EQ(box.outer, std::min(20 * (frames + 1), 220));
        ++frames;
        ASSERT_LT(frames, 100);
    }
    EXPECT_EQ(frames, 17);
    EXPECT_EQ(box.outer, 220);
    EXPECT_EQ(box.inner, 208);
    d.close();
    for (frames = 0; d.isVisible(); ++frames) {
        EXPECT_TRUE(d.stepBox().animating);
        ASSERT_LT(frames, 100);
    }
    EXPECT_EQ(frames, 17);
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

    say("one ^0 two ^0");
    EXPECT_EQ(page(), "one ");
    use();
    EXPECT_EQ(page(), "two ");
    use();
    EXPECT_FALSE(d.isActive()) << "^0 at the very end leads nowhere else";

    // A first word wider than the box stands on the second line, and every page shows something.
    const std::string wide(60, 'm');
    say(wide + " " + wide + " " + wide + " " + wide + " " + wide + " ");
    int pages = 0;
    for (; d.isActive() && pages < 20; ++pages) {
        const auto words = d.layOutPage();
        ASSERT_FALSE(words.empty());
        EXPECT_EQ(words[0].y, 24);
        use();
    }
    EXPECT_EQ(pages, 2);
}

TEST_F(Dialogue, TagsColourBreakAndName) {
    say("a ^22 b ^29 c ^3 d ^4 e ^1 f ^A ^z ");
    const auto words = d.layOutPage();
    ASSERT_EQ(words.size(), 9u);
    const auto looks = [&](size_t i, const char* text, int line, int r, int g, int b) {
        EXPECT_EQ(words[i].text, text);
        EXPECT_EQ(words[i].y, 24 * line) << text;
        EXPECT_EQ(words[i].colour.r, r) << text;
        EXPECT_EQ(words[i].colour.g, g) << text;
        EXPECT_EQ(words[i].colour.b, b) << text;
    };
    looks(0, "a ", 0, 255, 255, 255);
    looks(1, "b ", 0, 255, 64, 64);
    looks(2, "c ", 0, 255, 255, 255);
    looks(3, "Ann: ", 1, 192, 192, 255);
    looks(4, "d ", 1, 192, 192, 255);
    looks(5, "e ", 2, 255, 255, 255);
    looks(6, "f ", 3, 255, 255, 255);
    looks(7, "Ann ", 3, 255, 255, 255);
    looks(8, "^z ", 3, 255, 255, 255);
    EXPECT_EQ(words[4].x, widthOf("Ann: "));
    say("^3 first ");
    EXPECT_EQ(d.layOutPage()[0].y, 0) << "an empty line is used";
}

TEST_F(Dialogue, JumpsGoBehindTheirLabel) {
    say("x ^5b lost ^6b found ^5q never ");
    EXPECT_EQ(page(), "x  found ") << "the blank behind the label is a word; an unknown label is the end";
    use();
    EXPECT_FALSE(d.isActive());
    TempGame::clearErrors();
    say("^6a^5a ^5a ");
    EXPECT_FALSE(page().empty());
    ASSERT_EQ(TempGame::errors().size(), 1u);
    EXPECT_NE(TempGame::errors()[0].find("object o"), std::string::npos);
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
    d.moveChoice(-1);
    use();
    EXPECT_FALSE(d.isChoosing());
    EXPECT_EQ(page(), " Bad ");
    EXPECT_FALSE(d.isActive()) << "^7 ends it";
    ASSERT_EQ(cEventMgr::instance().count(), 1);
    EXPECT_EQ(cEventMgr::instance().events()[0].type, cEvent::kDialogueEnded);
    cEventMgr::instance().process(16, &t.state);
    EXPECT_EQ(t.state, STATE_GAME);

    say(text);
    page();
    d.moveChoice(4);
    use();
    EXPECT_EQ(page(), " Bad ") << "a choice that was not drawn yet is wrapped as well";

    TempGame::clearErrors();
    say("^82Yes^qNo^q ");
    page();
    use();
    EXPECT_EQ(t.state, STATE_GAME);
    EXPECT_EQ(TempGame::errors().size(), 1u) << "no label q";
    for (const char* broken :
         {"^81Yes^a ", "^87a^ab^ac^ad^ae^af^ag^a ", "^8", "^82Yes^a No", "^82Yes^aNo^"}) {
        TempGame::clearErrors();
        say(broken);
        page();
        EXPECT_FALSE(d.isActive()) << broken;
        ASSERT_EQ(TempGame::errors().size(), 1u) << broken;
        EXPECT_NE(TempGame::errors()[0].find("Talking script contains errors!"), std::string::npos);
    }
}

TEST_F(Dialogue, CallsRunOnceWithTheSpeaker) {
    say("^9inc_local(n,1) said ^9inc_local(n,1) twice ");
    EXPECT_EQ(page(), "said twice ");
    EXPECT_EQ(page(), "twice ") << "laid out from behind the calls";
    EXPECT_EQ(TestWorld::local("o", "n"), 2);
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

TEST_F(Dialogue, TheProcedureStartsItAndTheStateFollows) {
    t.writeCpm("thing.cpm");
    ASSERT_EQ(t.load(objectElement("o", "default_action=\"a\"",
                                   "<action name=\"a\"><reaction type=\"context\" do=\"run_dialogue(d)\" />"
                                   "</action><dialogue name=\"d\">Again ^9run_dialogue(d) </dialogue>")),
              0);
    self().fireReaction(kTriggerContext);
    cEventMgr::instance().process(16, &t.state);
    EXPECT_EQ(t.state, STATE_DIALOGUE);
    EXPECT_EQ(cDialogue::instance().layOutPage().size(), 1u);
    EXPECT_EQ(cDialogue::instance().layOutPage().size(), 1u)
        << "a conversation that begins itself anew starts from its first word";
}
