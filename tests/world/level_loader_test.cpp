#include "game/physics_world.h"
#include "game/player.h"
#include "support/test_world.h"
#include "world/model_objects.h"

#include <gtest/gtest.h>

namespace {
const std::string kHut =
    "<player spawnpoint=\"hut\"><physics position=\"1,2,3\" direction=\"0,0,5\" up=\"0,2,0\" />"
    "<camera firstperson=\"0\" offset=\"0,1,0\" position=\"0,0,4\" /></player>";
const std::string kTower =
    "<player spawnpoint=\"tower\"><physics position=\"7,8,9\" direction=\"1,0,0\" up=\"0,1,0\" />"
    "<camera firstperson=\"1\" offset=\"0,0.5,0\" position=\"0,3,3\" /></player>";

class LevelLoader : public ::testing::Test {
protected:
    LevelLoader() {
        t.writeCpm("thing.cpm", 2);
        t.writeOctree("a.oct", floorMesh(0, 10));
        t.writeOctree("b.oct", floorMesh(5, 10));
        t.writeCharacter("maincharfinal\\mainchar_noweapon");
        t.writeCharacter("folk\\guard");
        t.writeEnvironment("sea.env", -5, true);
        t.writeEnvironment("sky.env", -20, false, {0, 44, 0});
    }
    cObject* hero() { return cObjectMgr::instance().hero(); }
    float groundHeight() {
        return 10 - 20 * cPhysicsWorld::instance().octree().trace({1, 10, 2}, {1, -10, 2});
    }

    TestWorld t;
    cWorld& world = cWorld::instance();
    cObjectMgr& objects = cObjectMgr::instance();
};

std::string environment(const char* file) {
    return std::string("<enviroment file=\"") + file + "\" />";
}
std::string files(const std::string& appearance, const std::string& collision) {
    return "<files appearance=\"" + appearance + "\" collision=\"" + collision + "\" music=\"no\" />";
}
} // namespace

TEST_F(LevelLoader, PlacesTheHeroAndTheCameraAtTheSpawnPoint) {
    world.spawnPoint = "hut";
    ASSERT_EQ(t.load(kTower + kHut), 0);
    ASSERT_NE(hero(), nullptr);
    EXPECT_EQ(hero()->getPosition(), cVector3(1, 2, 3));
    EXPECT_EQ(hero()->getDirection(), cVector3(0, 0, 1)) << "normalised";
    EXPECT_EQ(hero()->getUp(), cVector3(0, 1, 0));
    ASSERT_NE(hero()->body, nullptr);
    EXPECT_TRUE(hero()->body->shape.p1.isNear({1, 1.15f, 3}));
    EXPECT_FLOAT_EQ(hero()->body->shape.radius, 0.4f);
    EXPECT_FALSE(world.camera.isFirstPerson());
    EXPECT_EQ(world.camera.getView(), cVector3(0, 0, 4));

    world.spawnPoint = "tower";
    ASSERT_EQ(t.load(kTower + kHut), 0);
    EXPECT_EQ(world.camera.getTarget(), hero());
    EXPECT_TRUE(world.camera.isFirstPerson());
    EXPECT_EQ(world.camera.getView(), cVector3());
    EXPECT_TRUE(world.camera.getEye().isNear({7, 8.5f, 9}));
    world.camera.toggleView();
    EXPECT_EQ(world.camera.getView(), cVector3(0, 3, 3)) << "the orbit waits for the first toggle";
    EXPECT_TRUE(TempGame::errors().empty()) << TempGame::errors().front();
}

TEST_F(LevelLoader, ASpawnPointThatLacksDataGivesNoHero) {
    const std::string row = "Spawnpoint hut has no position and/or camera data!";
    world.spawnPoint = "hut";
    for (const std::string inside : {"<physics position=\"0,0,0\" />", "<camera />", ""}) {
        TempGame::clearErrors();
        EXPECT_EQ(t.load("<player spawnpoint=\"hut\">" + inside + "</player>" + objectElement("o")), 0);
        EXPECT_EQ(hero(), nullptr) << inside;
        EXPECT_EQ(TempGame::errors(), std::vector<std::string>{row}) << inside;
        EXPECT_EQ(objects.count(), 1u);
    }
    TempGame::clearErrors();
    world.spawnPoint = "nowhere";
    EXPECT_EQ(t.load(kHut), 0);
    EXPECT_EQ(hero(), nullptr);
    EXPECT_TRUE(TempGame::errors().empty()) << "an unknown spawn point is no error";
}

TEST_F(LevelLoader, ObjectsTakeTheirShapeAndFlagsFromThePhysics) {
    struct {
        const char* physics;
        float boundingRadius, bodyRadius; ///< 0: no body
        uint32_t flags;
    } const kRows[] = {
        {"<physics position=\"1,0,0\" radius=\"2.5\" />", 2.5f, 0, 0},
        {"<physics position=\"1,0,0\" />", 0, 0, 0},
        {"<physics gravity=\"0\"><boundingvolume start=\"0,1,0\" end=\"0,-1,0\" radius=\"0.5\" /></physics>",
         1.5f, 0.5f, 0},
        {"<physics gravity=\"1\" position=\"0,4,0\"><boundingvolume radius=\"0.5\" solid=\"1\" /></physics>",
         0.5f, 0.5f, MOVE_GROUNDED | MOVE_SOLID},
        {"<physics radius=\"3\"><boundingvolume start=\"0,1,0\" end=\"0,-1,0\" radius=\"0.01\" /></physics>",
         0, 0, 0},
        {"<physics position=\"1e40,nan,0\" radius=\"nan\"><boundingvolume radius=\"nan\" /></physics>", 0, 0,
         0},
    };
    for (const auto& row : kRows) {
        SCOPED_TRACE(row.physics);
        ASSERT_EQ(t.load(objectElement("o", "", "", row.physics)), 0);
        cObject* o = TestWorld::object("o");
        ASSERT_NE(o, nullptr);
        EXPECT_FLOAT_EQ(o->boundingRadius(), row.boundingRadius);
        ASSERT_EQ(o->body != nullptr, row.bodyRadius > 0);
        if (o->body) {
            EXPECT_FLOAT_EQ(o->body->shape.radius, row.bodyRadius);
            EXPECT_EQ(o->body->flags, row.flags);
            EXPECT_EQ((o->body->shape.p0 + o->body->shape.p1) / 2, o->getPosition());
        }
        for (int i = 0; i < 3; ++i) t.frame();
        EXPECT_TRUE(o->getPosition().isFinite());
    }
}

TEST_F(LevelLoader, StaticModelsAreCentredAndScaled) {
    ASSERT_EQ(
        t.load(objectElement("big", "", "", "size=\"5\"") + objectElement("asis", "", "", "size=\"0.0005\"")),
        0);
    for (const auto& [name, extent] : {std::pair("big", 5.0f), {"asis", 1.0f}}) {
        EXPECT_FLOAT_EQ(static_cast<cStaticObject*>(TestWorld::object(name))->getModel()->extent(), extent);
    }
    EXPECT_EQ(world.staticModels.count(), 2u);
    ASSERT_EQ(t.load(""), 0);
    EXPECT_EQ(world.staticModels.count(), 0u) << "handed back";
}

TEST_F(LevelLoader, AnimatedModelsAreSharedByTheirNameAlone) {
    const auto person = [](const char* name, const char* model) {
        return std::string("<object name=\"") + name +
               "\"><appearance type=\"animated\"><model file=" + model +
               " /></appearance><physics /></object>";
    };
    ASSERT_EQ(t.load(person("a", "\"folk\\guard\" no_head_shadow=\"yes\"") +
                     person("b", "\"elsewhere/guard\" no_head_shadow=\"no\"") + person("c", "\"ghost\"")),
              0);
    const auto pose = [](const char* name) -> cCharacterPose& {
        return static_cast<cAnimatedObject*>(TestWorld::object(name))->pose();
    };
    EXPECT_EQ(pose("a").getModel(), pose("b").getModel());
    EXPECT_FALSE(pose("a").hasHeadShadow());
    EXPECT_TRUE(pose("b").hasHeadShadow());
    EXPECT_EQ(TempGame::errorCount("Unable to load the animated model ghost"), 1);
    ASSERT_NE(TestWorld::object("c"), nullptr) << "kept with an empty model";
    world.update(16, &t.state);
    ASSERT_EQ(t.load(""), 0);
    EXPECT_EQ(world.animatedModels.count(), 0u);
}

TEST_F(LevelLoader, IncompleteObjectsAreSkipped) {
    const std::string thing = "><model file=\"thing.cpm\" /></appearance>";
    for (const std::string& inside :
         {"<appearance type=\"static\"" + thing, std::string("<physics />"),
          std::string("<appearance type=\"static\" /><physics />"),
          "<appearance type=\"liquid\"" + thing + "<physics />",
          std::string("<appearance type=\"static\"><model file=\"none.cpm\" /></appearance><physics />")}) {
        EXPECT_TRUE(TempGame::errors().empty());
        ASSERT_EQ(t.load("<object name=\"o\">" + inside + "</object>"), 0);
        EXPECT_EQ(objects.count(), 0u) << inside;
    }
    EXPECT_EQ(TempGame::errorCount("Unable to load model none.cpm"), 1);
}

TEST_F(LevelLoader, KeepsSceneryOfTheSameNameAndReplacesOthers) {
    ASSERT_EQ(t.load(files("a.oct", "a.oct")), 0);
    EXPECT_NEAR(groundHeight(), 0, 0.01f);
    t.game.write("a.oct", "damaged");
    EXPECT_EQ(t.load(files("a.oct", "a.oct")), 0) << "the same name is not read again";
    EXPECT_FALSE(world.scenery.empty());
    EXPECT_EQ(t.load(files("b.oct", "b.oct")), 0);
    EXPECT_NEAR(groundHeight(), 5, 0.01f);
    EXPECT_TRUE(TempGame::errors().empty());
    EXPECT_LT(t.load(files("a.oct", "b.oct") + objectElement("o")), 0) << "read again, and now damaged";
    EXPECT_EQ(objects.count(), 1u) << "loading goes on";
    EXPECT_TRUE(world.scenery.empty());
    EXPECT_LT(t.load(files("none.oct", "none.oct")), 0);
    EXPECT_EQ(TempGame::errorCount("Failed to open scenery file none.oct"), 1);
    EXPECT_EQ(TempGame::errorCount("Failed to open collision file none.oct"), 1);
}

TEST_F(LevelLoader, ADocumentThatFailsLeavesNoObjects) {
    world.spawnPoint = "hut";
    t.game.write("cut.xml", "<level");
    t.game.write("bad.xml", "<level><wings /></level>");
    for (const char* file : {"cut.xml", "bad.xml", "missing.xml"}) {
        ASSERT_EQ(t.load(kHut + objectElement("o")), 0);
        TempGame::clearErrors();
        EXPECT_LT(world.loadLevel(file), 0);
        EXPECT_FALSE(TempGame::errors().empty()) << file;
        EXPECT_EQ(objects.count(), 0u);
        EXPECT_EQ(world.levelFile, "level.xml");
        EXPECT_EQ(world.camera.getTarget(), nullptr);
        for (int i = 0; i < 3; ++i) t.frame();
        world.drawEnvironment();
        world.updateCameraOrCinematic(16, &t.state);
    }
}

TEST_F(LevelLoader, ALevelLoadEndsAllButTheMenuAndKeepsGlobals) {
    const std::string level = objectElement("o", "on_set=\"inc_local(a,1);inc_global(g,1)\"");
    int loads = 0;
    for (const GameState state : {STATE_DIALOGUE, STATE_CINEMATIC, STATE_MENU}) {
        t.state = state;
        world.intensity = world.intensityRising = 50;
        ASSERT_EQ(t.load(level), 0);
        EXPECT_EQ(t.state, state == STATE_MENU ? STATE_MENU : STATE_GAME);
        EXPECT_EQ(world.intensity + world.intensityRising, 0);
        EXPECT_EQ(TestWorld::local("o", "a"), 1) << "objects start afresh";
        EXPECT_EQ(world.globals.getGlobal(world.globals.globalIndex("g")), ++loads);
    }
}

TEST_F(LevelLoader, LevelChangesAreAskedForOnce) {
    ASSERT_EQ(t.load(objectElement("gate", "file=\"next.xml\" spawnpoint=\"door\" default_action=\"a\"",
                                   "<action name=\"a\" on_set=\"swap_level()\" />")),
              0);
    EXPECT_EQ(world.levelFile, "next.xml");
    EXPECT_EQ(world.spawnPoint, "door");
    EXPECT_EQ(world.levelChangePending, 1);
    world.requestLevelChange("other.xml", "roof");
    EXPECT_EQ(world.levelFile, "next.xml");
    t.load("", "next.xml");
    world.levelFile = "changed.xml";
    EXPECT_EQ(world.loadSavedGame(world.heroName), 0);
    EXPECT_EQ(world.levelFile, "next.xml");
    EXPECT_EQ(world.levelChangePending, 0);
    EXPECT_EQ(world.loadSavedGame("nobody"), -1);
}

TEST_F(LevelLoader, BelowTheDeathHeightTheHeroDrownsOrFallsOut) {
    world.spawnPoint = "hut";
    // The last level has no environment of its own: the old one stays. A fade under way goes on.
    const struct {
        std::string environment;
        float y;
        int fade, health, fadeAfter;
    } rows[] = {{environment("sea.env"), -5, 0, 100, 0},
                {environment("sea.env"), -5.1f, 0, 0, 0}, // the death animation comes first
                {environment("sky.env"), -30, 0, 100, 1},
                {environment("sky.env"), -30, 77, 100, 77},
                {"", -30, 0, 100, 1}};
    for (const auto& row : rows) {
        world.health = 100;
        ASSERT_EQ(t.load(row.environment + kHut), 0);
        hero()->setPosition({0, row.y, 0});
        world.levelChangePending = row.fade;
        world.drawEnvironment();
        EXPECT_EQ(world.health, row.health) << row.environment << row.y;
        EXPECT_EQ(world.levelChangePending, row.fadeAfter) << row.environment << row.y;
    }
    EXPECT_EQ(world.lightPosition, cVector3(0, 44, 0));
}

TEST_F(LevelLoader, AnEnvironmentOutlivesAMissingFileButNoDamagedOne) {
    t.game.write("cut.env", "short");
    world.spawnPoint = "hut";
    for (const char* file : {"sea.env", "none.env", "cut.env", "sea.env"}) {
        ASSERT_EQ(t.load(environment(file) + kHut), 0);
        const bool damaged = file == std::string("cut.env");
        hero()->setPosition({0, -9, 0});
        for (int i = 0; i < 30; ++i) world.drawEnvironment();
        EXPECT_EQ(world.health, damaged ? 100 : 0) << file;
        EXPECT_EQ(world.environmentFile, damaged ? "" : "sea.env") << file;
        EXPECT_EQ(TempGame::errorCount("Environment file cut.env is damaged"), damaged) << file;
        TempGame::clearErrors();
        world.health = 100;
    }
}

TEST_F(LevelLoader, DamageIsClampedAndShowsFullHealth) {
    struct {
        int32_t before, amount, after;
        bool shown;
    } const kRows[] = {{50, -10, 60, false}, {95, -10, 100, true},      {100, 0, 100, true},
                       {50, 0, 50, false},   {50, 50, 0, false},        {50, 80, 0, false},
                       {0, -10, 0, false},   {50, INT32_MIN, 100, true}};
    for (const auto& row : kRows) {
        world.health = row.before;
        world.hud.statsTimer = 0;
        world.damage(row.amount);
        EXPECT_EQ(world.health, row.after) << row.before << " less " << row.amount;
        EXPECT_EQ(world.hud.statsTimer > 0, row.shown) << row.before << " less " << row.amount;
    }
}
