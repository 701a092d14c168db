#pragma once
#include "core/game_state.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

class cModel;

/// What the command line asks of a windowed run.
struct RunOptions {
    std::string level, spawn;  ///< start there at once; empty: intro and menu
    int width = 0, height = 0; ///< 0: as configured
    bool fast = false;
    struct Screenshot {
        std::string path;
        uint32_t frame; ///< counted from the first presented one
    };
    std::vector<Screenshot> screenshots;
    /// Called at the start of every frame of the intro, the start menu and the game; may push SDL events.
    std::function<void()> script;
};

/// Owns the thread from start to exit: managers, window, the three loops, shutdown.
class cApplication {
public:
    explicit cApplication(RunOptions options = {});
    ~cApplication();

    int run(); ///< the whole program; 0, or 1 when the level of the options cannot be loaded

    // The pieces of run, for tests that step the game themselves.
    bool start();
    void introFrame();
    void menuFrame();
    void gameFrame();
    void afterIntro();
    void shutdown();
    /// Everything but sound and log, in the order in which nobody misses what is gone.
    static void destroyManagers();
    /// The part of it that a level fills; window and textures stay.
    static void destroyGame();
    GameState state() const { return state_; }
    void setState(GameState state) { state_ = state; }

private:
    void createManagers() const;
    void openWindow();
    void convertModels();
    void makeRamp() const;
    bool startLevel();
    static void tellNoWindow();
    static void waitWithoutScreen();
    void measure();
    void beforeFrame();
    bool mayBeHeld() const;
    void waitForFocus();
    void takePictures();

    RunOptions options_;
    GameState state_ = STATE_INTRO;
    uint32_t dt_ = 0;       ///< ms between the two most recent measurements
    uint64_t tickBase_ = 0; ///< at the last measurement
    bool started_ = false;
    std::vector<std::unique_ptr<cModel>> converted_;
};
