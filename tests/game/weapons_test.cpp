// Shots, throws and blows, of the hero and of scripted objects, up to what they do to health.

#include "game/player.h"
#include "game/projectile.h"
#include "game/weapons.h"
#include "platform/random.h"
#include "script/attacks.h"
#include "script/cml_object.h"
#include "script/cml_vocabulary.h"
#include "script/event_mgr.h"
#include "support/test_world.h"
#include "ui/input_mgr.h"

#include <cmath>
#include <gtest/gtest.h>

namespace {
const std::string kItems =
    "<items><item name=\"pistol\" different_subobjects=\"1\" allow_grouping=\"1\"><image />"
    "<weapon type=\"ballistic\" range=\"20\" damage=\"20\" /><animation length=\"10\" action=\"4\" /></item>"
    "<item name=\"grenade\" allow_grouping=\"1\"><image /><weapon type=\"projectile\">"
    "<model file=\"thing.cpm\" size=\"0.1\" explosion=\"yes\" />"
    "<physics radius=\"0.15\" gravity=\"0,-0.006,0\" max_speed=\"0.3\" charge=\"1\" />"
    "<damage radius=\"1\" falloff=\"2\" amount=\"40\" /></weapon><animation length=\"6\" action=\"2\" "
    "/></item>"
    "<item name=\"stick\"><image /><weapon type=\"close\" damage=\"15\" offset=\"0,0,-1\" radius=\"0.8\" />"
    "<animation length=\"6\" action=\"2\" /></item></items>";
enum { kPistol, kGrenade, kStick };

class Weapons : public ::testing::Test {
protected:
    Weapons() {
        t.writeModels();
        t.game.write("objects.xml", kItems);
        t.setFloor(0);
        const std::string foe = objectElement(
            "foe", "default_action='a'",
            "<action name='a'><reaction type='ballistic_hit' do='set_local(shot,param)' />"
            "<reaction type='melee_hit' do='set_local(struck,param)' />"
            "<reaction type='projectile_hit' do='set_local(burnt,param)' /></action>"
            "<item name='gun' src='pistol' skill='100' /><item name='bomb' src='grenade' skill='100' />"
            "<item name='club' src='stick' skill='100' /><item name='none' src='nothing' />",
            "<physics position='0,1.3,-8' direction='0,0,1' up='0,1,0' gravity='1'>"
            "<boundingvolume start='0,0.35,0' end='0,-0.85,0' radius='0.4' solid='1' /></physics>");
        EXPECT_EQ(t.load(spawnElement() + foe), 0);
        cInputSettings& s = cInputMgr::instance().bindings.settings;
        for (int c = 0; c < kCommandCount; ++c) s.keysThirdPerson[static_cast<size_t>(c)] = 10 + c;
        s.repeatIntervals.fill(0);
        world.health = world.maxHealth = 100;
        for (int i = 0; i < 30; ++i) t.frame();
        TempGame::clearErrors();
    }
    void take(int id, int n) {
        world.inventory.clear();
        world.inventory.give(id, n);
    }
    /// Holds the fire key for so many frames, then lets go and waits.
    void fire(int held, int after) {
        t.keys[10 + CMD_FIRE] = 1;
        for (int i = 0; i < held; ++i) t.frame();
        t.keys[10 + CMD_FIRE] = 0;
        for (int i = 0; i < after; ++i) t.frame();
    }
    int32_t local(const char* name) { return TestWorld::local("foe", name); }
    static cProjectile* flying() {
        for (size_t i = 0; i < cObjectMgr::instance().count(); ++i) {
            cController* c = cObjectMgr::instance().get(i)->getController();
            if (c->kind() == cController::kProjectile) return static_cast<cProjectile*>(c);
        }
        return nullptr;
    }
    static int32_t itemAt(const char* name) {
        return TestWorld::script("foe").getElement()->childIndex(kCmlItem, "name", name);
    }
    void foeTo(float z) { TestWorld::object("foe")->setPosition({0, 1.27f, z}); }

    TestWorld t;
    cWorld& world = cWorld::instance();
};
} // namespace

TEST_F(Weapons, AShotTakesARoundAndHitsWhatStandsInItsWay) {
    take(kPistol, 2);
    fire(1, 3);
    EXPECT_EQ(world.inventory.selectedCount(), 2) << "not before its frame";
    fire(0, 12);
    EXPECT_EQ(world.inventory.selectedCount(), 1);
    EXPECT_EQ(local("shot"), 20);
    EXPECT_GT(world.hud.statsTimer, 0);
    foeTo(-30);
    TestWorld::script("foe").setLocal(0, 0);
    for (int i = 0; i < 2; ++i) {
        fire(1, 15);
        EXPECT_EQ(world.inventory.selectedCount(), 0);
        EXPECT_NE(world.inventory.selectedItem(), nullptr) << "the empty pistol stays";
        EXPECT_EQ(local("shot"), 0) << "too far, then nothing to shoot with";
        foeTo(-8);
    }
    take(kStick, 1);
    fire(1, 10);
    EXPECT_EQ(local("struck"), 0) << "a blow reaches only what is near";
    foeTo(-1.2f);
    fire(1, 10);
    EXPECT_EQ(local("struck"), 15);
    EXPECT_EQ(world.inventory.selectedCount(), 1);
}

TEST_F(Weapons, AThrowGoesAsFarAsItWasHeld) {
    const auto speedAfter = [&](int held) {
        take(kGrenade, 1);
        fire(held, 3);
        const cProjectile* p = flying();
        EXPECT_NE(p, nullptr);
        const float speed = p ? p->getVelocity().length() : 0;
        for (int i = 0; i < 300 && flying(); ++i) t.frame();
        EXPECT_EQ(flying(), nullptr) << "it comes down and is gone";
        return speed;
    };
    foeTo(-40);
    const float half = speedAfter(38), full = speedAfter(200);
    EXPECT_NEAR(full, 0.3f, 0.01f);
    EXPECT_NEAR(half, 0.15f, 0.01f) << "38 of the 75 frames of a full charge";
    EXPECT_EQ(world.inventory.selectedItem(), nullptr) << "the last one was thrown";
}

TEST_F(Weapons, ScriptedObjectsShootAndStrike) {
    cCmlObject& foe = TestWorld::script("foe");
    const auto healthAfter = [&](const char* item, int32_t target, int32_t skill = 100) {
        attackWith(foe, skill, itemAt(item), target);
        cEventMgr::instance().process(16, &t.state);
        return world.health;
    };
    // Skill 100 leaves a spread of one value, 0: a shot that cannot miss.
    EXPECT_EQ(healthAfter("gun", kWordPlayer), 80);
    foe.setTarget(nullptr);
    EXPECT_EQ(healthAfter("gun", kWordTarget), 80) << "it faces the hero, but has no target to shoot at";
    EXPECT_EQ(healthAfter("gun", kWordPlayer, INT32_MIN), 80)
        << "with any skill of a document it goes anywhere";
    EXPECT_EQ(healthAfter("club", kWordPlayer), 80) << "too far for a club";
    foeTo(-1.2f);
    EXPECT_EQ(healthAfter("club", kWordPlayer), 65);
    EXPECT_EQ(healthAfter("none", kWordPlayer), 65);
    EXPECT_EQ(healthAfter("of no name", kWordPlayer), 65);
    EXPECT_EQ(TempGame::errorCount("Object tried to use unexesting item! Its name is foe"), 1)
        << "one row, however often";
    const cVector3 before = foe.getOwner()->getDirection();
    for (const int32_t target : {int32_t{kWordInverted}, 123456}) { // an unknown name: straight on
        healthAfter("gun", target);
        EXPECT_TRUE(foe.getOwner()->getDirection().isNear(-before)) << "it turns to where it aims";
    }
}

TEST_F(Weapons, AScriptedThrowComesDownWhereTheHeroStands) {
    platform::seedRandom(1); // the arc's height is left to chance
    attackWith(TestWorld::script("foe"), 100, itemAt("bomb"), kWordPlayer);
    t.frame();
    ASSERT_NE(flying(), nullptr);
    float highest = 0;
    for (int i = 0; i < 400 && flying(); ++i) {
        highest = std::max(highest, flying()->getOwner()->getPosition().y);
        t.frame();
    }
    EXPECT_EQ(flying(), nullptr);
    EXPECT_GT(highest, 1.4f) << "thrown, not shot";
    EXPECT_LT(world.health, 100);
    EXPECT_EQ(local("burnt"), 0) << "the thrower stood far enough away";
}

TEST_F(Weapons, TheAirHoldsOnlySoMany) {
    for (int i = 0; i < cProjectile::kMostInFlight; ++i)
        launchProjectile(*cItemDefs::instance().at(kGrenade), {static_cast<float>(2 * i), 500, 0},
                         {0, 0.1f, 0});
    for (int i = 0; i < 3; ++i) attackWith(TestWorld::script("foe"), 100, itemAt("bomb"), kWordPlayer);
    EXPECT_EQ(cProjectile::inFlight(), cProjectile::kMostInFlight);
    EXPECT_EQ(TempGame::errorCount("CML object foe throws more than can be in the air"), 1);
    cObjectMgr::instance().clear();
    EXPECT_EQ(cProjectile::inFlight(), 0);
}
