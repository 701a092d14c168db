#include "script/event_mgr.h"

#include "support/test_world.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {
std::string scripted(const std::string& name) {
    std::string reactions;
    for (const char* type : {"collision_chr", "collision_mesh", "ballistic_hit", "melee_hit"}) {
        reactions += std::string("<reaction type=\"") + type + "\" do=\"inc_local(" + type + ",1)\" />";
    }
    return objectElement(name, "default_action=\"a\"", "<action name=\"a\">" + reactions + "</action>");
}

class Events : public ::testing::Test {
protected:
    Events() {
        t.writeCpm("thing.cpm");
        t.writeCharacter("maincharfinal\\mainchar_noweapon");
        cWorld::instance().spawnPoint = "hut";
        EXPECT_EQ(t.load("<player spawnpoint=\"hut\"><physics direction=\"0,0,1\" /><camera /></player>" +
                         scripted("o") + scripted("p") +
                         objectElement("count", "on_set=\"set_local(n,0)\" default_action=\"a\"",
                                       "<action name=\"a\"><reaction type=\"collision_mesh\" do=\""
                                       "inc_local(n,1)\" /></action>")),
                  0);
    }
    cController* hero() { return cObjectMgr::instance().hero()->getController(); }
    cController* o() { return &TestWorld::script("o"); }
    cController* p() { return &TestWorld::script("p"); }

    TestWorld t;
    cEventMgr& events = cEventMgr::instance();
};
} // namespace

TEST_F(Events, BodiesThatTouchBecomeEachOthersTarget) {
    events.post(cEvent::kTouchedBody, o(), p());
    events.process(16, &t.state);
    EXPECT_EQ(TestWorld::script("o").getTarget(), TestWorld::object("p"));
    EXPECT_EQ(TestWorld::script("p").getTarget(), TestWorld::object("o"));
    EXPECT_EQ(TestWorld::local("o", "collision_chr"), 1);
    EXPECT_EQ(TestWorld::local("p", "collision_chr"), 1);
    events.post(cEvent::kTouchedBody, hero(), p());
    events.post(cEvent::kTouchedBody, nullptr, o());
    events.process(16, &t.state);
    EXPECT_EQ(TestWorld::script("p").getTarget(), cObjectMgr::instance().hero());
    EXPECT_EQ(TestWorld::script("o").getTarget(), nullptr);
    EXPECT_EQ(events.count(), 0);
}

TEST_F(Events, HitsBringDamageCutToWholeNumbers) {
    struct {
        float value;
        int32_t param;
    } const kRows[] = {{7.9f, 7}, {-7.9f, -7}, {NAN, 0}, {INFINITY, 0}, {3e9f, 0}};
    for (const cEvent::Type type : {cEvent::kBallisticHit, cEvent::kMeleeHit}) {
        for (const auto& row : kRows) {
            events.post(type, p(), o(), row.value);
            events.process(16, &t.state);
            EXPECT_EQ(TestWorld::script("o").getParam(), row.param) << row.value;
            EXPECT_EQ(TestWorld::script("o").getTarget(), TestWorld::object("p"));
        }
        EXPECT_EQ(TestWorld::local("o", type == cEvent::kBallisticHit ? "ballistic_hit" : "melee_hit"), 5);
        cWorld::instance().health = 50;
        events.post(type, o(), hero(), 20.7f);
        events.process(16, &t.state);
        EXPECT_EQ(cWorld::instance().health, 30);
    }
}

TEST_F(Events, TheNewestIsHandledFirstAndEachOnce) {
    events.post(cEvent::kTouchedGeometry, &TestWorld::script("count"));
    events.post(cEvent::kBallisticHit, nullptr, o(), 1);
    events.post(cEvent::kMeleeHit, nullptr, o(), 2);
    events.process(16, &t.state);
    EXPECT_EQ(TestWorld::script("o").getParam(), 1) << "posted first, handled last";
    EXPECT_EQ(TestWorld::local("count", "n"), 1);
    events.process(16, &t.state);
    EXPECT_EQ(TestWorld::local("count", "n"), 1);
}

TEST_F(Events, OnlyRecordsOfThatControllerAreRemoved) {
    events.post(cEvent::kBallisticHit, p(), o(), 1);
    events.post(cEvent::kBallisticHit, hero(), o(), 2);
    events.post(cEvent::kBallisticHit, o(), p(), 3);
    events.post(cEvent::kBallisticHit, hero(), o(), 4);
    events.removeFor(p());
    ASSERT_EQ(events.count(), 2);
    EXPECT_EQ(events.events()[0].value, 2);
    EXPECT_EQ(events.events()[1].value, 4);
}
