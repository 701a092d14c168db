#pragma once
#include "core/application.h"
#include "core/auto_player.h"
#include "support/picture.h"
#include "support/temp_game.h"
#include "ui/input_settings.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <utility>

class cCmlObject;

/// The whole game on the made data, in a user directory of its own, with the fixed clock and a fixed seed.
/// Only input is given to it. Without a display, and for every error row in the log, the test fails.
class GameRun {
public:
    explicit GameRun(RunOptions options = {});
    GameRun(RunOptions options, std::shared_ptr<TempGame> files); ///< on files of an earlier run
    ~GameRun();

    /// What starts a level at once.
    static RunOptions at(const char* spawn, const char* level = "testlevel.xml");

    void frames(int count); ///< of the loop that the program would be in
    bool walkTo(float x, float z, int mostFrames = 900);
    /// From place to place; false, with the place named in a test failure, when one is not reached.
    bool follow(std::initializer_list<std::pair<float, float>> places, int mostFrames = 900);
    void face(float x, float z);
    void hold(int command, int count); ///< for so many frames
    /// Runs forwards for so many frames, jumps, and keeps forwards for so many frames of the flight.
    void runAndJump(int runUp, int flight);
    void use(); ///< the use key, and the time until it is asked again
    /// Presses use until the conversation is over; every reply is the one that was highlighted first.
    void talkToTheEnd();
    void tapKey(int sdlKey); ///< down for a frame, up for a frame
    void type(const std::string& text);
    void skipIntro(); ///< to the main page, when the menu takes keys
    /// From the main page without a game: picks the name and new settings of the name "test".
    void startNewGame(const std::string& name);
    Picture picture();     ///< of the next frame
    cVector3 hero() const; ///< position; far below everything without a hero

    cApplication app;
    cAutoPlayer player;
    bool started = false;

private:
    std::shared_ptr<TempGame> files_; ///< collects log rows from before the first manager exists
    bool begun_ = false; ///< the start menu is behind us: the game's loop goes on behind the menu
};

/// The people and things of the current level, by name; they must exist.
namespace inhabitants {
cCmlObject& script(const char* name);
std::string action(const char* name); ///< the current one
cVector3 place(const char* name);
std::string page(); ///< what the conversation shows
} // namespace inhabitants
