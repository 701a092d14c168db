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
        auto object = make(at, radius, std::move(act));
        cObject* raw = object.get();
        objects.add(std::move(object));
        return raw;
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

TEST_F(ObjectMgr, QueuesAreEmptiedNewestFirst) {
    std::vector<float> created;
    add({}, 1, [&] {
        if (!created.empty()) return;
        created.push_back(0);
        objects.addLater(make({1, 0, 0}, 1));
        objects.addLater(make({2, 0, 0}, 1));
    });
    update();
    ASSERT_EQ(objects.count(), 3u);
    EXPECT_EQ(objects.get(1)->getPosition().x, 2);
    EXPECT_EQ(objects.get(2)->getPosition().x, 1);
    EXPECT_EQ(static_cast<Probe*>(objects.get(1)->getController())->updates, 0)
        << "first updated in the next frame";
    EXPECT_EQ(objects.get(3), nullptr);
}

TEST_F(ObjectMgr, TheDestroyedStayUntilTheUpdateEnds) {
    cObject* doomed = nullptr;
    size_t countAfterDestroy = 0;
    cObject* first = add({}, 1, [&] {
        if (!doomed) return;
        objects.destroy(doomed);
        countAfterDestroy = objects.count();
    });
    doomed = addBody({5, 0, 0}, 1, MOVE_SOLID);
    auto* probe = static_cast<Probe*>(doomed->getController());
    cEventMgr::instance().post(cEvent::kTouchedBody, first->getController(), probe);
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

TEST_F(ObjectMgr, DestroyingTwiceWritesOneRow) {
    cObject* object = add({});
    objects.destroy(object);
    objects.destroy(object);
    update();
    EXPECT_EQ(TempGame::errorCount(kLost), 1);
    EXPECT_EQ(objects.count(), 0u);
}

TEST_F(ObjectMgr, AQueuedObjectIsNotMistakenForItsSuccessor) {
    // However often memory is used again: what was queued before the list was cleared never meets a new
    // object.
    for (int i = 0; i < 20; ++i) {
        objects.destroy(add({}));
        objects.clear();
        TempGame::clearErrors();
        add({});
        update();
        EXPECT_EQ(objects.count(), 1u);
        EXPECT_EQ(TempGame::errorCount(kLost), 1);
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

TEST_F(ObjectMgr, TouchingIsStrictAndFirstInList) {
    cObject* hero = add({}, 1);
    cObject* far = add({3, 0, 0}, 1);
    cObject* edge = add({0, 2, 0}, 1);
    EXPECT_EQ(objects.findTouching(hero), nullptr) << "radii that just meet do not touch";
    cObject* second = add({0, 0, 1.9f}, 1);
    cObject* third = add({0, 0, 0.1f}, 1);
    EXPECT_EQ(objects.findTouching(hero), second);
    second->getController()->setActive(false);
    EXPECT_EQ(objects.findTouching(hero), third);
    EXPECT_EQ(objects.findTouching(far), nullptr);
    EXPECT_EQ(objects.findTouching(edge), nullptr);
}

TEST_F(ObjectMgr, ShotsHitTheNearestThatNothingCovers) {
    cObject* shooter = add({0, 0, 0}, 1);
    cObject* back = add({20, 0, 0}, 1);
    cObject* front = add({10, 2.4f, 0}, 1);
    const auto shoot = [&](float length) {
        return objects.findShotTarget(shooter, {0, 0, 0}, {1, 0, 0}, length);
    };
    EXPECT_EQ(shoot(100), front) << "without a body six squared radii are near enough";
    EXPECT_EQ(shoot(5), nullptr);
    front->setPosition({10, 2.5f, 0});
    EXPECT_EQ(shoot(100), back) << "6.25 squared radii are not";
    cObject* body = addBody({15, 1.2f, 0}, 1, MOVE_SOLID);
    EXPECT_EQ(shoot(100), back) << "a body is missed by its own shape";
    body->setPosition({15, 0.9f, 0});
    EXPECT_EQ(shoot(100), body);
    t.setGeometry({wallMesh(12, 5)});
    EXPECT_EQ(shoot(100), nullptr) << "behind the wall";
    front->setPosition({10, 0, 0});
    EXPECT_EQ(shoot(100), front);
    front->getController()->setActive(false);
    EXPECT_EQ(shoot(100), nullptr);
}

TEST_F(ObjectMgr, BlowsAndProjectilesMeetSolidBodiesAndBarePlaces) {
    cObject* attacker = add({0, 0, 0}, 1);
    const auto blow = [&](float x) { return objects.findBlowTarget(attacker, {x, 0, 0}, 0.5f); };
    cObject* bare = add({3, 0, 0}, 1);
    EXPECT_EQ(blow(1.4f), nullptr);
    EXPECT_EQ(blow(1.6f), bare) << "without a body the bounding sphere counts";
    cObject* ghost = addBody({-3, 0, 0}, 0.5f, 0);
    ghost->setBoundingRadius(5);
    EXPECT_EQ(blow(-3), nullptr) << "a body that is not solid is passed";
    ghost->body->flags = MOVE_SOLID;
    EXPECT_EQ(blow(-3), ghost);
    EXPECT_EQ(blow(-2), ghost) << "touching the capsule counts";
    EXPECT_EQ(blow(-1.9f), nullptr) << "inside the bounding sphere, off the capsule";
    EXPECT_TRUE(objects.projectileHits({-3, 0, 0}, 0.5f, attacker));
    EXPECT_FALSE(objects.projectileHits({-3, 0, 0}, 0.5f, ghost));
    t.setFloor(-10);
    EXPECT_TRUE(objects.projectileHits({30, -9.8f, 0}, 0.5f, nullptr)) << "level geometry";
    EXPECT_FALSE(objects.projectileHits({30, -9, 0}, 0.5f, nullptr));
}

namespace {
cProjectile& launch(cObjectMgr& objects, const cItemDef& item, const cVector3& at, const cVector3& velocity) {
    auto object = std::make_unique<cObject>();
    auto controller = std::make_unique<cProjectile>(object.get());
    cProjectile& projectile = *controller;
    object->setController(std::move(controller));
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
