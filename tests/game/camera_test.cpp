#include "game/camera.h"

#include "support/test_world.h"
#include "ui/bindings.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {
class Camera : public ::testing::Test {
protected:
    Camera() {
        hero.setPosition({10, 0, 0});
        hero.setDirection({0, 0, -1});
        camera.setTarget(&hero);
        camera.setOffset({0, 1, 0});
        camera.setView({0, 0, 4});
        camera.place();
    }
    TestWorld t;
    cObject hero;
    cCamera camera;
};
} // namespace

TEST_F(Camera, OrbitsItsTarget) {
    EXPECT_TRUE(camera.getEye().isNear({10, 1, 4}));
    EXPECT_TRUE(camera.getForward().isNear({0, 0, -1}));
    EXPECT_TRUE(camera.getRight().isNear({1, 0, 0}));
    camera.rotate(0.1f, 0);
    EXPECT_TRUE(camera.getView().isNear({-0.1745f, 0, 3.9962f}));
    camera.setView({0, 0, 4});
    camera.rotate(0, 0.1f); // a right-handed turn by −2.5 degrees about (1, 0, 0) lifts the eye
    EXPECT_TRUE(camera.getView().isNear({0, 0.1745f, 3.9962f}));
}

TEST_F(Camera, FirstPersonHasAViewOfItsOwn) {
    camera.rotate(0.3f, 0.2f);
    const cVector3 orbit = camera.getView();
    EXPECT_TRUE(camera.toggleView());
    camera.rotate(5, 1);
    EXPECT_EQ(camera.getView(), cVector3(0, 1, 0)) << "pitch only";
    camera.place();
    EXPECT_TRUE(camera.getEye().isNear({10, 1, 0}));
    EXPECT_TRUE(camera.getForward().isNear({0, 0.7071f, -0.7071f}));
    camera.toggleView();
    EXPECT_EQ(camera.getView(), orbit);
    camera.setFirstPerson(false);
    EXPECT_EQ(camera.getView(), orbit) << "already so";
    camera.setFirstPerson(true);
    EXPECT_EQ(camera.getView(), cVector3(0, 1, 0));
}

TEST_F(Camera, ZoomStaysWithinItsLimits) {
    for (const auto& [delta, length] :
         {std::pair(1.0f, 5.0f), {100, 8}, {-100, 1.5f}, {-0.1f, 1.5f}, {0.5f, 2}}) {
        camera.zoom(delta);
        EXPECT_NEAR(camera.getView().length(), length, 1e-4f) << delta;
    }
    camera.toggleView();
    camera.zoom(3);
    EXPECT_EQ(camera.getView(), cVector3()) << "not in first person";
    camera.toggleView();
    camera.detach();
    const cVector3 view = camera.getView();
    camera.zoom(3);
    EXPECT_EQ(camera.getView(), view) << "not when detached";
}

TEST_F(Camera, AWallPullsTheEyeIn) {
    camera.setView({4, 0, 0});
    camera.place();
    EXPECT_TRUE(camera.getEye().isNear({14, 1, 0})) << "nothing in the way";
    t.setGeometry({wallMesh(12, 20)});
    camera.place();
    EXPECT_NEAR(camera.getEye().x, 12, 0.01f);
    EXPECT_TRUE(camera.getForward().isNear({-1, 0, 0}));
    camera.toggleView();
    camera.place();
    EXPECT_TRUE(camera.getEye().isNear({10, 1, 0}));
}

TEST_F(Camera, DetachingDoesNotJump) {
    t.setGeometry({wallMesh(12, 20)});
    camera.setStored({0, 0.3f, 0});
    for (const bool firstPerson : {false, true}) {
        camera.setTarget(&hero);
        camera.setFirstPerson(firstPerson);
        camera.setOffset({0, 1, 0});
        if (!firstPerson) camera.setView({4, 0.5f, 0});
        camera.place();
        const cVector3 eye = camera.getEye(), forward = camera.getForward();
        camera.detach();
        EXPECT_EQ(camera.getTarget(), nullptr);
        camera.place();
        EXPECT_TRUE(camera.getEye().isNear(eye)) << firstPerson;
        EXPECT_TRUE(camera.getForward().isNear(forward)) << firstPerson;
        camera.detach();
        EXPECT_TRUE(camera.getOffset().isNear(eye)) << "twice changes nothing";
    }
}

TEST_F(Camera, FliesFreelyWithTheFirstPersonKeys) {
    cBindings bindings;
    bindings.setKeyState(t.keys.data());
    camera.detach();
    for (const auto& [command, view, there] :
         {std::tuple(CMD_FORWARD, cVector3(0, 0, -1), cVector3(0, 0, -0.5f)),
          {CMD_BACK, {0, 0, -1}, {0, 0, 0.5f}},
          {CMD_RIGHT, {0, 0, -1}, {0.5f, 0, 0}},
          {CMD_LEFT, {0, 0, -1}, {-0.5f, 0, 0}},
          {CMD_RIGHT, {0, 0.8f, -0.6f}, {0.3f, 0, 0}}}) { // slower when looking up
        camera.setOffset({});
        camera.setView(view);
        bindings.setBinding(command + kFirstPersonCommands, 300);
        t.keys[300] = 1;
        camera.freeMove(bindings);
        bindings.setBinding(command + kFirstPersonCommands, 0);
        EXPECT_TRUE(camera.getOffset().isNear(there)) << command;
    }
    camera.setView({0, 0, -1});
    camera.rotate(0.5f, 0);
    EXPECT_GT(camera.getView().x, 0.4f) << "to the right";
    EXPECT_NEAR(camera.getView().length(), 1, 1e-4f);
}

TEST_F(Camera, AnyViewGivesAFiniteFrame) {
    const auto expectFrame = [](cCamera& c) {
        cVector3 eye, direction, up, right;
        c.basis(eye, direction, up, right);
        for (const cVector3& axis : {direction, up, right}) EXPECT_NEAR(axis.length(), 1, 1e-4f);
        EXPECT_TRUE(right.cross(direction).isNear(up));
    };
    for (const cVector3& view :
         {cVector3(1e-20f, 1e-20f, 0), cVector3(), cVector3(0, -4, 0), cVector3(0, 4, 0)}) {
        camera.setView(view);
        expectFrame(camera);
    }
    camera.place();
    camera.rotate(0, 0.2f);
    EXPECT_GT(std::fabs(camera.getView().x) + std::fabs(camera.getView().z), 0.1f) << "can be tilted back";
    camera.detach();
    for (const cVector3& view : {cVector3(0, 1, 0), cVector3()}) {
        camera.setView(view);
        camera.rotate(0.5f, 0.1f);
        expectFrame(camera);
    }
    cCamera fresh;
    expectFrame(fresh);
}
