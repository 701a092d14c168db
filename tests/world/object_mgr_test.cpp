#include "world/object_mgr.h"

#include "game/item_def.h"
#include "game/physics_world.h"
#include "game/projectile.h"
#include "script/event_mgr.h"
#include "support/test_world.h"

#include <gtest/gtest.h>

namespace {
constexpr const char* kLost = "Attempted to destroy unexisting object";

/// Counts its updates and does something in each.
class Probe : public cController {
public:
    Probe(cObject* owner, std::function<void()> act) : cController(owner), act_(std::move(act)) {}
    void update(uint32_t, GameState*) override {
        ++updates;
        if (act_) act_();
    }
    Kind kind() const override { return kScenery; }
    int updates = 0;

private:
    std::function<void()> act_;
};

class ObjectMgr : public ::testing::Test {
protected:
    static std::unique_ptr<cObject> make(const cVector3& at, float radius, std::function<void()> act = {}) {
        auto object = std::make_unique<cObject>();
        object->setPosition(at);
        object->setBoundingRadius(radius);
        object->setController(std::make_unique<Probe>(object.get(), std::move(act)));
        return object;
    }
    cObject* add(const cVector3& at, float radius = 1, std::function<void()> act = {}) {
        objects.add(make(at, radius, std::move(act)));
        return objects.get(objects.count() - 1);
    }
    cObject* addBody(const cVector3& at, float radius, uint32_t flags) {
        cObject* object = add(at);
        cPhysicsWorld::instance().addBody({object, {at, at, radius}});
        object->body->flags = flags;
        return object;
    }
    void update() { objects.update(16, &t.state); }

    TestWorld t;
    cObjectMgr& objects = cObjectMgr::instance();
};
} // namespace

TEST_F(ObjectMgr, TheLastQueuedJoinsFirstAndIsUpdatedInTheNextFrame) {
    add({}, 1, [&] {
        if (objects.get(1)) return;
        for (const float x : {1.0f, 2.0f}) objects.addLater(make({x, 0, 0}, 1));
    });
    update();
    ASSERT_EQ(objects.count(), 3u);
    EXPECT_EQ(objects.get(1)->getPosition().x, 2);
    EXPECT_EQ(static_cast<Probe*>(objects.get(1)->getController())->updates, 0);
    EXPECT_EQ(objects.get(3), nullptr);
}

TEST_F(ObjectMgr, TheDestroyedStayUntilTheUpdateEnds) {
    cObject* doomed = nullptr;
    size_t countAfterDestroy = 0;
    const cObject* first = add({}, 1, [&] {
        objects.destroy(doomed);
        countAfterDestroy = objects.count();
    });
    doomed = addBody({5, 0, 0}, 1, MOVE_SOLID);
    cEventMgr::instance().post(cEvent::kTouchedBody, first->getController(), doomed->getController());
    cEventMgr::instance().post(cEvent::kTouchedGeometry, first->getController());
    std::vector<const cObject*> forgotten;
    objects.setForgetListener([&](const cObject* o) { forgotten.push_back(o); });
    update();
    EXPECT_EQ(countAfterDestroy, 2u);
    EXPECT_EQ(objects.count(), 1u);
    EXPECT_EQ(forgotten, std::vector<const cObject*>{doomed});
    EXPECT_TRUE(cPhysicsWorld::instance().bodies().empty());
    EXPECT_EQ(cEventMgr::instance().count(), 1) << "only the events that name it go";
}

TEST_F(ObjectMgr, WhatIsGoneIsLoggedAndNotMistakenForItsSuccessor) {
    cObject* object = add({});
    for (int i = 0; i < 2; ++i) objects.destroy(object);
    update();
    EXPECT_EQ(TempGame::errorCount(kLost), 1);
    EXPECT_EQ(objects.count(), 0u);
    // However often memory is used again: what was queued before the list was cleared never meets a new
    // object.
    for (int i = 0; i < 20; ++i) {
        objects.destroy(add({}));
        objects.clear();
        add({});
        update();
        EXPECT_EQ(objects.count(), 1u);
        EXPECT_EQ(TempGame::errorCount(kLost), 2 + i);
        objects.clear();
    }
}

TEST_F(ObjectMgr, ClearTakesBodiesEventsAndWhatWaits) {
    cObject* object = addBody({}, 1, MOVE_SOLID);
    cEventMgr::instance().post(cEvent::kTouchedGeometry, object->getController());
    objects.addLater(make({}, 1));
    objects.clear();
    EXPECT_EQ(objects.count(), 0u);
    EXPECT_EQ(cEventMgr::instance().count(), 0);
    EXPECT_TRUE(cPhysicsWorld::instance().bodies().empty());
    update();
    EXPECT_EQ(objects.count(), 0u) << "nothing of the old level joins the new one";
}

namespace {
cProjectile& launch(cObjectMgr& objects, const cItemDef& item, const cVector3& at, const cVector3& velocity) {
    auto object = std::make_unique<cObject>();
    object->setController(std::make_unique<cProjectile>(object.get()));
    auto& projectile = *static_cast<cProjectile*>(object->getController());
    objects.add(std::move(object));
    projectile.launch(item, at, velocity);
    return projectile;
}
} // namespace

TEST_F(ObjectMgr, AProjectileFliesStraightThenFallsNoFasterThanItsDiameter) {
    cItemDef item;
    item.radius = 0.5f;
    item.gravityOrOffset = {0, -1, 0};
    item.duration = 20;
    cProjectile& p = launch(objects, item, {0, 5, 0}, {0.5f, 0, 0});
    t.state = STATE_MENU;
    update();
    update();
    EXPECT_TRUE(p.getOwner()->getPosition().isNear({1, 5, 0})) << "also behind the menu";
    update();
    EXPECT_NEAR(p.getVelocity().length(), 1, 1e-4f);
    EXPECT_LT(p.getVelocity().y, -0.8f);
    EXPECT_NEAR(p.getOwner()->getDirection().length(), 1, 1e-4f);
    EXPECT_NEAR(p.getOwner()->getUp().dot(p.getOwner()->getDirection()), 0, 1e-4f);
    const cItemDef plain;
    cProjectile& still = launch(objects, plain, {50, 0, 0}, {});
    update();
    EXPECT_TRUE(still.getOwner()->getUp().isFinite());
}

TEST_F(ObjectMgr, AnExplosionReachesByDistanceAndEndsTheProjectile) {
    t.writeCpm("thing.cpm");
    const auto place = [](const char* name, const char* at) {
        return objectElement(
            name, "default_action=\"a\"",
            "<action name=\"a\"><reaction type=\"projectile_hit\" do=\"set_local(hit,param)\" /></action>",
            std::string("radius=\"0.1\" position=\"") + at + "\"");
    };
    ASSERT_EQ(t.load(place("near", "1,0,0") + place("half", "0,0,3") + place("out", "0,4,0")), 0);
    t.setFloor(0);
    cItemDef item;
    item.radius = 0.2f;
    item.damage = 41;
    item.damageRadius = item.damageFalloff = 2;
    launch(objects, item, {0, 0, 0}, {});
    t.frame();
    EXPECT_EQ(TestWorld::local("near", "hit"), 41);
    EXPECT_EQ(TestWorld::local("half", "hit"), 20) << "cut toward zero";
    EXPECT_EQ(TestWorld::local("out", "hit"), 0) << "exactly at the end of its reach";
    EXPECT_EQ(TestWorld::script("near").getTarget(), nullptr);
    EXPECT_EQ(objects.count(), 4u);
    t.frame();
    EXPECT_EQ(objects.count(), 3u);
}
