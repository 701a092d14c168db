#pragma once
#include "game/camera.h"
#include "game/cinematic.h"
#include "game/hud.h"
#include "game/inventory.h"
#include "script/cml_element.h"
#include "script/script_globals.h"
#include "world/environment.h"
#include "world/model_store.h"
#include "world/octree.h"

#include <string>

/// The current level and everything that outlives it: hero's health and name, camera, inventory, globals.
class cWorld {
public:
    static cWorld& instance();
    static void destroy();

    // --- Levels (level_loader.cpp, saved_heroes.cpp)
    /// 0, or negative when the document or its scenery cannot be loaded; a document that fails leaves no
    /// objects.
    int loadLevel(const std::string& fileName);
    /// False after a document that failed. Our own rule: a level that lacks only its scenery is entered.
    bool isLevelLoaded() const { return !document.name.empty(); }
    /// Starts the end-of-level fade towards a level; ignored while one is under way.
    void requestLevelChange(const std::string& level, const std::string& spawn);
    /// A new hero at the first level's first spawn point. False, with the menu open and a notice in it, when
    /// the level cannot be loaded.
    bool startNewGame(const std::string& name);
    /// The hero's checkpoint, with what he carries and the settings in force, to players.cfl. False, with a
    /// line for the player, when it could not be written; the old file is then as it was.
    bool saveGame();
    int findSavedGame(const std::string& name) const; ///< −1 when there is none
    std::vector<std::string> listSavedGames() const;  ///< in the order in which they began
    /// 0, or −1 with nothing changed when there is none of that name. A checkpoint that leads nowhere opens
    /// the menu with a notice, and no game is loaded then.
    int loadSavedGame(const std::string& name);
    /// At the end of a level or of the hero: his checkpoint, or, when it never reached the disk, the level
    /// and place that it names, with what he carries now.
    void returnToCheckpoint();
    /// OUR OWN RULE: the settings entry that the player has chosen in play is the hero's at once, in his
    /// checkpoint too. False when that cannot be written. Without a game nothing happens.
    bool useSettings(const std::string& entry);
    bool isGameLoaded() const;

    // --- Intro (intro.cpp)
    void startIntro();
    void updateIntro(uint32_t elapsedMs, GameState* state);

    // --- Frame
    /// Where state changes of a level load go: conversations and cinematics end with their level.
    void attachState(GameState* state) { state_ = state; }
    void update(uint32_t elapsedMs, GameState* state);
    void updateCameraOrCinematic(uint32_t elapsedMs, GameState* state);
    void drawLevel();
    void drawEnvironment();
    ViewInfo viewInfo() const;
    const cEnvironment& environment() const { return environment_; }
    bool isPlayerVisible() const; ///< false in first person without a cinematic
    void drawOverlays();          ///< 2D layer: crosshair, fades, action music, end of level (overlays.cpp)
    void forget(const cObject* object);

    // --- Cinematics (script/cinematic.cpp)
    void startCinematic(int32_t position); ///< among the level element's children
    void updateCinematic(GameState* state);
    void resetCinematic();

    // --- Hero
    /// Negative heals. Plays the hit or death animation.
    void damage(int32_t amount);
    /// His name as people say it: without the mark of the program's own names.
    std::string shownHeroName() const {
        return heroName.substr(heroName.starts_with(kUnloadedHero[0]) ? 1 : 0);
    }

    static constexpr const char* kUnloadedHero = "\xA3"
                                                 "UNLOADED";
    static constexpr float kNoLight = -49; ///< a light at or below this height does not exist

    cCmlElement document;
    std::string levelFile, spawnPoint;
    std::string appearanceFile, environmentFile;
    std::string heroName = kUnloadedHero;
    std::string heroSettings;
    cStaticModelStore staticModels;
    cAnimatedModelStore animatedModels;
    cVector3 lightPosition{0, -50, 0};
    uint32_t celRamp = 0; ///< GL name
    int32_t maxHealth, health;
    int32_t intensity = 0, intensityRising = 0; ///< envelope of the action music, 0 … 200
    int32_t levelChangePending = 0;             ///< 0, else the alpha of the end-of-level fade
    float playerMusicVolume = 1;                ///< of the settings in force, 0 … 1
    int32_t menuTexture = -1;                   ///< set by the menu, which owns the picture
    cCamera camera;
    cHud hud;
    cInventory inventory{hud};
    cCinematic cinematic;
    cScriptGlobals globals;
    cOctree scenery;

private:
    cWorld();

    // Steps of a level load.
    int loadDocument(const std::string& fileName);
    void loadEnvironment();
    void loadFog();
    int loadScenery();
    void loadObjects();
    void loadHero();
    void loadMusic();
    void endCinematic(GameState* state);
    void giveUpCinematic();
    void enterLevel();
    void wakeUp(); ///< enters the level in full health
    void leaveGame(const std::string& reason);

    cEnvironment environment_;
    bool checkpointWritten_ = false;
    GameState* state_ = nullptr;
    int32_t introImage_ = -1;
    uint64_t introClock_ = 0; ///< ms
};
