#include "game/physics_world.h"
#include "support/test_world.h"
#include "world/model_objects.h"

#include <gtest/gtest.h>

TEST(Object, TransformHasRightUpAndBackwardsAsColumns) {
    cObject object;
    EXPECT_TRUE(object.getTransform().transformPoint({1, 2, 3}).isNear({1, 2, 3})) << "the identity at first";
    object.setPosition({10, 0, 0});
    object.setDirection({1, 0, 0});
    object.setUp({0, 0, 1});
    EXPECT_TRUE(object.getTransform().transformPoint({2, 3, -4}).isNear({14, -2, 3})) << "right, up, forward";
    EXPECT_TRUE(object.getTransform().inverseTransformPoint({14, -2, 3}).isNear({2, 3, -4}));
}

TEST(Object, TheBodyIsCarriedAlongOnce) {
    TestWorld t;
    cObject object;
    object.setPosition({1, 1, 1});
    cPhysicsWorld::instance().addBody({&object, {{1, 2, 1}, {1, 0, 1}, 0.5f}});
    EXPECT_EQ(object.boundingRadius(), 1.5f);
    object.setPosition({4, 1, 1});
    EXPECT_TRUE(object.body->shape.p0.isNear({4, 2, 1})) << "set by hand";
    object.requestMove({0, 0, 2}, MOVE_SWEPT, 0);
    cPhysicsWorld::instance().step(16, STATE_GAME);
    EXPECT_TRUE(object.body->shape.p1.isNear(object.getPosition() + cVector3(0, -1, 0)))
        << "moved by the physics";
    EXPECT_GT(object.getPosition().z, 2.8f);
    cPhysicsWorld::instance().removeBody(object.body);
    EXPECT_EQ(object.body, nullptr);
}

TEST(Object, AReplacedModelIsLogged) {
    TestWorld t;
    cModel first, second;
    cStaticObject object(&first, nullptr);
    object.setModel(&second);
    EXPECT_EQ(TempGame::errorCount("Model released from cStaticObject without being freed, OK?"), 1);
    object.releaseModel();
    object.setModel(&first);
    EXPECT_EQ(TempGame::errors().size(), 1u);
}

TEST(Object, QueriesSeeActiveObjectsOnly) {
    cObject plain, camera(cObject::kCamera);
    EXPECT_FALSE(plain.isQueryable()) << "nobody drives it";
    for (cObject* object : {&plain, &camera})
        object->setController(std::make_unique<cSceneryController>(object));
    EXPECT_TRUE(plain.isQueryable());
    EXPECT_FALSE(camera.isQueryable());
    plain.getController()->toggleActive();
    EXPECT_FALSE(plain.isQueryable());
}
