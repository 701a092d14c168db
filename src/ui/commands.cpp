// The command table and its handlers.

#include "core/parse.h"
#include "models/character_model.h"
#include "ui/command_mgr.h"
#include "ui/input_mgr.h"
#include "ui/menu.h"
#include "world/drop_octree.h"
#include "world/object_mgr.h"
#include "world/world.h"

#include <SDL.h>

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
    cCharacterModel model;
    if (!model.loadMd3(p[0], p[1])) {
        input().print("%s", SDL_GetError());
        return -1;
    }
    if (p.size() >= 3) model.scale(toFloat(p[2]));
    const std::string& output = p.size() >= 4 ? p[3] : p[1];
    if (model.writeCff(output)) return 0;
    input().print("The character \"%s\" could not be written", output.c_str());
    return -1;
}

int detachCamera(const Params&) {
    cWorld::instance().camera.detach();
    input().print("Camera Detached");
    return 0;
}

int setShadows(bool on) {
    on ? input().setOption(kOptionShadows) : input().clearOption(kOptionShadows);
    cObjectMgr::instance().shadowsEnabled = on;
    return 0;
}
int enableShadows(const Params&) {
    return setShadows(true);
}
int disableShadows(const Params&) {
    return setShadows(false);
}

constexpr cCommandMgr::Row kCommands[] = {
    {"quit", 0, 20, "Quit the game", quit},
    {"dropOctree", 6, 7, kDropOctreeUsage, dropOctreeCommand},
    {"help", 1, 1, "Prints description for a command.", help},
    {"detach_cam", 0, 0, "Sets camera to free-flying mode", detachCamera},
    {"drop_md3", 2, 4, "Convert a MD3 fileset to a CFF animation", dropMd3},
    {"enable_shadows", 0, 0, "Enable Ray-traced shadows", enableShadows},
    {"disable_shadows", 0, 0, "Disable Ray-traced shadows", disableShadows},
};
} // namespace

std::span<const cCommandMgr::Row> cCommandMgr::rows() {
    return kCommands;
}
