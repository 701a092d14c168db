// The command table and its handlers.

#include "core/parse.h"
#include "models/character_model.h"
#include "platform/progress.h"
#include "ui/bind_commands.h"
#include "ui/command_mgr.h"
#include "ui/input_mgr.h"
#include "world/drop_octree.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <SDL.h>
#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace {
using Params = std::vector<std::string>;

cInputMgr& input() {
    return cInputMgr::instance();
}

int quit(const Params&) {
    pushQuitEvent();
    return 0;
}

int help(const Params& p) {
    const std::string description = cCommandMgr::instance().getDescription(p[0]);
    if (description.empty()) {
        input().print("No commands called \"%s\"", p[0].c_str());
    } else {
        input().print("%s: %s", p[0].c_str(), description.c_str());
    }
    return 0;
}

int dropOctreeCommand(const Params& p) {
    const DropOctreeResult result = dropOctree(p);
    input().print("%s", result.message.c_str());
    return result.done ? 0 : -1;
}

int dropMd3(const Params& p) {
    platform::cProgress progress("drop_md3");
    progress.stage("reading " + p[1]);
    cCharacterModel model;
    if (!model.loadMd3(p[0], p[1])) {
        input().print("%s", SDL_GetError());
        return -1;
    }
    if (p.size() >= 3) model.scale(toFloat(p[2]));
    const std::string& output = p.size() >= 4 ? p[3] : p[1];
    progress.stage("writing " + output);
    if (model.writeCff(output)) return 0;
    input().print("The character \"%s\" could not be written", output.c_str());
    return -1;
}

int printParams(const Params& p) {
    for (const std::string& param : p) input().print("%s", param.c_str());
    return 0;
}

int h4xx0r(const Params&) {
    static constexpr const char* kLines[] = {" ",
                                             "h4xx0rin9...",
                                             " ",
                                             "Oh noes!",
                                             " ",
                                             "Joo haev b33n teh h4xx0r3d!",
                                             "yu0r Megahurtz haev b33n stoeled!!!!11one",
                                             " "};
    for (const char* line : kLines) input().print("%s", line);
    return 0;
}

int detachCamera(const Params&) {
    cWorld::instance().camera.detach();
    input().print("Camera Detached");
    return 0;
}

int saveConfig(const Params& p) {
    const bool saved = input().saveSettings(p[0]);
    if (saved) input().keepChoice(p[0]); // what cannot be written has its row in the log
    input().print(saved ? "Settings saved to %s" : "Unable to save settings %s", p[0].c_str());
    return saved ? 0 : -1;
}

int loadConfig(const Params& p) {
    const bool loaded = input().loadSettings(p[0]) == 0;
    if (loaded) input().keepChoice(p[0]);
    input().print(loaded ? "Settings loaded from %s" : "Unable to load settings %s", p[0].c_str());
    return loaded ? 0 : -1;
}

int loadSaved(const Params& p) {
    cWorld& world = cWorld::instance();
    if (world.findSavedGame(p[0]) < 0) {
        input().print("There is no saved game of %s", p[0].c_str());
        return -1;
    }
    if (input().menu.isVisible()) {
        input().menu.loadGame(p[0]); // else the menu would stay before the game
    } else {
        world.loadSavedGame(p[0]);
    }
    return 0;
}

int setCamera(const Params& p) {
    static constexpr const char* kModes[] = {"MOUSE", "INVERTMOUSE", "ARROWKEYS", "INVERTARROWKEYS"};
    const auto* const mode = std::ranges::find(kModes, p[0]);
    if (mode == std::end(kModes)) {
        for (const char* line :
             {"Unknown parameter", "Valid parameters are MOUSE, INVERTMOUSE, ARROWKEYS and INVERTARROWKEYS",
              "Optional second parameter: THIRDPERSON or FIRSTPERSON",
              "to set camera controls for only one of the modes"})
            input().print("%s", line);
        return -1;
    }
    const auto number = static_cast<int>(mode - std::begin(kModes));
    const std::string view = p.size() >= 2 ? p[1] : "";
    if (view != kFirstPersonWord) {
        input().bindings.setControlMode(0, number);
        input().print("Third-person camera set");
    }
    if (view != kThirdPersonWord) {
        input().bindings.setControlMode(1, number);
        input().print("First-person camera set");
    }
    return 0;
}

int setSensitive(const Params& p) {
    const double v = std::atof(p[0].c_str());
    if (!(v >= 1 && v <= 100)) {
        input().print("Please enter a value 1-100");
        return -1;
    }
    input().print("Camera sensitivity set to %2.2f", v);
    input().setSensitivity(static_cast<float>(v / 10000));
    return 0;
}

int relativeToSelf(const Params&) {
    input().print("3rd person movement relative to self");
    input().setMoveRelativeToCamera(false);
    return 0;
}
int relativeToCamera(const Params&) {
    input().print("3rd person movement relative to camera");
    input().setMoveRelativeToCamera(true);
    return 0;
}
int defaultWalk(const Params&) {
    input().print("Walking is default");
    input().setWalkDefault(true);
    return 0;
}
int defaultRun(const Params&) {
    input().print("Running is default");
    input().setWalkDefault(false);
    return 0;
}

/// Option bits together with what they switch; the bit lasts until the settings are saved or loaded.
template <uint8_t Bit, bool On> int setOption(const Params&) {
    On ? input().setOption(Bit) : input().clearOption(Bit);
    cHud& hud = cWorld::instance().hud;
    if (Bit == kOptionCrosshair) hud.crosshairOn = On;
    if (Bit == kOptionStatFading) hud.statsFading = On;
    if (Bit == kOptionStatFading && !On) hud.showStats();
    if (Bit == kOptionShadows) cObjectMgr::instance().shadowsEnabled = On;
    return 0;
}

constexpr cCommandMgr::Row kCommands[] = {
    {"printParams", 0, 20, "Prints all parameters.", printParams},
    {"h4xx0r", 0, 0, "H4xx0ring is teh l33t!", h4xx0r},
    {"quit", 0, 20, "Quit the game", quit},
    {"dropOctree", 6, 7, kDropOctreeUsage, dropOctreeCommand},
    {"help", 1, 1, "Prints description for a command.", help},
    {"detach_cam", 0, 0, "Sets camera to free-flying mode", detachCamera},
    {"save_config", 1, 1, "Saves your current settings to file", saveConfig},
    {"load_config", 1, 1, "Loads previously saved settings from file", loadConfig},
    {"set_camera", 1, 2, "Set controls for the camera", setCamera},
    {"set_sensitive", 1, 1, "Set camera control sensitivity", setSensitive},
    {"relative_to_self", 0, 0, "Set 3rd person movement relative to self", relativeToSelf},
    {"relative_to_cam", 0, 0, "Set 3rd person movement relative to camera", relativeToCamera},
    {"default_walk", 0, 0, "Set walking as default", defaultWalk},
    {"default_run", 0, 0, "Set running as default", defaultRun},
    {"print_bind", 0, 0, "Print all bound keys", printBindings},
    {"bind", 2, 3, "Bind a key to a command", bindKey},
    {"drop_md3", 2, 4, "Convert a MD3 fileset to a CFF animation", dropMd3},
    {"crosshair_on", 0, 0, "Show the crosshair in 1st person mode", setOption<kOptionCrosshair, true>},
    {"crosshair_off", 0, 0, "Hide the crosshair in 1st person mode", setOption<kOptionCrosshair, false>},
    {"stat_fade_on", 0, 0, "Turn on the stat fading option", setOption<kOptionStatFading, true>},
    {"stat_fade_off", 0, 0, "Turn off the stat fading option", setOption<kOptionStatFading, false>},
    {"enable_shadows", 0, 0, "Enable Ray-traced shadows", setOption<kOptionShadows, true>},
    {"disable_shadows", 0, 0, "Disable Ray-traced shadows", setOption<kOptionShadows, false>},
    {"load_saved", 1, 1, "Load a saved game", loadSaved},
};
} // namespace

std::span<const cCommandMgr::Row> cCommandMgr::rows() {
    return kCommands;
}
