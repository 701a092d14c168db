// New games and checkpoints of cWorld: players.cfl.

#include "core/config_mgr.h"
#include "core/log_mgr.h"
#include "platform/folder_lock.h"
#include "script/cml_vocabulary.h"
#include "script/dialogue.h"
#include "script/event_mgr.h"
#include "ui/input_mgr.h"
#include "world/object_mgr.h"
#include "world/players_file.h"
#include "world/world.h"

namespace {
constexpr const char* kFirstLevel = "testlevel.xml";
constexpr const char* kFirstSpawn = "hut";
constexpr int32_t kNoticeFrames = 400;

bool isTooLong(const cCheckpoint& c) {
    for (const std::string* text : {&c.heroName, &c.spawnPoint, &c.levelFile, &c.settingsName}) {
        if (text->size() > cCheckpoint::kLongestText) return true;
    }
    return false;
}
} // namespace

bool cWorld::startNewGame(const std::string& name) {
    heroName = name;
    inventory.clear();
    levelFile = kFirstLevel;
    spawnPoint = kFirstSpawn;
    saveGame();
    maxHealth = health = cConfigMgr::instance().getInt("MAX_HP", "character");
    levelChangePending = 0;
    enterLevel();
    return isGameLoaded();
}

void cWorld::requestLevelChange(const std::string& level, const std::string& spawn) {
    if (levelChangePending > 0) return;
    levelFile = level;
    spawnPoint = spawn;
    saveGame();
    levelChangePending = 1;
}

bool cWorld::saveGame() {
    cInputMgr& input = cInputMgr::instance();
    heroSettings = input.settingsName.empty() ? cInputMgr::kLatest : input.settingsName;
    input.keepSettings(heroSettings);
    const cCheckpoint checkpoint{heroName, spawnPoint, levelFile, heroSettings};
    bool saved = false;
    if (isTooLong(checkpoint)) {
        cLogMgr::instance().error("The names of a checkpoint may have %zu characters: %s, %s",
                                  cCheckpoint::kLongestText, levelFile.c_str(), spawnPoint.c_str());
    } else {
        const platform::cFolderLock lock(cPlayersFile::kName);
        cPlayersFile file = cPlayersFile::read();
        file.put(heroName, checkpoint.write(inventory));
        saved = file.write();
    }
    if (!saved)
        hud.message(kNoticeFrames, "The game could not be saved. %s says why.",
                    cLogMgr::instance().pageName().c_str());
    checkpointWritten_ = saved;
    return saved;
}

int cWorld::findSavedGame(const std::string& name) const {
    return cPlayersFile::read().find(name);
}

std::vector<std::string> cWorld::listSavedGames() const {
    std::vector<std::string> names;
    for (cPlayersFile::Hero& hero : cPlayersFile::read().heroes) names.push_back(std::move(hero.name));
    return names;
}

bool cWorld::useSettings(const std::string& entry) {
    if (!isGameLoaded() || entry == heroSettings) return true;
    heroSettings = entry;
    if (!checkpointWritten_) return true; // the next one will name it
    const platform::cFolderLock lock(cPlayersFile::kName);
    cPlayersFile file = cPlayersFile::read();
    return file.setSettings(heroName, entry) && file.write();
}

int cWorld::loadSavedGame(const std::string& name) {
    const cPlayersFile file = cPlayersFile::read();
    const int index = file.find(name);
    if (index < 0) return -1;
    cCheckpoint checkpoint;
    checkpoint.read(file.heroes[static_cast<size_t>(index)].record, inventory);
    heroName = checkpoint.heroName;
    spawnPoint = checkpoint.spawnPoint;
    levelFile = checkpoint.levelFile;
    heroSettings = checkpoint.settingsName;
    cInputMgr& input = cInputMgr::instance();
    // OUR OWN RULE: what could not be read is not replaced by the defaults, which a checkpoint would then
    // store: the hero keeps his entry, for when it can be read again.
    if (input.loadSettings(heroSettings) != 0) {
        input.applySettings(); // the end of a level has turned the music down
        if (input.isUnread(heroSettings)) {
            input.settingsName = heroSettings;
        } else {
            input.loadSettings(cInputMgr::kDefault);
        }
    }
    // OUR OWN RULE: what is his is not stored under the entry of the hero before.
    if (heroSettings == cInputMgr::kLatest) input.settingsName.clear();
    checkpointWritten_ = true;
    wakeUp();
    return 0;
}

void cWorld::returnToCheckpoint() {
    if (!checkpointWritten_ || loadSavedGame(heroName) != 0) wakeUp();
}

void cWorld::wakeUp() {
    enterLevel();
    if (isGameLoaded()) hud.showStats();
    maxHealth = health = cConfigMgr::instance().getInt("MAX_HP", "character");
    levelChangePending = 0;
}

/// Where the hero cannot go on, the player chooses anew in the menu.
void cWorld::enterLevel() {
    const std::string hero = heroName;
    if (levelFile.empty() || spawnPoint.empty()) {
        cLogMgr::instance().error("players.cfl: the checkpoint of %s is damaged", hero.c_str());
        leaveGame("The checkpoint of " + hero + " is damaged.");
    } else if (levelFile == kEndOfTheGame) {
        leaveGame(hero + " has reached the end of the journey.");
    } else if (loadLevel(std::string(levelFile)) != 0 && !isLevelLoaded()) {
        cLogMgr::instance().error("The level %s of the checkpoint cannot be loaded", levelFile.c_str());
        leaveGame("The level " + levelFile + " cannot be loaded. " + cLogMgr::instance().pageName() +
                  " says why.");
    } else if (!cObjectMgr::instance().hero()) {
        cLogMgr::instance().error("%s has no spawn point %s", levelFile.c_str(), spawnPoint.c_str());
        leaveGame("The level " + levelFile + " has no place \"" + spawnPoint + "\".");
    }
}

void cWorld::leaveGame(const std::string& reason) {
    resetCinematic();
    cDialogue::instance().close();
    cObjectMgr::instance().clear();
    cEventMgr::instance().clear();
    document.clear();
    heroName = kUnloadedHero;
    inventory.close();
    hud.statsTimer = 0; // the panel would lie behind the menu
    cInputMgr::instance().openMenu();
    cInputMgr::instance().menu.setNotice(reason);
    if (state_ && *state_ != STATE_QUIT) *state_ = STATE_MENU;
}
