// New games and checkpoints of cWorld. A checkpoint lives as long as the run.

#include "core/config_mgr.h"
#include "core/log_mgr.h"
#include "world/world.h"

namespace {
constexpr const char* kFirstLevel = "testlevel.xml";
constexpr const char* kFirstSpawn = "hut";
} // namespace

bool cWorld::startNewGame(const std::string& name) {
    heroName = name;
    inventory.clear();
    levelFile = kFirstLevel;
    spawnPoint = kFirstSpawn;
    saveGame();
    health = maxHealth;
    levelChangePending = 0;
    if (loadLevel(levelFile) >= 0) return true;
    heroName = kUnloadedHero;
    return false;
}

void cWorld::requestLevelChange(const std::string& level, const std::string& spawn) {
    if (levelChangePending > 0) return;
    levelFile = level;
    spawnPoint = spawn;
    saveGame();
    levelChangePending = 1;
}

void cWorld::saveGame() {
    checkpoint_ = {heroName, levelFile, spawnPoint};
}

int cWorld::loadSavedGame(const std::string& name) {
    if (checkpoint_.hero.empty() || checkpoint_.hero != name) return -1;
    heroName = checkpoint_.hero;
    spawnPoint = checkpoint_.spawn;
    levelFile = checkpoint_.level;
    if (loadLevel(std::string(levelFile)) != 0) {
        cLogMgr::instance().error("The level %s of the checkpoint cannot be loaded", levelFile.c_str());
    }
    hud.showStats();
    maxHealth = health = cConfigMgr::instance().getInt("MAX_HP", "character");
    levelChangePending = 0;
    return 0;
}
