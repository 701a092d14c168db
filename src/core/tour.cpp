#include "core/tour.h"

#include "core/auto_player.h"
#include "platform/files.h"
#include "render/renderer.h"
#include "ui/bindings.h"
#include "ui/input_mgr.h"

#include <SDL.h>
#include <cstdio>
#include <filesystem>
#include <span>
#include <sstream>

namespace {
constexpr const char* kScript = "tour.txt";
constexpr uint32_t kKeyFrames = 3;      ///< a key of the menu is held so long ...
constexpr uint32_t kKeyPause = 3;       ///< ... and left alone so long
constexpr uint32_t kLongestWalk = 1200; ///< frames after which a walk is given up

struct Word {
    const char* word;
    int code;
};
/// Words of the script and the commands that they press.
constexpr Word kCommandWords[] = {
    {"forward", CMD_FORWARD},   {"back", CMD_BACK},        {"left", CMD_LEFT}, {"right", CMD_RIGHT},
    {"run", CMD_RUN},           {"use", CMD_USE},          {"jump", CMD_JUMP}, {"zoom_in", CMD_ZOOM_IN},
    {"zoom_out", CMD_ZOOM_OUT}, {"view", CMD_TOGGLE_VIEW}, {"fire", CMD_FIRE}, {"inventory", CMD_INVENTORY},
    {"next", CMD_NEXT_ITEM}};

/// Keys of the menu by name.
constexpr Word kKeyWords[] = {{"return", SDLK_RETURN}, {"escape", SDLK_ESCAPE},     {"up", SDLK_UP},
                              {"down", SDLK_DOWN},     {"left", SDLK_LEFT},         {"right", SDLK_RIGHT},
                              {"space", SDLK_SPACE},   {"console", SDLK_BACKQUOTE}, {"mouse", 1}};

/// One line: "key NAME" (of the menu), "type TEXT" (a character a frame), "point X Y" (pixels from the
/// window's middle, y upwards), "walk X Z", "wait FRAMES", "press COMMAND", "release COMMAND", "look DX DY
/// FRAMES" (pixels a frame), "picture NAME". Lines are carried out one after another.
struct Step {
    std::string act, name;
    int code = 0; ///< of the command, or of the key
    int dx = 0, dy = 0;
    uint32_t frames = 0;
    cVector3 point;
};

bool parseWord(std::istringstream& in, std::span<const Word> rows, Step& step) {
    std::string word;
    in >> word;
    for (const Word& row : rows) {
        if (word != row.word) continue;
        step.code = row.code;
        return true;
    }
    return false;
}

bool parseStep(const std::string& line, Step& step) {
    std::istringstream in(line);
    in >> step.act;
    if (step.act == "key") return parseWord(in, kKeyWords, step);
    if (step.act == "type") return static_cast<bool>(std::getline(in >> std::ws, step.name));
    if (step.act == "point") return static_cast<bool>(in >> step.dx >> step.dy);
    if (step.act == "walk") return static_cast<bool>(in >> step.point.x >> step.point.z);
    if (step.act == "wait") return static_cast<bool>(in >> step.frames);
    if (step.act == "look") return static_cast<bool>(in >> step.dx >> step.dy >> step.frames);
    if (step.act == "picture") return static_cast<bool>(in >> step.name);
    return (step.act == "press" || step.act == "release") && parseWord(in, kCommandWords, step);
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

class Tour {
public:
    Tour(std::string directory, std::vector<Step> steps)
        : directory_(std::move(directory)), steps_(std::move(steps)) {}

    /// Carries out steps until one takes the whole frame.
    void playFrame() {
        while (current_ < steps_.size()) {
            if (!stepDone(steps_[current_])) return;
            ++current_;
            elapsed_ = 0;
        }
        pushQuitEvent();
    }

    /// Pictures of an earlier tour must not pass for this one's.
    void removePictures() const {
        for (const Step& step : steps_) {
            if (step.act == "picture") std::remove(pathOf(step).c_str());
        }
    }

    bool reportPictures() const {
        bool complete = current_ == steps_.size();
        for (const Step& step : steps_) {
            if (step.act != "picture") continue;
            const bool exists = std::filesystem::exists(pathOf(step));
            std::printf("%s%s\n", pathOf(step).c_str(), exists ? "" : " is missing");
            complete = complete && exists;
        }
        return complete;
    }

private:
    bool stepDone(const Step& step) {
        ++elapsed_;
        if (step.act == "walk") return walkDone(step);
        if (step.act == "wait") return elapsed_ > step.frames;
        if (step.act == "look") {
            if (elapsed_ <= step.frames) player_.look(step.dx, step.dy);
            return elapsed_ > step.frames;
        }
        if (step.act == "key") return keyDone(step);
        if (step.act == "type") {
            player_.type(step.name[elapsed_ - 1]);
            return elapsed_ >= step.name.size();
        }
        if (step.act == "point") {
            player_.pointAt(static_cast<int>(cRenderer::instance().getWidth()) / 2 + step.dx,
                            static_cast<int>(cRenderer::instance().getHeight()) / 2 - step.dy);
            return true;
        }
        if (step.act == "press") player_.press(step.code);
        if (step.act == "release") player_.release(step.code);
        // The picture is of the frame that follows; it takes that frame.
        if (step.act == "picture" && elapsed_ == 1) cRenderer::instance().requestScreenshot(pathOf(step));
        return step.act != "picture" || elapsed_ > 1;
    }

    bool keyDone(const Step& step) {
        const bool console = step.code == SDLK_BACKQUOTE;
        if (elapsed_ == 1) console ? player_.type('`') : player_.setKey(step.code, true);
        if (elapsed_ == kKeyFrames && !console) player_.setKey(step.code, false);
        return elapsed_ >= kKeyFrames + kKeyPause;
    }

    bool walkDone(const Step& step) {
        if (player_.walkTowards(step.point)) return true;
        if (elapsed_ < kLongestWalk) return false;
        std::printf("The way to %g, %g is blocked.\n", static_cast<double>(step.point.x),
                    static_cast<double>(step.point.z));
        player_.release(CMD_FORWARD);
        return true;
    }

    std::string pathOf(const Step& step) const { return directory_ + "/" + step.name + ".png"; }

    std::string directory_;
    std::vector<Step> steps_;
    size_t current_ = 0;
    uint32_t elapsed_ = 0; ///< frames of the current step
    cAutoPlayer player_;
};
} // namespace

int playTour(const std::string& directory, RunOptions options) {
    std::vector<Step> steps;
    if (!readScript(steps)) return 1;
    std::error_code error;
    std::filesystem::create_directories(directory, error);
    if (!std::filesystem::is_directory(directory, error)) {
        std::fprintf(stderr, "The directory %s cannot be created.\n", directory.c_str());
        return 1;
    }
    Tour tour(directory, std::move(steps));
    tour.removePictures();
    options.script = [&] { tour.playFrame(); };
    const int status = cApplication(options).run();
    const bool complete = tour.reportPictures();
    return status == 0 && complete ? 0 : 1;
}
