#include "script/event_mgr.h"

#include "support/test_world.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {
class Events : public ::testing::Test {
protected:
    Events() {
        t.writeModels();
        const std::string inside = "<action name='a'><reaction type='ballistic_hit' do='inc_local(n,1)' />"
                                   "<reaction type='melee_hit' do='inc_local(n,1)' /></action>";
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

TEST_F(Events, OnlyRecordsOfThatControllerAreRemoved) {
    events.post(cEvent::kBallisticHit, p(), o(), 1);
    events.post(cEvent::kBallisticHit, hero(), o(), 2);
    events.post(cEvent::kBallisticHit, o(), p(), 3);
    events.removeFor(p());
    ASSERT_EQ(events.count(), 1);
    EXPECT_EQ(events.events()[0].value, 2);
}
