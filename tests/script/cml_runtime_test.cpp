#include "core/name_hash.h"
#include "game/physics_world.h"
#include "script/event_mgr.h"
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
    CmlRuntime() {
        t.writeCpm("thing.cpm");
        t.writeCharacter("maincharfinal\\mainchar_noweapon");
        cWorld::instance().spawnPoint = "hut";
    }
    /// One object "o" whose default action is "a".
    void object(const std::string& inside, const std::string& physics = kBall,
                const std::string& others = "") {
        ASSERT_EQ(
            t.load(kHero + objectElement("o", "default_action=\"a\" fov=\"60\"", inside, physics) + others),
            0);
    }
    /// Runs a list through the context reaction of an object made for it.
    void run(const std::string& list, const std::string& physics = kBall) {
        object(action(reaction("context", list)), physics);
        self().fireReaction(kTriggerContext);
    }
    cCmlObject& self() { return TestWorld::script("o"); }
    int32_t local(const char* name) { return TestWorld::local("o", name); }
    void update(uint32_t ms = 16) { cObjectMgr::instance().update(ms, &t.state); }

    TestWorld t;
};
} // namespace

TEST_F(CmlRuntime, RequirementsAreAlternativesInOrder) {
    const auto first = [&](const char* a, const char* b) {
        object(action(reaction("context", "set_local(r,3)",
                               std::string("<requirement test=\"") + a +
                                   "\" do=\"set_local(r,1)\" /><requirement test=\"" + b +
                                   "\" do=\"set_local(r,2)\" />")));
        self().fireReaction(kTriggerContext);
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

TEST_F(CmlRuntime, PrefixedCallsAndTestsActOnTheOther) {
    object(action(reaction("context", "set_local(r,1)",
                           "<requirement test=\"p.active()\" do=\"p.set_speed(500);"
                           "nobody.set_speed(1);set_local(r,2)\" />")),
           kBall, objectElement("p") + objectElement("p", "on_set=\"set_speed(9)\""));
    self().fireReaction(kTriggerContext);
    EXPECT_EQ(local("r"), 2);
    EXPECT_EQ(TestWorld::script("p").getSpeed(), 0.5f) << "the earlier one of two of that name";
    TestWorld::script("p").setActive(false);
    self().fireReaction(kTriggerContext);
    EXPECT_EQ(local("r"), 1);
    EXPECT_EQ(self().getSpeed(), 0);
}

TEST_F(CmlRuntime, LocalsOfPrefixedCallsUseTheOthersTableAtTheWritersIndex) {
    object(action(reaction("context",
                           "set_local(one,1);set_local(two,2);p.set_local(two,5);p.set_local(three,6)")),
           kBall, objectElement("p", "on_set=\"set_local(x,0);set_local(y,0)\""));
    self().fireReaction(kTriggerContext);
    EXPECT_EQ(TestWorld::local("p", "y"), 5);
    EXPECT_EQ(TestWorld::local("p", "x"), 0);
    EXPECT_EQ(local("two"), 2);
}

TEST_F(CmlRuntime, VariablesCountAndWrap) {
    struct {
        const char* list;
        int32_t a;
    } const kRows[] = {
        {"set_local(a,5);inc_local(a,3);dec_local(a,10)", -2},
        {"set_local(a,2147483647);inc_local(a,1)", INT32_MIN},
        {"set_local(a,-2147483648);dec_local(a,1)", INT32_MAX},
        {"set_local(a,1);dec_local(a,-2147483648)", INT32_MIN + 1},
        {"set_local(b,7);set_local(a,b);inc_local(a,b);dec_local(b,a)", 14},
        {"set_local(a,3);inc_local(a,param)", 45},
        {"set_local(a,50);dec_local(a,param)", 8},
        {"set_local(a)", 0},
        {"set_global(g,4);inc_global(g,param);set_local(a,1)", 1},
        {"randomize_local(a,1)", 0},
        {"set_local(a,9);randomize_local(a,0)", 9},
        {"set_local(a,9);set_local(z,0);randomize_local(a,z)", 9},
        {"set_local(a,9);randomize_local(a,-1)", 0},
    };
    for (const auto& row : kRows) {
        object(action(reaction("context", row.list)));
        self().setParam(42);
        self().fireReaction(kTriggerContext);
        EXPECT_EQ(local("a"), row.a) << row.list;
    }
    cScriptGlobals& globals = cWorld::instance().globals;
    EXPECT_EQ(globals.getGlobal(globals.globalIndex("g")), 46);
    run("randomize_local(a,-2147483648);randomize_local(b,-7);randomize_global(h,3)");
    EXPECT_GE(local("a"), 0);
    EXPECT_GE(local("b"), 0) << "the remainder has the sign of the random number";
    EXPECT_LT(local("b"), 7);
}

TEST_F(CmlRuntime, TheTargetsKindIsComparedUnsigned) {
    t.game.write("hierarchy.cfl", "Beast\nMan\n-Guard\n--Captain\n--Private\n");
    struct {
        const char *test, *other;
        bool holds;
    } const kRows[] = {
        {"target_type(65535)", "type=\"Ghost\"", true},
        {"target_type(-1)", "type=\"Ghost\"", false},
        {"target_race(not_equal)", "type=\"Man\"", true},
        {"target_class(equal)", "type=\"Man\" race=\"Guard\" class=\"Captain\"", true},
        {"target_class(not_equal)", "type=\"Man\" race=\"Guard\" class=\"Private\"", true},
        {"target_class(equal)", "type=\"Man\" race=\"Guard\" class=\"Private\"", false},
    };
    for (const auto& row : kRows) {
        const std::string me = objectElement(
            "o", "type=\"Man\" race=\"Guard\" class=\"Captain\" default_action=\"a\"",
            action(reaction("context", "set_local(r,0)",
                            std::string("<requirement test=\"") + row.test + "\" do=\"set_local(r,1)\" />")));
        ASSERT_EQ(t.load(me + objectElement("p", row.other)), 0);
        self().fireReaction(kTriggerContext);
        EXPECT_EQ(local("r"), 0) << "without a target: " << row.test;
        self().setTarget(TestWorld::object("p"));
        self().fireReaction(kTriggerContext);
        EXPECT_EQ(local("r"), row.holds) << row.test << " of " << row.other;
    }
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
    const std::string inside =
        "<reaction type=\"distance_exceeds\" distance=\"2\" point=\"origin\" do=\"inc_local(n,1)\" />";
    object(action(inside, "set_local(n,0)"));
    struct {
        cVector3 position, direction;
        int fired;
    } const kRows[] = {{{1.9f, 5, 0}, {1, 0, 0}, 0},
                       {{2.1f, 5, 0}, {1, 0, 0}, 1},
                       {{2.1f, 5, 0}, {-1, 0, 0}, 0},
                       {{2.1f, 5, 0}, {0, 1, 0}, 1}};
    for (const auto& row : kRows) {
        const int32_t before = local("n");
        TestWorld::object("o")->setPosition(row.position);
        self().setMoveDirection(row.direction);
        update();
        EXPECT_EQ(local("n") - before, row.fired) << row.position.x << ", " << row.direction.x;
    }
    update();
    EXPECT_EQ(local("n"), 3) << "on every update while both hold";
}

TEST_F(CmlRuntime, ApproachIsMeasuredFromTheNamedPoint) {
    const auto near = [&](const char* point, const cVector3& at, bool heroStays = true) {
        object(action(std::string("<reaction type=\"distance_falls_below\" distance=\"3\" point=\"") + point +
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
    object(action("<reaction type=\"distance_falls_below\" point=\"self\" distance=\"1\" "
                  "do=\"inc_local(n,1);set_action(b)\" />",
                  "") +
           action(reaction("timer", "set_action(a)"), "set_timer(20)", "b"));
    update();
    update();
    EXPECT_EQ(local("n"), 1) << "b has no such reaction";
    update();
    EXPECT_EQ(local("n"), 2) << "armed again in the update whose timer went back to a";
    self().setAction(-1);
    EXPECT_EQ(self().getCurrentAction(), nullptr);
    update();
    self().fireReaction(kTriggerTimer);
    EXPECT_EQ(local("n"), 2);
}

TEST_F(CmlRuntime, AListRunsOnAfterSetActionAndDestroy) {
    object(action(reaction("context", "set_action(b);destroy();set_local(r,1)")) + action("", "", "b"));
    self().fireReaction(kTriggerContext);
    EXPECT_EQ(local("r"), 1);
    EXPECT_EQ(self().getCurrentAction()->getAttribute("name"), "b");
    EXPECT_FALSE(self().isActive());
    update();
    EXPECT_EQ(TestWorld::object("o"), nullptr);
}

TEST_F(CmlRuntime, WalkersTurnOnTheLevelAndNobodyIsNoDirection) {
    struct {
        const char* target;
        cVector3 flying, walking;
    } const kRows[] = {
        {"player", {0, -0.4472f, 0.8944f}, {0, 0, 1}},
        {"nobody", {1, 0, 0}, {1, 0, 0}},
        {"origin", {0, 0, 0}, {0, 0, 0}},
    };
    for (const auto& row : kRows) {
        for (const bool walks : {false, true}) {
            object(action(reaction("context", std::string("set_direction(") + row.target + ")")),
                   walks ? kWalker : kBall);
            self().fireReaction(kTriggerContext);
            EXPECT_TRUE(self().getMoveDirection().isNear(walks ? row.walking : row.flying))
                << row.target << walks;
            EXPECT_EQ(TestWorld::object("o")->getDirection(), self().getMoveDirection());
            EXPECT_TRUE(TestWorld::object("o")->getUp().isFinite());
            if (!walks) continue;
            EXPECT_EQ(TestWorld::object("o")->getUp(), cVector3(0, 1, 0)) << "walkers stay upright";
        }
    }
    for (int i = 0; i < 20; ++i) {
        run("set_direction(random)", kWalker);
        EXPECT_EQ(self().getMoveDirection().y, 0);
        EXPECT_NEAR(self().getMoveDirection().length(), 1, 1e-4f);
    }
}

TEST_F(CmlRuntime, PositionsMoveTheBodyAtOnce) {
    struct {
        const char* target;
        cVector3 there;
    } const kRows[] = {{"player", {0, 0, 10}},
                       {"p", {-4, 5, 0}},
                       {"origin", {0, 5, 0}},
                       {"nobody", {9, 9, 9}},
                       {"inverted", {9, 9, 9}}};
    for (const auto& row : kRows) {
        object(action(reaction("context", std::string("set_position(") + row.target + ")")), kBall,
               objectElement("p", "", "", "position=\"-4,5,0\""));
        TestWorld::object("o")->setPosition({9, 9, 9});
        self().fireReaction(kTriggerContext);
        EXPECT_EQ(TestWorld::object("o")->getPosition(), row.there) << row.target;
        EXPECT_TRUE(TestWorld::object("o")->body->shape.p0.isNear(row.there)) << row.target;
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
    EXPECT_TRUE(self().getMoveDirection().isFinite()) << "a direction that steering cancels";
    EXPECT_TRUE(TestWorld::object("o")->getUp().isFinite());
}

TEST_F(CmlRuntime, SightNeedsAClearLineWithinTheAngle) {
    const auto seen = [&](const cVector3& there) {
        object(action(reaction("context", "set_local(r,0)",
                               "<requirement test=\"in_fov(p)\" do=\"set_local(r,1)\" />")),
               kBall, objectElement("p"));
        TestWorld::object("p")->setPosition(there);
        self().fireReaction(kTriggerContext);
        return local("r");
    };
    EXPECT_EQ(seen({4, 5, 0}), 1);
    EXPECT_EQ(seen({4, 5, 6.8f}), 1) << "59.5 of 60 degrees";
    EXPECT_EQ(seen({4, 5, 7.1f}), 0) << "60.6 degrees";
    EXPECT_EQ(seen({-4, 5, 0}), 0);
    t.setGeometry({wallMesh(2, 20)});
    EXPECT_EQ(seen({4, 5, 0}), 0) << "behind a wall";
    EXPECT_EQ(seen({1.5f, 5, 0}), 1);
}

TEST_F(CmlRuntime, DistancesAreComparedWithWholeUnits) {
    struct {
        const char* test;
        bool holds;
    } const kRows[] = {{"distance_less_than(p,5)", true},       {"distance_less_than(p,4)", false},
                       {"distance_more_than(p,3)", true},       {"distance_more_than(p,4)", false},
                       {"distance_less_than(p,-1)", true},      {"distance_less_than(nobody,100)", false},
                       {"distance_more_than(nobody,0)", false}, {"distance_more_than(target,0)", false}};
    for (const auto& row : kRows) {
        object(
            action(reaction("context", "set_local(r,0)",
                            std::string("<requirement test=\"") + row.test + "\" do=\"set_local(r,1)\" />")),
            kBall, objectElement("p", "", "", "position=\"4,5,0\""));
        self().fireReaction(kTriggerContext);
        EXPECT_EQ(local("r"), row.holds) << row.test;
    }
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

TEST_F(CmlRuntime, ListsThatDoubleThirtyTimesOverEnd) {
    std::string actions = action("", "inc_local(n,1)", "a30");
    for (int i = 0; i < 30; ++i) {
        const std::string next = "set_action(a" + std::to_string(i + 1) + ")";
        actions += action("", next + ";" + next, "a" + std::to_string(i));
    }
    object(action(reaction("context", "set_action(a0)")) + actions);
    self().fireReaction(kTriggerContext);
    EXPECT_LT(local("n"), 100000);
}
