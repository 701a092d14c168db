#include "core/application.h"
#include "core/log_mgr.h"
#include "core/tour.h"
#include "platform/clock.h"
#include "platform/console_streams.h"
#include "platform/files.h"
#include "platform/random.h"
#include "script/cml_check_data.h"
#include "script/cml_checker.h"
#include "script/cml_lookups.h"
#include "ui/command_mgr.h"
#include "ui/input_mgr.h"

#include <CLI/CLI.hpp>
#include <SDL.h>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <unistd.h>

namespace {
constexpr const char* kGameDataFile = "window.cfg"; ///< a directory that holds it holds game data
constexpr int kLeastWidth = 320, kLeastHeight = 240, kLargestSide = 16384; ///< pixels of the window

struct CommandLine {
    std::vector<std::string> data, exec, check, screenshots;
    std::string user, window, level, spawn = "hut", tour;
    uint32_t fixedStep = 0;
    int64_t seed = -1;
    bool fast = false;
};

void declare(CLI::App& app, CommandLine& line) {
    app.add_option("--level", line.level, "Start in this level at once");
    app.add_option("--spawn", line.spawn, "Spawn point for --level (default: hut)");
    app.add_option("--exec", line.exec, "Run a console line without a window; may be repeated")
        ->take_all()
        ->expected(1);
    app.add_option("--check", line.check,
                   "Compile level documents, print every error, and warn of what would fail silently");
    app.add_option("--data", line.data, "Directory or archive with game data; may be repeated")
        ->take_all()
        ->expected(1);
    app.add_option("--user", line.user, "Directory for settings, saved heroes and the log");
    app.add_option("--window", line.window, "Window size, for example 1024x768");
    app.add_option("--fixed-step", line.fixedStep, "Virtual clock: milliseconds that each frame takes");
    app.add_option("--seed", line.seed, "Fix the random generator")->check(CLI::Range(0u, 0xFFFFFFFFu));
    app.add_flag("--fast", line.fast, "Rasterise only the frames that are pictured");
    app.add_option("--screenshot", line.screenshots, "FILE@FRAME: write that frame as PNG; may be repeated")
        ->take_all()
        ->expected(1);
    app.add_option("--tour", line.tour, "Play a short tour and write its pictures into this directory")
        ->expected(0, 1)
        ->default_str("tour");
    app.set_version_flag("--version", QUORVANE_VERSION);
}

bool isGameData(const std::filesystem::path& dir) {
    std::error_code ignored;
    return std::filesystem::exists(dir / kGameDataFile, ignored);
}

/// The working directory when it holds game data and can be written to, else the user's data directory.
std::string defaultUserDir() {
    if (isGameData(".") && access(".", W_OK) == 0) return ".";
    if (const char* xdg = std::getenv("XDG_DATA_HOME"); xdg && *xdg) return std::string(xdg) + "/quorvane";
    if (const char* home = std::getenv("HOME"); home && *home)
        return std::string(home) + "/.local/share/quorvane";
    return ".";
}

int fail(const std::string& sentence) {
    std::fprintf(stderr, "%s\n", sentence.c_str());
    return 1;
}

int execLines(const std::vector<std::string>& lines) {
    cConsole::useTerminal(true);
    cInputMgr::instance().saveOnExit = false;
    int status = 0;
    for (const std::string& text : lines) {
        if (cCommandMgr::instance().execute(text, cInputMgr::instance().console) != 0) status = 1;
    }
    return status;
}

void printRows(const std::string& file, const CmlReport& report, const char* kind) {
    for (const CmlReport::Row& row : report.rows) {
        const std::string place = row.line > 0 ? file + ":" + std::to_string(row.line) : file;
        std::printf("%s: %s%s\n", place.c_str(), kind, row.message.c_str());
    }
}

std::string counted(size_t count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

/// Errors set the exit status, warnings do not.
int checkDocuments(const std::vector<std::string>& files) {
    cInputMgr::instance().saveOnExit = false;
    const CmlCheckData data = gameCheckData();
    size_t errorCount = 0, warningCount = 0;
    for (const std::string& file : files) {
        CmlReport errors, warnings;
        errors.quiet = warnings.quiet = true;
        checkCmlDocument(file, cmlLookups(), data, errors, warnings);
        printRows(file, errors, "");
        printRows(file, warnings, "warning: ");
        errorCount += errors.rows.size();
        warningCount += warnings.rows.size();
    }
    if (errorCount + warningCount != 0) {
        std::printf("%s, %s\n", counted(errorCount, "error").c_str(),
                    counted(warningCount, "warning").c_str());
    }
    return errorCount == 0 ? 0 : 1;
}

/// The whole text, and nothing else, as a number.
template <typename Number> bool parseNumber(std::string_view text, Number& number) {
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end;
}

bool parseWindow(std::string_view text, RunOptions& run) {
    if (text.empty()) return true;
    const size_t x = text.find('x');
    return x != std::string_view::npos && parseNumber(text.substr(0, x), run.width) &&
           parseNumber(text.substr(x + 1), run.height) && run.width >= kLeastWidth &&
           run.height >= kLeastHeight && run.width <= kLargestSide && run.height <= kLargestSide;
}

bool parseScreenshot(std::string_view text, RunOptions& run) {
    const size_t at = text.rfind('@');
    RunOptions::Screenshot shot;
    if (at == std::string_view::npos || at == 0 || !parseNumber(text.substr(at + 1), shot.frame))
        return false;
    shot.path = text.substr(0, at);
    run.screenshots.push_back(shot);
    return true;
}

int play(const CommandLine& line) {
    RunOptions run;
    run.fast = line.fast;
    run.level = line.level;
    run.spawn = line.spawn;
    if (!parseWindow(line.window, run))
        return fail("--window wants a size like 1024x768, from 320x240 to 16384x16384.");
    for (const std::string& text : line.screenshots) {
        if (!parseScreenshot(text, run)) return fail("--screenshot wants FILE@FRAME, like hut.png@120.");
    }
    if (!line.tour.empty()) return playTour(line.tour, run);
    platform::redirectConsoleStreams();
    return cApplication(run).run();
}
} // namespace

int main(int argc, char** argv) {
    CLI::App app("Quorvane, a 3D action-adventure");
    CommandLine line;
    declare(app, line);
    CLI11_PARSE(app, argc, argv);
    if (app.count("--tour") != 0 && line.tour.empty()) line.tour = "tour";
    const bool tool = !line.exec.empty() || !line.check.empty();

    platform::FileRoots roots{line.data, line.user.empty() ? defaultUserDir() : line.user};
    std::string problem;
    if (!platform::openFileSystem(argv[0], roots, problem)) return fail(problem);
    platform::allowRealPaths(tool);
    cLogMgr::useTerminal(tool);
    if (!tool && !platform::fileExists(kGameDataFile)) {
        return fail(
            "There is no game data here. Start the game with ./play, or name the data with --data DIR.");
    }
    if (line.fixedStep) platform::useFixedStep(line.fixedStep);
    if (line.seed >= 0) platform::lockRandomSeed(static_cast<uint32_t>(line.seed));

    int status = 0;
    if (tool) {
        // Without a display SDL would otherwise draw its pictures with letters into the terminal.
        setenv("SDL_VIDEODRIVER", "dummy", 1);
        status = execLines(line.exec);
        if (!line.check.empty() && checkDocuments(line.check) != 0) status = 1;
    } else {
        status = play(line);
    }
    platform::closeFileSystem();
    return status;
}
