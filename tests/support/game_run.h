#pragma once
#include "core/application.h"
#include "core/auto_player.h"
#include "support/temp_game.h"
#include "ui/input_settings.h"

#include <initializer_list>
#include <memory>
#include <string>
#include <utility>

class cCmlObject;

/// The whole game on the made data, in a user directory of its own, with the fixed clock and a fixed seed.
/// Needs a display. Only input is given to it.
class GameRun {
public:
    explicit GameRun(RunOptions options = {});
    ~GameRun();

    /// What starts a level at once.
    static RunOptions at(const char* spawn, const char* level = "testlevel.xml");

    void frames(int count); ///< of whatever loop the state asks for
    bool walkTo(float x, float z, int mostFrames = 900);
    /// From place to place; false, with the place named in a test failure, when one is not reached.
    bool follow(std::initializer_list<std::pair<float, float>> places, int mostFrames = 900);
    void face(float x, float z);
    void hold(int command, int count); ///< for so many frames
    void tapKey(int sdlKey);
    void use(); ///< the use key, and the time until it is asked again
    /// Presses use until the conversation is over; every reply is the one that was highlighted first.
    void talkToTheEnd();
    cVector3 hero() const; ///< position; far below everything without a hero

    cApplication app;
    cAutoPlayer player;
    bool started = false;

private:
    struct Files;
    std::unique_ptr<Files> files_;
};

/// The people and things of the current level, by name; they must exist.
namespace inhabitants {
cCmlObject& script(const char* name);
std::string action(const char* name); ///< the current one
cVector3 place(const char* name);
std::string page(); ///< what the conversation shows
} // namespace inhabitants
