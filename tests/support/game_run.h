#pragma once
#include "core/application.h"
#include "core/auto_player.h"
#include "support/temp_game.h"
#include "ui/input_settings.h"

#include <memory>

/// The whole game on the made data, in a user directory of its own, with the fixed clock and a fixed seed.
/// Needs a display. Only input is given to it.
class GameRun {
public:
    explicit GameRun(RunOptions options = {});
    GameRun(RunOptions options, std::shared_ptr<TempGame> files); ///< on files of an earlier run
    ~GameRun();

    void frames(int count); ///< of whatever loop the state asks for
    bool walkTo(float x, float z, int mostFrames = 900);
    void face(float x, float z);
    void hold(int command, int count); ///< for so many frames
    void tapKey(int sdlKey);           ///< down for a frame, up for a frame
    void type(const std::string& text);
    void skipIntro(); ///< to the main page, when the menu takes keys
    /// From the main page without a game: picks the name and new settings of the name "test".
    void startNewGame(const std::string& name);
    cVector3 hero() const; ///< position; far below everything without a hero

    cApplication app;
    cAutoPlayer player;
    bool started = false;

private:
    std::shared_ptr<TempGame> files_; ///< collects log rows from before the first manager exists
};
