#include "game/player.h"

#include "core/name_hash.h"
#include "game/physics_world.h"
#include "script/cml_object.h"
#include "script/dialogue.h"
#include "support/test_world.h"
#include "ui/input_mgr.h"
#include "world/model_objects.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {
constexpr float kRadius = 0.4f, kStanding = 1.25f; ///< of the hero's body; his position above his feet

/// A hero who stands on a floor at height 0, facing −z, seen from behind.
class Player : public ::testing::Test {
protected:
    Player() {
        t.writeModels();
        t.setFloor(0);
        EXPECT_EQ(t.load(spawnElement() +
                         objectElement("lever", "default_action='a'",
                                       "<action name='a' on_set='set_local(n,0)'><reaction type='context' "
                                       "do='inc_local(n,1)' /></action><dialogue name='d'>Well? ^83Yes^aNo"
                                       "^aMaybe^a ^6a ^82Once^aAgain^a </dialogue>",
                                       "position='0,0,30' radius='1'")),
                  0);
        hero = cObjectMgr::instance().hero();
        player = static_cast<cPlayer*>(hero->getController());
        cInputSettings& s = input.bindings.settings;
        for (int c = 0; c < kCommandCount; ++c) {
            s.keysThirdPerson[static_cast<size_t>(c)] = 10 + c;
            s.keysFirstPerson[static_cast<size_t>(c)] = 40 + c;
        }
        s.repeatIntervals.fill(0);
        s.walkIsDefault = 1;
        s.moveRelativeToCamera = 1;
        for (int i = 0; i < 60; ++i) t.frame();
    }
    void hold(int command, bool on = true) {
        t.keys[static_cast<size_t>(command < kCommandCount ? 10 + command : 40 + command - kCommandCount)] =
            on;
    }
    cVector3 frame() {
        const cVector3 before = hero->getPosition();
        t.frame();
        world.camera.place();
        return hero->getPosition() - before;
    }
    cCharacterPose& pose() { return static_cast<cAnimatedObject*>(hero)->pose(); }
    int32_t animation() { return pose().getCurrentAnimation(); }

    TestWorld t;
    cWorld& world = cWorld::instance();
    cInputMgr& input = cInputMgr::instance();
    cObject* hero;
    cPlayer* player;
};
} // namespace

TEST_F(Player, WalksOrRunsByDefaultAndModifier) {
    hold(CMD_FORWARD);
    for (const bool walkIsDefault : {true, false}) {
        for (const bool modifier : {false, true}) {
            const bool walks = walkIsDefault != modifier;
            input.setWalkDefault(walkIsDefault);
            hold(CMD_RUN, modifier);
            EXPECT_NEAR(frame().z, -0.95f * (walks ? 0.05f : 0.1f), 1e-3f) << walkIsDefault << modifier;
            EXPECT_EQ(animation(), nameHash(walks ? "BOTH_WALK" : "BOTH_RUN"));
        }
    }
}

TEST_F(Player, SteersByTheCamera) {
    world.camera.setView({-4, 3, 0}); // from above: looks down along +x
    world.camera.place();
    for (const auto& [keys, way] :
         {std::pair(std::vector{CMD_FORWARD}, cVector3(1, 0, 0)),
          {{CMD_BACK}, {-1, 0, 0}},
          {{CMD_RIGHT}, {0, 0, 1}},
          {{CMD_LEFT}, {0, 0, -1}},
          {{CMD_FORWARD, CMD_RIGHT}, {0.6247f, 0, 0.7809f}}}) { // forward is the shorter part
        for (const int key : keys) hold(key);
        cVector3 step = frame();
        step.y = 0;
        EXPECT_TRUE(step.isNear(way * (0.95f * 0.05f))) << way.x << ", " << way.z;
        EXPECT_TRUE(hero->getDirection().isNear(way)) << "faces where he goes";
        t.keys.fill(0);
    }
}

TEST_F(Player, OppositeKeysCancelAndKeepTheFacing) {
    for (const bool byCamera : {true, false}) {
        input.setMoveRelativeToCamera(byCamera);
        hold(CMD_FORWARD);
        hold(CMD_BACK);
        EXPECT_TRUE(frame().isNear({0, 0, 0}));
        EXPECT_EQ(hero->getDirection(), cVector3(0, 0, -1));
        EXPECT_EQ(animation(), nameHash("BOTH_WALK")) << "he walks on the spot";
    }
}

TEST_F(Player, TurnsAndStrafesRelativeToHimself) {
    const cVector3 turned(std::sin(5 * 0.0174533f), 0, -std::cos(5 * 0.0174533f)); // clockwise
    input.setMoveRelativeToCamera(false);
    input.setSensitivity(0.005f);
    hold(CMD_RIGHT);
    EXPECT_TRUE(frame().isNear({0, 0, 0})) << "turning alone is no step";
    EXPECT_TRUE(hero->getDirection().isNear(turned));
    hold(CMD_RIGHT, false);
    hold(CMD_LEFT);
    frame();
    EXPECT_TRUE(hero->getDirection().isNear({0, 0, -1}));
    t.keys.fill(0);

    world.camera.toggleView();
    world.camera.place();
    hold(CMD_FORWARD);
    EXPECT_TRUE(frame().isNear({0, 0, 0})) << "first person has keys of its own";
    t.keys.fill(0);
    hold(CMD_RIGHT + kFirstPersonCommands);
    EXPECT_NEAR(frame().x, 0.95f * 0.05f, 1e-3f) << "strafes";
    EXPECT_EQ(hero->getDirection(), cVector3(0, 0, -1));
    t.keys.fill(0);
    hold(CMD_FORWARD + kFirstPersonCommands);
    hold(CMD_RUN);
    EXPECT_NEAR(frame().z, -0.95f * 0.1f, 1e-3f) << "the run modifier is the base one";
    t.keys.fill(0);
    input.mouseDX = 20; // 0.1, times 50 degrees
    input.mouseDY = 10;
    frame();
    EXPECT_TRUE(hero->getDirection().isNear(turned)) << "looking turns him";
    EXPECT_NEAR(world.camera.getView().y, 0.05f, 1e-5f);
}

TEST_F(Player, AJumpStartsWithItsSpeedAndKeepsTheRun) {
    EXPECT_FALSE(hero->body->airborne);
    for (const int command : {CMD_FORWARD, CMD_RUN, CMD_JUMP}) hold(command);
    frame();
    EXPECT_TRUE(player->getVelocity().isNear({0, 0.5f * kRadius, -0.1f}));
    t.keys.fill(0);
    frame();
    EXPECT_EQ(animation(), nameHash("BOTH_JUMP"));
    EXPECT_NEAR(player->getVelocity().y, 0.5f * kRadius - 0.01f, 1e-4f);
    EXPECT_NEAR(player->getVelocity().z, -0.2f * kRadius, 1e-4f) << "held to a fifth of the radius";
    float highest = 0;
    for (int i = 0; i < 200 && hero->body->airborne; ++i) {
        frame();
        highest = std::max(highest, hero->getPosition().y);
    }
    EXPECT_GT(highest, kStanding + 0.5f);
    for (int i = 0; i < 3; ++i) frame();
    EXPECT_FALSE(hero->body->airborne);
    EXPECT_EQ(animation(), nameHash("BOTH_IDLE"));
    EXPECT_NEAR(hero->getPosition().y, kStanding, 0.03f);
}

TEST_F(Player, AFallHasALimit) {
    hero->setPosition({0, 300, 0});
    hold(CMD_FORWARD); // the ground is looked for by moving
    frame();
    t.keys.fill(0);
    for (int i = 0; i < 100; ++i) EXPECT_GE(frame().y, -(kRadius - 0.1f) - 0.1f);
    EXPECT_FLOAT_EQ(player->getVelocity().y, -(kRadius - 0.1f));
    EXPECT_EQ(animation(), nameHash("BOTH_FALL"));
}

TEST_F(Player, CollisionsBounceAndCeilingsStopTheRise) {
    player->onCollision({1, 0, -0.5f});
    EXPECT_TRUE(player->getVelocity().isNear({0.1f, 0, -0.05f}));
    player->onCollision({0, -1, 0});
    EXPECT_TRUE(player->getVelocity().isNear({0, 0.06f, 0}));
}

TEST_F(Player, StandingStillHeals) {
    const auto rest = [&](uint32_t ms) {
        cObjectMgr::instance().update(ms, &t.state);
        return world.health;
    };
    rest(1000 - 61 * 16 % 1000); // what standing so far has not used up yet does not matter below
    world.health = 50;
    EXPECT_EQ(rest(3000), 53) << "three points in one long update";
    rest(500);
    EXPECT_EQ(rest(500), 54);
    hold(CMD_FORWARD);
    EXPECT_EQ(rest(3000), 54) << "not while walking";
    t.keys.fill(0);
    world.health = 100;
    world.hud.statsTimer = 0;
    t.frame();
    EXPECT_GT(world.hud.statsTimer, 0) << "full health keeps showing";
    world.health = 1;
    EXPECT_EQ(rest(0xFFFFFFFF), 100);
}

TEST_F(Player, DeathEndsTheLevelOnceItsAnimationHasRun) {
    world.damage(500);
    EXPECT_EQ(animation(), nameHash("BOTH_DEATH1"));
    hold(CMD_FORWARD);
    EXPECT_TRUE(frame().isNear({0, 0, 0})) << "the dead do not walk";
    hero->body->airborne = true;
    player->update(16, &t.state);
    EXPECT_FALSE(hero->body->moving) << "nor do they fall";
    EXPECT_TRUE(player->isActive());
    EXPECT_EQ(world.levelChangePending, 0);
    pose().setPlaying(false);
    for (const int pending : {1, 0}) { // once
        frame();
        EXPECT_FALSE(player->isActive());
        EXPECT_EQ(world.levelChangePending, pending);
        world.levelChangePending = 0;
    }
}

TEST_F(Player, AHitIsPlayedToItsEndWhileHeStands) {
    world.damage(5);
    const int32_t hit = animation();
    EXPECT_TRUE(hit == nameHash("BOTH_BODYHIT1") || hit == nameHash("BOTH_BODYHIT2"));
    frame();
    EXPECT_EQ(animation(), hit);
    pose().setPlaying(false);
    frame();
    EXPECT_EQ(animation(), nameHash("BOTH_IDLE"));
}

TEST_F(Player, UsesWhatHeTouches) {
    hold(CMD_USE);
    frame();
    EXPECT_EQ(TestWorld::local("lever", "n"), 0) << "out of reach";
    TestWorld::object("lever")->setPosition(hero->getPosition());
    frame();
    EXPECT_EQ(TestWorld::local("lever", "n"), 1);
    input.bindings.settings.repeatIntervals[CMD_USE] = 40;
    for (int i = 0; i < 3; ++i) frame();
    EXPECT_EQ(TestWorld::local("lever", "n"), 2) << "held, it counts again after its interval";
}

TEST_F(Player, TakesOnlyOneVehicle) {
    cCmlObject& lever = TestWorld::script("lever");
    player->enterVehicle(&lever);
    EXPECT_FALSE(lever.isActive());
    lever.setActive(true);
    player->enterVehicle(&lever);
    EXPECT_TRUE(lever.isActive()) << "he has one already";
}

TEST_F(Player, TheViewChangesWithItsBaseKeyOnly) {
    const auto firstPersonAfter = [&](int command) {
        t.keys.fill(0);
        hold(command);
        frame();
        return world.camera.isFirstPerson();
    };
    EXPECT_FALSE(firstPersonAfter(CMD_TOGGLE_VIEW + kFirstPersonCommands));
    t.keys.fill(0);
    hold(CMD_TOGGLE_VIEW);
    hold(CMD_FORWARD + kFirstPersonCommands);
    EXPECT_TRUE(frame().isNear({0, 0, 0})) << "this update still listens to the view it began with";
    EXPECT_TRUE(world.camera.isFirstPerson());
    hold(CMD_TOGGLE_VIEW, false);
    EXPECT_LT(frame().z, -0.03f);
    EXPECT_FALSE(firstPersonAfter(CMD_TOGGLE_VIEW));
    EXPECT_FALSE(firstPersonAfter(CMD_ZOOM_OUT));
    EXPECT_NEAR(world.camera.getView().length(), 4.5f, 1e-4f);
}

TEST_F(Player, StandsStillBehindADetachedCameraAndTheMenu) {
    hold(CMD_FORWARD);
    hold(CMD_FORWARD + kFirstPersonCommands);
    world.camera.detach();
    const cVector3 eye = world.camera.getOffset();
    EXPECT_TRUE(frame().isNear({0, 0, 0}));
    EXPECT_TRUE((world.camera.getOffset() - eye).isNear({0, 0, -0.5f})) << "the camera flies";
    world.camera.setTarget(hero);
    for (const GameState state : {STATE_MENU, STATE_INVENTORY, STATE_LOADING}) {
        t.state = state;
        EXPECT_TRUE(frame().isNear({0, 0, 0})) << state;
    }
}

TEST_F(Player, AUseKeyWithoutAConversationReturnsToTheGame) {
    t.state = STATE_DIALOGUE;
    frame();
    EXPECT_EQ(t.state, STATE_DIALOGUE);
    hold(CMD_USE);
    frame();
    EXPECT_EQ(t.state, STATE_GAME);
    t.state = STATE_DIALOGUE;
    frame();
    EXPECT_EQ(t.state, STATE_DIALOGUE) << "held off for a quarter of a second";
    for (int i = 0; i < 15; ++i) frame();
    EXPECT_EQ(t.state, STATE_GAME);
}

TEST_F(Player, ChoiceKeysCountWheneverOneTalks) {
    cDialogue& talk = cDialogue::instance();
    cCmlObject& lever = TestWorld::script("lever");
    hold(CMD_FORWARD);
    frame();
    talk.start(*lever.getElement()->findChild(kCmlDialogue), lever);
    t.state = STATE_DIALOGUE;
    const auto choiceAfter = [&](int frames) {
        for (int i = 0; i < frames; ++i) frame();
        return talk.getChoice();
    };
    EXPECT_EQ(choiceAfter(20), 0) << "walked up to her with it";
    hold(CMD_FORWARD, false);
    choiceAfter(1);
    hold(CMD_FORWARD);
    EXPECT_EQ(choiceAfter(1), -1) << "before the replies are there, too";
    EXPECT_EQ(choiceAfter(10), -1) << "held off for a quarter of a second";
    EXPECT_EQ(choiceAfter(7), -2) << "and again when it stays down";
    hold(CMD_FORWARD, false);
    hold(CMD_LEFT);
    EXPECT_EQ(choiceAfter(1), -2) << "its pair is held off with it";
    hold(CMD_BACK);
    EXPECT_EQ(choiceAfter(1), -1);
}

TEST_F(Player, WithoutABodyOrAModelNothingBreaks) {
    auto bare = std::make_unique<cObject>();
    cPlayer other(bare.get());
    for (const GameState state : {STATE_GAME, STATE_CINEMATIC, STATE_INVENTORY, STATE_DIALOGUE}) {
        GameState current = state;
        for (int command = 0; command < kCommandCount; ++command) hold(command);
        other.update(16, &current);
    }
    EXPECT_TRUE(bare->getPosition().isFinite());
    EXPECT_EQ(world.levelChangePending, 0);
}
