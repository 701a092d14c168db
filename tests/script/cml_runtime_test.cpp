#include "core/name_hash.h"
#include "game/physics_world.h"
#include "script/event_mgr.h"
#include "script/frame_budget.h"
#include "support/test_world.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {
const std::string kHero = spawnElement("0,0,10", "0,0,1");
const std::string kBall =
    "<physics position=\"0,5,0\" direction=\"1,0,0\" up=\"0,1,0\"><boundingvolume radius=\"0.5\" />"
    "</physics>";
const std::string kWalker = "<physics position=\"0,5,0\" direction=\"1,0,0\" up=\"0,1,0\" gravity=\"1\">"
                            "<boundingvolume radius=\"0.5\" /></physics>";

std::string reaction(const std::string& type, const std::string& doList, const std::string& inside = "") {
    return "<reaction type=\"" + type + "\" do=\"" + doList + "\">" + inside + "</reaction>";
}
std::string action(const std::string& inside, const std::string& onSet = "", const std::string& name = "a") {
    return "<action name=\"" + name + "\" on_set=\"" + onSet + "\">" + inside + "</action>";
}

class CmlRuntime : public ::testing::Test {
protected:
    CmlRuntime() { t.writeModels(); }
    /// One object "o" whose default action is "a".
    void object(const std::string& inside, const std::string& physics = kBall,
                const std::string& others = "") {
        ASSERT_EQ(
            t.load(kHero + objectElement("o", "default_action=\"a\" fov=\"60\"", inside, physics) + others),
            0);
    }
    /// Runs a list through the context reaction of an object made for it.
    void run(const std::string& list, const std::string& physics = kBall, const std::string& inside = "") {
        object(action(reaction("context", list, inside)), physics);
        self().fireReaction(kTriggerContext);
    }
    /// Whether these tests let the requirement of an object made for it happen.
    bool holds(const std::string& tests, const std::string& others = "") {
        object(action(reaction("context", "set_local(r,0)",
                               "<requirement test=\"" + tests + "\" do=\"set_local(r,1)\" />")),
               kBall, others);
        return fires();
    }
    bool fires() {
        self().fireReaction(kTriggerContext);
        return local("r") == 1;
    }
    cCmlObject& self() { return TestWorld::script("o"); }
    int32_t local(const char* name) { return TestWorld::local("o", name); }
    void update(uint32_t ms = 16) { cObjectMgr::instance().update(ms, &t.state); }

    TestWorld t;
};
} // namespace

TEST_F(CmlRuntime, RequirementsAreAlternativesInOrder) {
    const auto first = [&](const std::string& a, const std::string& b) {
        run("set_local(r,3)", kBall,
            "<requirement test=\"" + a + "\" do=\"set_local(r,1)\" /><requirement test=\"" + b +
                "\" do=\"set_local(r,2)\" />");
        return local("r");
    };
    EXPECT_EQ(first("active()", "active()"), 1);
    EXPECT_EQ(first("local_equals(r,7)", "active()"), 2);
    EXPECT_EQ(first("local_equals(r,7)", "local_more_than(r,0)"), 3) << "none holds: the reaction's own list";
    EXPECT_EQ(first("", "active()"), 1) << "an empty test always holds";
    EXPECT_EQ(first("active();local_equals(r,1)", "active();active()"), 2) << "all tests must hold";
    EXPECT_EQ(first("nobody.local_equals(r,1)", "active()"), 1)
        << "tests of objects that do not exist are skipped";
}

TEST_F(CmlRuntime, PrefixedCallsActOnTheOtherWithTheWritersNumbers) {
    object(action(reaction("context", "nobody.set_speed(1);p.set_speed(500);set_local(one,1);"
                                      "set_local(two,2);p.set_local(two,5);p.set_local(three,6)")),
           kBall, objectElement("p", "on_set=\"set_local(x,0);set_local(y,0)\"") + objectElement("p"));
    self().fireReaction(kTriggerContext);
    EXPECT_EQ(TestWorld::script("p").getSpeed(), 0.5f);
    EXPECT_EQ(self().getSpeed(), 0);
    EXPECT_EQ(TestWorld::local("p", "y"), 5);
    EXPECT_EQ(TestWorld::local("p", "x"), 0);
    EXPECT_EQ(local("two"), 2);
}

TEST_F(CmlRuntime, VariablesCountAndWrap) {
    struct {
        const char* list;
        int32_t a;
    } const kRows[] = {
        {"set_local(a,2147483647);inc_local(a,1)", INT32_MIN},
        {"set_local(a,-2147483648);dec_local(a,1)", INT32_MAX},
        {"set_local(a,1);dec_local(a,-2147483648)", INT32_MIN + 1},
        {"set_local(a)", 0},
        {"randomize_local(a,1)", 0},
        {"set_local(a,9);randomize_local(a,0)", 9},
        {"set_local(a,9);set_local(z,0);randomize_local(a,z)", 9},
        {"set_local(a,9);randomize_local(a,-1)", 0},
    };
    for (const auto& row : kRows) {
        run(row.list);
        EXPECT_EQ(local("a"), row.a) << row.list;
    }
    run("randomize_local(a,-2147483648);randomize_local(b,-7);randomize_global(h,3)");
    EXPECT_GE(local("a"), 0);
    EXPECT_GE(local("b"), 0) << "the remainder has the sign of the random number";
    EXPECT_LT(local("b"), 7);
}

TEST_F(CmlRuntime, TheTargetsKindIsComparedUnsigned) {
    for (const auto& [test, holding] : {std::pair("target_type(65535)", true), {"target_type(-1)", false}}) {
        EXPECT_FALSE(holds(test, objectElement("p", "type=\"Ghost\""))) << "without a target: " << test;
        self().setTarget(TestWorld::object("p"));
        EXPECT_EQ(fires(), holding) << test;
    }
}

TEST_F(CmlRuntime, WhatAFrameCannotHoldIsLeftOut) {
    std::string list;
    for (int i = 0; i < 15; ++i) list += "play_stream();";
    run(list);
    EXPECT_EQ(FrameBudget::instance().musicStarts, 0);
    EXPECT_EQ(TempGame::errorCount("CML object o asks for more than a frame can hold"), 1);
    cEventMgr::instance().process(16, &t.state);
    EXPECT_GT(FrameBudget::instance().musicStarts, 0) << "the next one begins anew";
}

TEST_F(CmlRuntime, TimersFireWhenTheyHaveElapsed) {
    object(action(reaction("timer", "inc_local(n,1)"), "set_timer(32);set_local(n,0)"));
    update();
    EXPECT_EQ(local("n"), 0);
    update();
    EXPECT_EQ(local("n"), 1) << "a timer equal to the elapsed time fires";
    EXPECT_EQ(self().getTimer(), 0u);
    update();
    EXPECT_EQ(local("n"), 1);
    self().setTimer(1);
    t.state = STATE_MENU;
    update(1000);
    EXPECT_EQ(local("n"), 1) << "time stands still behind the menu";
    t.state = STATE_CINEMATIC;
    update(1000);
    EXPECT_EQ(local("n"), 2);
    self().setTimer(0xFFFFFFFF);
    update(0xFFFFFFFE);
    EXPECT_EQ(self().getTimer(), 1u);
}

TEST_F(CmlRuntime, LeavingFiresOnlyOutsideAndOutwardBound) {
    object(
        action("<reaction type=\"distance_exceeds\" distance=\"2\" point=\"origin\" do=\"inc_local(n,1)\" />",
               "set_local(n,0)"));
    const auto fires = [&](float x, const cVector3& direction) {
        const int32_t before = local("n");
        TestWorld::object("o")->setPosition({x, 5, 0});
        self().setMoveDirection(direction);
        update();
        return local("n") - before;
    };
    EXPECT_EQ(fires(1.9f, {1, 0, 0}), 0);
    EXPECT_EQ(fires(2.1f, {1, 0, 0}), 1);
    EXPECT_EQ(fires(2.1f, {-1, 0, 0}), 0);
    EXPECT_EQ(fires(2.1f, {0, 1, 0}), 1);
    EXPECT_EQ(fires(2.1f, {0, 1, 0}), 1) << "on every update while both hold";
}

TEST_F(CmlRuntime, ApproachIsMeasuredFromTheNamedPoint) {
    const auto near = [&](const std::string& point, const cVector3& at, bool heroStays = true) {
        object(action("<reaction type=\"distance_falls_below\" distance=\"3\" point=\"" + point +
                          "\" do=\"inc_local(n,1)\" />",
                      "set_local(n,0)"));
        if (!heroStays) cObjectMgr::instance().destroy(cObjectMgr::instance().hero());
        if (!heroStays) update();
        TestWorld::object("o")->setPosition(at);
        update();
        return local("n");
    };
    EXPECT_EQ(near("player", {0, 0, 7.1f}), 1);
    EXPECT_EQ(near("player", {0, 0, 7}), 0) << "strictly nearer";
    EXPECT_EQ(near("player", {0, 0, 9}, false), 0) << "no hero is near nobody";
    EXPECT_EQ(near("self", {50, 0, 0}), 1);
    EXPECT_EQ(near("anything", {0, 5, 2}), 1) << "the origin";
}

TEST_F(CmlRuntime, SettingAnActionArmsItsOwnDistances) {
    object(action("<reaction type='distance_falls_below' point='self' distance='1' "
                  "do='inc_local(n,1);set_action(b)' />") +
           action(reaction("timer", "set_action(a)"), "set_timer(20)", "b"));
    for (const int32_t fired : {1, 1, 2}) { // b has none; its timer goes back to a, in the same update
        update();
        EXPECT_EQ(local("n"), fired);
    }
    self().setAction(-1);
    EXPECT_EQ(self().getCurrentAction(), nullptr);
    update();
    self().fireReaction(kTriggerTimer);
    EXPECT_EQ(local("n"), 2);
}

TEST_F(CmlRuntime, WalkersTurnOnTheLevelAndNobodyIsNoDirection) {
    for (const bool walks : {false, true}) {
        const auto turned = [&](const std::string& target) {
            run("set_direction(" + target + ")", walks ? kWalker : kBall);
            EXPECT_EQ(TestWorld::object("o")->getDirection(), self().getMoveDirection());
            EXPECT_TRUE(TestWorld::object("o")->getUp().isFinite());
            EXPECT_TRUE(!walks || TestWorld::object("o")->getUp() == cVector3(0, 1, 0))
                << "they stay upright";
            return self().getMoveDirection();
        };
        EXPECT_TRUE(turned("player").isNear(walks ? cVector3(0, 0, 1) : cVector3(0, -0.4472f, 0.8944f)));
        EXPECT_EQ(turned("nobody"), cVector3(1, 0, 0));
        EXPECT_EQ(turned("origin"), cVector3(1, 0, 0)) << "to where it stands leads no direction";
        for (int i = 0; i < 20; ++i) {
            const cVector3 random = turned("random");
            EXPECT_TRUE(!walks || random.y == 0);
            EXPECT_NEAR(random.length(), 1, 1e-4f);
        }
    }
}

TEST_F(CmlRuntime, PositionsMoveTheBodyAtOnce) {
    for (const auto& [target, there] :
         {std::pair("player", cVector3(0, 0, 10)), {"nobody", {0, 5, 0}}, {"inverted", {0, 5, 0}}}) {
        run(std::string("set_position(") + target + ")");
        EXPECT_EQ(TestWorld::object("o")->getPosition(), there) << target;
        EXPECT_TRUE(TestWorld::object("o")->body->shape.p0.isNear(there)) << target;
    }
}

TEST_F(CmlRuntime, SpeedMovesTheBodyAndIsCutOnlyWhileSteering) {
    run("set_speed(10)");
    t.frame();
    EXPECT_EQ(TestWorld::object("o")->getPosition().x, 0) << "0.01 a frame does not move";
    run("set_speed(250)");
    t.frame();
    EXPECT_FLOAT_EQ(TestWorld::object("o")->getPosition().x, 0.25f);
    run("set_speed(5000)");
    t.frame();
    EXPECT_FLOAT_EQ(self().getSpeed(), 5);
    self().setAcceleration({0.1f, 0, 0});
    t.frame();
    EXPECT_FLOAT_EQ(self().getSpeed(), 1) << "the body's diameter";
    run("set_speed(-1)");
    EXPECT_FLOAT_EQ(self().getSpeed(), 4294967.295f);
    t.frame();
    EXPECT_TRUE(TestWorld::object("o")->getPosition().isFinite());
    run("set_speed(500)", "position=\"0,5,0\" direction=\"1,0,0\"");
    t.frame();
    EXPECT_EQ(TestWorld::object("o")->getPosition().x, 0) << "without a body nothing moves";
}

TEST_F(CmlRuntime, SteeringTurnsAndChangesTheSpeed) {
    run("set_speed(100);set_acceleration(0,0,1000)");
    update();
    EXPECT_TRUE(self().getMoveDirection().isNear({0.70711f, 0, 0.70711f}));
    EXPECT_NEAR(self().getSpeed(), 0.1f + 0.1f * 0.70711f, 1e-4f);
    EXPECT_EQ(TestWorld::object("o")->getDirection(), self().getMoveDirection());
    run("set_speed(100);set_acceleration(-1000,0,0)");
    update();
    EXPECT_EQ(self().getMoveDirection(), cVector3(1, 0, 0)) << "a direction that steering would cancel";
    run("level()", "position=\"0,5,0\" direction=\"0,1,0\" up=\"1,0,0\"");
    EXPECT_EQ(TestWorld::object("o")->getDirection(), cVector3(0, 1, 0));
    EXPECT_EQ(TestWorld::object("o")->getUp(), cVector3(0, 1, 0))
        << "what points up stands upright once it turns";
    const auto size = [](const cVector3& axis) {
        return TestWorld::object("o")->getTransform().transformDirection(axis).length();
    };
    for (const cVector3& axis : {cVector3(1, 0, 0), {0, 1, 0}, {0, 0, 1}})
        EXPECT_NEAR(size(axis), 1, 1e-5f) << "and is not flat until then";
}

TEST_F(CmlRuntime, SightNeedsAClearLineWithinTheAngle) {
    EXPECT_FALSE(holds("in_fov(p)", objectElement("p"))) << "straight below";
    const auto seen = [&](const cVector3& there) {
        TestWorld::object("p")->setPosition(there);
        return fires();
    };
    EXPECT_TRUE(seen({4, 5, 0}));
    EXPECT_TRUE(seen({4, 5, 6.8f})) << "59.5 of 60 degrees";
    EXPECT_FALSE(seen({4, 5, 7.1f})) << "60.6 degrees";
    EXPECT_FALSE(seen({-4, 5, 0}));
    t.setGeometry({wallMesh(2, 20)});
    EXPECT_FALSE(seen({4, 5, 0})) << "behind a wall";
    EXPECT_TRUE(seen({1.5f, 5, 0}));
}

TEST_F(CmlRuntime, DistancesAreComparedWithWholeUnits) {
    const std::string p = objectElement("p", "", "", "position=\"4,5,0\"");
    for (const char* test :
         {"distance_less_than(p,5)", "distance_more_than(p,3)", "distance_less_than(p,-1)"})
        EXPECT_TRUE(holds(test, p)) << test;
    for (const char* test :
         {"distance_less_than(p,4)", "distance_more_than(p,4)", "distance_less_than(nobody,100)",
          "distance_more_than(nobody,0)", "distance_more_than(target,0)"})
        EXPECT_FALSE(holds(test, p)) << test;
}

TEST_F(CmlRuntime, ADestroyedTargetIsNoTarget) {
    object(action(reaction("context", "set_direction(target);set_position(target)")), kBall,
           objectElement("p"));
    self().setTarget(TestWorld::object("p"));
    cObjectMgr::instance().destroy(TestWorld::object("p"));
    update();
    EXPECT_EQ(self().getTarget(), nullptr);
    self().fireReaction(kTriggerContext);
    EXPECT_EQ(TestWorld::object("o")->getPosition(), cVector3(0, 5, 0));
}
