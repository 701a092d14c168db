#include "core/tour.h"

#include "platform/files.h"
#include "render/renderer.h"
#include "ui/input_mgr.h"
#include "ui/menu.h"

#include <SDL.h>
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <sstream>

namespace {
constexpr const char* kScript = "tour.txt";

/// Words of the script and the commands that they press: the tour plays whatever keys are bound.
constexpr struct {
    const char* word;
    int command;
} kCommandWords[] = {{"forward", CMD_FORWARD}, {"back", CMD_BACK},       {"left", CMD_LEFT},
                     {"right", CMD_RIGHT},     {"run", CMD_RUN},         {"use", CMD_USE},
                     {"jump", CMD_JUMP},       {"zoom_in", CMD_ZOOM_IN}, {"zoom_out", CMD_ZOOM_OUT},
                     {"view", CMD_TOGGLE_VIEW}};

/// "FRAME press|release COMMAND", "FRAME look DX DY FRAMES", "FRAME picture NAME", "FRAME end"; frames of the game
/// at 62.5 a second.
struct Step {
    uint32_t frame = 0;
    std::string act, name;
    int command = 0, dx = 0, dy = 0;
    uint32_t frames = 1;
};

bool parseStep(const std::string& line, Step& step) {
    std::istringstream in(line);
    if (!(in >> step.frame >> step.act)) return false;
    if (step.act == "look") return static_cast<bool>(in >> step.dx >> step.dy >> step.frames);
    if (step.act == "picture") return static_cast<bool>(in >> step.name);
    if (step.act == "end") return true;
    if (step.act != "press" && step.act != "release") return false;
    std::string word;
    in >> word;
    for (const auto& row : kCommandWords) {
        if (word != row.word) continue;
        step.command = row.command;
        return true;
    }
    return false;
}

bool readScript(std::vector<Step>& steps) {
    platform::Bytes bytes;
    if (!platform::readFile(kScript, bytes)) {
        std::fprintf(stderr, "The game data holds no %s.\n", kScript);
        return false;
    }
    std::istringstream in(std::string(bytes.begin(), bytes.end()));
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        if (line.empty() || line[0] == '#') continue;
        Step step;
        if (!parseStep(line, step)) {
            std::fprintf(stderr, "%s:%d: not understood: %s\n", kScript, number, line.c_str());
            return false;
        }
        steps.push_back(step);
    }
    return true;
}

void pushKey(int command, bool down) {
    const int key = cInputMgr::instance().bindings.getBinding(command);
    SDL_Event event{};
    if (key >= 1 && key <= 5) {
        event.type = down ? SDL_MOUSEBUTTONDOWN : SDL_MOUSEBUTTONUP;
        event.button.button = static_cast<Uint8>(key);
    } else {
        event.type = down ? SDL_KEYDOWN : SDL_KEYUP;
        event.key.keysym.sym = static_cast<SDLKey>(key);
    }
    SDL_PushEvent(&event);
}

void pushLook(int dx, int dy) {
    const int w = static_cast<int>(cRenderer::instance().getWidth()), h = static_cast<int>(cRenderer::instance().getHeight());
    SDL_Event event{};
    event.type = SDL_MOUSEMOTION;
    event.motion.x = static_cast<Uint16>(std::clamp(w / 2 + dx, 0, w - 1));
    event.motion.y = static_cast<Uint16>(std::clamp(h / 2 - dy, 0, h - 1));
    SDL_PushEvent(&event);
}

class Tour {
public:
    Tour(std::string directory, std::vector<Step> steps) : directory_(std::move(directory)), steps_(std::move(steps)) {}

    void play(uint32_t frame) {
        for (const Step& step : steps_) {
            if (step.act == "look" && frame >= step.frame && frame < step.frame + step.frames) pushLook(step.dx, step.dy);
            if (step.frame != frame) continue;
            if (step.act == "press" || step.act == "release") pushKey(step.command, step.act == "press");
            if (step.act == "picture") cRenderer::instance().requestScreenshot(pathOf(step));
            if (step.act == "end") pushQuitEvent();
        }
    }

    /// Pictures of an earlier tour must not pass for this one's.
    void removePictures() const {
        for (const Step& step : steps_) {
            if (step.act == "picture") std::remove(pathOf(step).c_str());
        }
    }

    bool reportPictures() const {
        bool complete = true;
        for (const Step& step : steps_) {
            if (step.act != "picture") continue;
            const bool exists = std::filesystem::exists(pathOf(step));
            std::printf("%s%s\n", pathOf(step).c_str(), exists ? "" : " is missing");
            complete = complete && exists;
        }
        return complete;
    }

private:
    std::string pathOf(const Step& step) const { return directory_ + "/" + step.name + ".png"; }

    std::string directory_;
    std::vector<Step> steps_;
};
} // namespace

int playTour(const std::string& directory, RunOptions options) {
    std::vector<Step> steps;
    if (!readScript(steps)) return 1;
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    if (!std::filesystem::is_directory(directory)) {
        std::fprintf(stderr, "The directory %s cannot be created.\n", directory.c_str());
        return 1;
    }
    Tour tour(directory, std::move(steps));
    tour.removePictures();
    if (options.level.empty()) {
        options.level = "testlevel.xml";
        options.spawn = "hut";
    }
    options.script = [&](uint32_t frame, GameState*) { tour.play(frame); };
    const int status = cApplication(options).run();
    const bool complete = tour.reportPictures();
    return status == 0 && complete ? 0 : 1;
}
