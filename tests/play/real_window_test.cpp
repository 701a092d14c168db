// The built program in a real window with real key presses, on SDL 1.2 and on the compatibility library.

#include "support/picture.h"

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {
namespace fs = std::filesystem;

/// Leads to the end as soon as it is loaded.
constexpr const char* kLastLevel =
    "<level name=\"last\"><player spawnpoint=\"hut\"><physics position=\"0,0,0\" direction=\"0,0,-1\" "
    "up=\"0,1,0\" /><camera firstperson=\"0\" offset=\"0,0,0\" position=\"0,0,4\" /></player>"
    "<object name=\"gate\" default_action=\"a\" file=\"end\" spawnpoint=\"end\"><appearance type=\"static\">"
    "<model file=\"s_mdl\\rock.cpm\" /></appearance><physics position=\"0,0,-5\" radius=\"1\" />"
    "<action name=\"a\" on_set=\"swap_level()\" /></object></level>";

std::string makeUser() {
    std::string pattern = (fs::temp_directory_path() / "quorvane-window-XXXXXX").string();
    return mkdtemp(pattern.data());
}

pid_t startGame(const std::string& user, const std::string& level,
                const std::vector<std::string>& screenshots = {}, const std::string& libraryPath = "") {
    const pid_t child = fork();
    if (child != 0) return child;
    // Leaks are looked for where the game is stepped; here the driver is unloaded and cannot be told apart.
    setenv("ASAN_OPTIONS", "detect_leaks=0", 1);
    if (!libraryPath.empty()) setenv("LD_LIBRARY_PATH", libraryPath.c_str(), 1);
    std::vector<std::string> line{GAME_PROGRAM, "--data", GAME_DATA, "--user", user,
                                  "--level",    level,    "--seed",  "1"};
    for (const std::string& shot : screenshots) line.insert(line.end(), {"--screenshot", user + "/" + shot});
    std::vector<char*> arguments;
    for (std::string& word : line) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    execv(GAME_PROGRAM, arguments.data());
    _exit(127);
}

bool waitFor(const std::string& file, int seconds) {
    for (int i = 0; i < seconds * 20; ++i) {
        if (fs::exists(file)) return true;
        usleep(50000);
    }
    return false;
}

constexpr int kRuns = -1, kKilled = -2; ///< instead of an exit status

/// kRuns when the program has not ended in time.
int exitStatus(pid_t child, int seconds) {
    int status = 0;
    for (int i = 0; i < seconds * 20; ++i) {
        if (waitpid(child, &status, WNOHANG) == child)
            return WIFEXITED(status) ? WEXITSTATUS(status) : kKilled;
        usleep(50000);
    }
    return kRuns;
}

int key(const std::string& command) {
    return std::system(("xdotool " + command).c_str());
}

/// Ends a game that has not ended by itself.
void endGame(pid_t game) {
    kill(game, SIGKILL);
    waitpid(game, nullptr, 0);
}

/// Escape opens the menu, whose last entry quits.
void quitByMenu() {
    for (const char* name : {"Escape", "Up", "Return"}) {
        key(std::string("keydown ") + name);
        usleep(300000);
        key(std::string("keyup ") + name);
        usleep(1000000);
    }
}

void playInWindow(const std::string& libraryPath) {
    const std::string user = makeUser();
    const pid_t game = startGame(user, "testlevel.xml", {"still.png@30", "moved.png@130"}, libraryPath);
    ASSERT_GT(game, 0);
    EXPECT_TRUE(waitFor(user + "/still.png", 30)) << "no first picture";
    usleep(200000);
    // Without a window manager nobody else gives the window the focus.
    EXPECT_EQ(key("search --name '^Quorvane$' mousemove --window %1 400 300 windowfocus %1"), 0)
        << "the window has no title";
    EXPECT_EQ(key("keydown w"), 0);
    EXPECT_TRUE(waitFor(user + "/moved.png", 60)) << "no second picture";
    key("keyup w");
    usleep(300000);
    const Box change = changed(Picture::read(user + "/still.png"), Picture::read(user + "/moved.png"));
    EXPECT_GT(change.count, 800 * 600 / 4) << "the hero has not walked out of the hut";
    // On a busy machine a press may fall between two frames; after three rounds it is the program's fault.
    int status = kRuns;
    for (int round = 0; round < 3 && status == kRuns; ++round) {
        quitByMenu();
        status = exitStatus(game, 10);
    }
    EXPECT_EQ(status, 0) << "the menu ends the game";
    if (status == kRuns) endGame(game);
    fs::remove_all(user);
}
} // namespace

TEST(RealWindow, WalksByKeyPresses) {
    playInWindow("");
}
TEST(RealWindow, WalksByKeyPressesOnTheCompatibilityLibrary) {
    playInWindow(COMPAT_SDL);
}

TEST(RealWindow, EndsByItselfBehindTheLastLevel) {
    const std::string user = makeUser();
    std::ofstream(user + "/last.xml") << kLastLevel;
    const auto start = std::chrono::steady_clock::now();
    const pid_t game = startGame(user, "last.xml");
    ASSERT_GT(game, 0);
    const int status = exitStatus(game, 60);
    EXPECT_EQ(status, 0);
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::seconds(3)) << "the last picture stays";
    std::ifstream log(user + "/quorvane.html");
    const std::string rows{std::istreambuf_iterator<char>(log), {}};
    EXPECT_NE(rows.find("Good bye"), std::string::npos) << rows;
    if (status == kRuns) endGame(game);
    fs::remove_all(user);
}
