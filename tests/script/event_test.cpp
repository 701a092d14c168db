#include "script/event_mgr.h"

#include "script/dialogue.h"
#include "support/test_world.h"
#include "ui/input_mgr.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {
class Events : public ::testing::Test {
protected:
    Events() {
        t.writeModels();
        const std::string inside = "<action name='a'><reaction type='ballistic_hit' do='inc_local(n,1)' />"
                                   "<reaction type='melee_hit' do='inc_local(n,1)' /></action>"
                                   "<dialogue name='d'>Ouch. ^0 ^7 </dialogue>";
        EXPECT_EQ(
            t.load(spawnElement() + objectElement("o", "default_action='a'", inside) + objectElement("p")),
            0);
    }
    cController* hero() { return cObjectMgr::instance().hero()->getController(); }
    cController* o() { return &TestWorld::script("o"); }
    cController* p() { return &TestWorld::script("p"); }

    TestWorld t;
    cEventMgr& events = cEventMgr::instance();
};
} // namespace

TEST_F(Events, HitsBringDamageCutToWholeNumbers) {
    for (const cEvent::Type type : {cEvent::kBallisticHit, cEvent::kMeleeHit}) {
        for (const auto& [value, param] :
             {std::pair(7.9f, 7), {-7.9f, -7}, {NAN, 0}, {INFINITY, 0}, {3e9f, 0}}) {
            events.post(type, p(), o(), value);
            events.process(16, &t.state);
            EXPECT_EQ(TestWorld::script("o").getParam(), param) << value;
            EXPECT_EQ(TestWorld::script("o").getTarget(), TestWorld::object("p"));
        }
        cWorld::instance().health = 50;
        events.post(type, o(), hero(), 20.7f);
        events.process(16, &t.state);
        EXPECT_EQ(cWorld::instance().health, 30);
    }
}

TEST_F(Events, TheNewestIsHandledFirstAndEachOnce) {
    events.post(cEvent::kBallisticHit, nullptr, o(), 1);
    events.post(cEvent::kMeleeHit, nullptr, o(), 2);
    for (int i = 0; i < 2; ++i) events.process(16, &t.state);
    EXPECT_EQ(TestWorld::script("o").getParam(), 1) << "posted first, handled last";
    EXPECT_EQ(TestWorld::local("o", "n"), 2);
}

TEST_F(Events, AConversationBehindTheMenuIsWhatItReturnsTo) {
    cInputMgr& input = cInputMgr::instance();
    cInventory& inventory = cWorld::instance().inventory;
    struct {
        GameState state, behind, stateAfter, behindAfter;
    } const kRows[] = {{STATE_GAME, STATE_GAME, STATE_DIALOGUE, STATE_GAME},
                       {STATE_INVENTORY, STATE_GAME, STATE_DIALOGUE, STATE_GAME},
                       {STATE_MENU, STATE_GAME, STATE_MENU, STATE_DIALOGUE},
                       {STATE_MENU, STATE_INVENTORY, STATE_MENU, STATE_DIALOGUE}};
    for (const auto& row : kRows) {
        t.state = row.state;
        input.returnState = row.behind;
        const bool open = row.state == STATE_INVENTORY || row.behind == STATE_INVENTORY;
        if (open) inventory.toggle();
        cDialogue::instance().start(*TestWorld::script("o").getElement()->findChild(kCmlDialogue),
                                    TestWorld::script("o"));
        events.post(cEvent::kDialogueStarted, o());
        events.process(16, &t.state);
        EXPECT_EQ(t.state, row.stateAfter) << row.state << row.behind;
        EXPECT_EQ(input.returnState, row.behindAfter) << row.state << row.behind;
        EXPECT_FALSE(inventory.isOpen());
        cDialogue::instance().close();
        events.post(cEvent::kDialogueEnded, o());
        events.process(16, &t.state);
        EXPECT_EQ(row.state == STATE_MENU ? input.returnState : t.state, STATE_GAME);
        EXPECT_EQ(t.state == STATE_MENU, row.state == STATE_MENU) << "only the player closes the menu";
    }
}

TEST_F(Events, OnlyRecordsOfThatControllerAreRemoved) {
    events.post(cEvent::kBallisticHit, p(), o(), 1);
    events.post(cEvent::kBallisticHit, hero(), o(), 2);
    events.post(cEvent::kBallisticHit, o(), p(), 3);
    events.removeFor(p());
    ASSERT_EQ(events.count(), 1);
    EXPECT_EQ(events.events()[0].value, 2);
}
